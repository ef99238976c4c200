package vendor.zentel.hardware.camera.vaelon;

@VintfStability
parcelable VAELONServiceResult {
    int serviceResult = 0;
}
