package vendor.zentel.hardware.hwdisplay;

/**
 * Status (0 success) plus text: a frame rate, a configuration or a result description.
 */
@VintfStability
parcelable DisplayOutInfo {
    int ret = 0;
    @utf8InCpp String info;
}
