// AIDL vendor.zentel.hardware.camera.vaelon.VAELONClientHandleType (C++ backend).
#pragma once

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class VAELONClientHandleType {
public:
    int32_t clientHandle = int32_t(0);
};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
