package vendor.zentel.hardware.camera.vaelon;

import vendor.zentel.hardware.camera.vaelon.GetCapabilitiesResult;
import vendor.zentel.hardware.camera.vaelon.IVAELONServiceCallBack;
import vendor.zentel.hardware.camera.vaelon.VAELONClientHandleType;

/**
 * The camera always-on service: the service types it supports and their overtimes, and the
 * clients registered per service type.
 */
@VintfStability
interface IVAELONService {
    GetCapabilitiesResult[] getCapabilities();

    int registerClient(IVAELONServiceCallBack callback, int serviceType, String name,
            out VAELONClientHandleType handle);

    int unregisterClient(in VAELONClientHandleType handle);
}
