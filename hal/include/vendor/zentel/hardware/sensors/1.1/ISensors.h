// HIDL vendor.zentel.hardware.sensors@1.1::ISensors: the sensor parameter channel.
#pragma once

#include <vendor/zentel/hardware/sensors/1.0/ISensors.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace sensors {
namespace V1_1 {

struct ISensors : public ::vendor::zentel::hardware::sensors::V1_0::ISensors {
    using processSensorParameter_cb =
            std::function<void(int32_t ret, const ::android::hardware::hidl_string& para,
                               const ::android::hardware::hidl_vec<int32_t>& data)>;

    virtual ::android::hardware::Return<void> processSensorParameter(int32_t sensorId, int32_t mainCmd,
                                                                     int32_t subCmd, int32_t length,
                                                                     processSensorParameter_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(ISensors);
};

}  // namespace V1_1
}  // namespace sensors
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
