// AIDL vendor.zentel.hardware.tp.ITPIntString (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace tp {

// Status (0 success) plus text.
class ITPIntString {
public:
    int32_t ret = int32_t(0);
    ::std::string info;
};

}  // namespace tp
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
