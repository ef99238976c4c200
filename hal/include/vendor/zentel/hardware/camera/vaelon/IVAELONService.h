// AIDL vendor.zentel.hardware.camera.vaelon.IVAELONService (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <utils/String16.h>
#include <utils/StrongPointer.h>
#include <vendor/zentel/hardware/camera/vaelon/GetCapabilitiesResult.h>
#include <vendor/zentel/hardware/camera/vaelon/IVAELONServiceCallBack.h>
#include <vendor/zentel/hardware/camera/vaelon/VAELONClientHandleType.h>

#include <cstdint>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class IVAELONService : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(VAELONService)

    virtual ::android::binder::Status getCapabilities(::std::vector<GetCapabilitiesResult>* _aidl_return) = 0;
    virtual ::android::binder::Status registerClient(const ::android::sp<IVAELONServiceCallBack>& callback,
                                                     int32_t serviceType, const ::android::String16& name,
                                                     VAELONClientHandleType* handle, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status unregisterClient(const VAELONClientHandleType& handle, int32_t* _aidl_return) = 0;
};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
