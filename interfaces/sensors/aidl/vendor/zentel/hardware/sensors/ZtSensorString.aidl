package vendor.zentel.hardware.sensors;

@VintfStability
parcelable ZtSensorString {
    @utf8InCpp String text;
}
