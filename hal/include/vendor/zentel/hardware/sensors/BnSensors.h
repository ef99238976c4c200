// AIDL vendor.zentel.hardware.sensors.ISensors: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/sensors/ISensors.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace sensors {

class BnSensors : public ::android::BnInterface<ISensors> {};

}  // namespace sensors
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
