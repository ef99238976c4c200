// AIDL vendor.zentel.hardware.hwdisplay.DISPLAY_DATA (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {

// The display parameters of a test scene.
class DISPLAY_DATA {
public:
    int32_t dataInt = int32_t(0);
    ::std::string dataString;
};

}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
