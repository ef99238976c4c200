// AIDL vendor.zentel.hardware.hwdisplay.DisplayOutInfo (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {

// Status (0 success) plus text.
class DisplayOutInfo {
public:
    int32_t ret = int32_t(0);
    ::std::string info;
};

}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
