package vendor.zentel.hardware.hwfactoryinterface;

/**
 * Status plus text, the answer of the text queries. A fresh record holds 0 and no text.
 */
@VintfStability
parcelable IFacIntStr {
    int ret = 0;
    @utf8InCpp String value;
}
