package vendor.zentel.hardware.hwfactoryinterface;

/**
 * Status plus bytes, the answer of getOeminfo. A fresh record holds 0 and no bytes.
 */
@VintfStability
parcelable IFacIntByte {
    int ret = 0;
    byte[] value;
}
