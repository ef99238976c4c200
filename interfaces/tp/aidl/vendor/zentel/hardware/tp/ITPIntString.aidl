package vendor.zentel.hardware.tp;

/**
 * Status (0 success) plus text.
 */
@VintfStability
parcelable ITPIntString {
    int ret = 0;
    @utf8InCpp String info;
}
