// AIDL vendor.zentel.hardware.camera.vaelon.IVAELONServiceCallBack (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <vendor/zentel/hardware/camera/vaelon/VAELONClientHandleType.h>
#include <vendor/zentel/hardware/camera/vaelon/VAELONServiceResult.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class IVAELONServiceCallBack : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(VAELONServiceCallBack)

    virtual ::android::binder::Status NotifyVAELONEvent(const VAELONClientHandleType& handle,
                                                        const VAELONServiceResult& result) = 0;
};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
