package vendor.zentel.hardware.camera.vaelon;

import vendor.zentel.hardware.camera.vaelon.VAELONClientHandleType;
import vendor.zentel.hardware.camera.vaelon.VAELONServiceResult;

/**
 * How the camera always-on service reports an event to a registered client.
 */
@VintfStability
interface IVAELONServiceCallBack {
    void NotifyVAELONEvent(in VAELONClientHandleType handle, in VAELONServiceResult result);
}
