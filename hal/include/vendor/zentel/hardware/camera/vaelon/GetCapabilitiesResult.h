// AIDL vendor.zentel.hardware.camera.vaelon.GetCapabilitiesResult (C++ backend).
#pragma once

#include <cstdint>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

// One supported service type and its overtimes.
class GetCapabilitiesResult {
public:
    int32_t serviceType = int32_t(0);
    ::std::vector<int32_t> overtimes;
};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
