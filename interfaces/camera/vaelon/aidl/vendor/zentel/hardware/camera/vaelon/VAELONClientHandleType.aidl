package vendor.zentel.hardware.camera.vaelon;

@VintfStability
parcelable VAELONClientHandleType {
    int clientHandle = 0;
}
