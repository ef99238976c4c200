// AIDL vendor.zentel.hardware.power.PowerOutInfo (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace power {

class PowerOutInfo {
public:
    int32_t code = int32_t(0);
    ::std::string info;
};

}  // namespace power
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
