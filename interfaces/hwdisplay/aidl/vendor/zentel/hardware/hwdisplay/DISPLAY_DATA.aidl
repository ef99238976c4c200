package vendor.zentel.hardware.hwdisplay;

/**
 * The display parameters of a test scene.
 */
@VintfStability
parcelable DISPLAY_DATA {
    int dataInt = 0;
    @utf8InCpp String dataString;
}
