package vendor.zentel.hardware.power;

@VintfStability
parcelable PowerOutInfo {
    int code = 0;
    @utf8InCpp String info;
}
