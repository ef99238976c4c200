// HIDL vendor.zentel.hardware.sensors@2.0::ISensors: the maker's second-generation sensor
// service, with the operations of 1.x under the same signatures.
#pragma once

#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace sensors {
namespace V2_0 {

struct ISensors : public ::android::hidl::base::V1_0::IBase {
    using getCalibrateType_cb = std::function<void(int32_t result, const ::android::hardware::hidl_string& calibType)>;
    using getSensorData_cb = std::function<void(int32_t result, const ::android::hardware::hidl_vec<int32_t>& data)>;
    using processSensorParameter_cb =
            std::function<void(int32_t ret, const ::android::hardware::hidl_string& para,
                               const ::android::hardware::hidl_vec<int32_t>& data)>;

    virtual ::android::hardware::Return<int32_t> startCalibrate(int32_t sensorId, int32_t command) = 0;
    virtual ::android::hardware::Return<int32_t> startSelfTest(int32_t sensorId, int32_t command) = 0;
    virtual ::android::hardware::Return<int32_t> getCalibrateDelayTime(int32_t sensorId) = 0;
    virtual ::android::hardware::Return<int32_t> getSelfTestDelayTime(int32_t sensorId) = 0;
    virtual ::android::hardware::Return<int32_t> getCalibrateResult(int32_t sensorId) = 0;
    virtual ::android::hardware::Return<int32_t> getSelfTestResult(int32_t sensorId) = 0;
    virtual ::android::hardware::Return<void> getCalibrateType(int32_t sensorId, int32_t size,
                                                               getCalibrateType_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<void> getSensorData(int32_t sensorId, getSensorData_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<bool> isFlickerSupported(int32_t sensorId) = 0;
    virtual ::android::hardware::Return<int32_t> activateSensor(int32_t sensorType, bool enable,
                                                                int64_t samplingRate) = 0;
    virtual ::android::hardware::Return<int32_t> getCompassRawValueLimit() = 0;
    virtual ::android::hardware::Return<void> processSensorParameter(int32_t sensorId, int32_t mainCmd,
                                                                     int32_t subCmd, int32_t length,
                                                                     processSensorParameter_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(ISensors);
};

}  // namespace V2_0
}  // namespace sensors
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
