// AIDL vendor.zentel.hardware.camera.vaelon.VAELONServiceResult (C++ backend).
#pragma once

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class VAELONServiceResult {
public:
    int32_t serviceResult = int32_t(0);
};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
