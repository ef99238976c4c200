// AIDL vendor.zentel.hardware.sensors.ZtSensorString (C++ backend).
#pragma once

#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace sensors {

class ZtSensorString {
public:
    ::std::string text;
};

}  // namespace sensors
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
