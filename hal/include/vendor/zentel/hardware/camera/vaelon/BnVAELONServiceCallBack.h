// AIDL vendor.zentel.hardware.camera.vaelon.IVAELONServiceCallBack: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/camera/vaelon/IVAELONServiceCallBack.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class BnVAELONServiceCallBack : public ::android::BnInterface<IVAELONServiceCallBack> {};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
