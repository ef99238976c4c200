// HIDL vendor.zentel.hardware.sensors@1.2::ISensors. Services of this version take the
// ambient-light commands of the parameter channel.
#pragma once

#include <vendor/zentel/hardware/sensors/1.1/ISensors.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace sensors {
namespace V1_2 {

struct ISensors : public ::vendor::zentel::hardware::sensors::V1_1::ISensors {
    ZENTEL_HIDL_INTERFACE(ISensors);
};

}  // namespace V1_2
}  // namespace sensors
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
