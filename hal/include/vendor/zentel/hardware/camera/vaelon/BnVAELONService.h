// AIDL vendor.zentel.hardware.camera.vaelon.IVAELONService: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/camera/vaelon/IVAELONService.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class BnVAELONService : public ::android::BnInterface<IVAELONService> {};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
