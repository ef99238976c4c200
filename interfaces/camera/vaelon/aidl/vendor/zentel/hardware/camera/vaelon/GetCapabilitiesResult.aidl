package vendor.zentel.hardware.camera.vaelon;

/**
 * One supported service type and its overtimes.
 */
@VintfStability
parcelable GetCapabilitiesResult {
    int serviceType = 0;
    int[] overtimes;
}
