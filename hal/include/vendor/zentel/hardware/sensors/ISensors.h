// AIDL vendor.zentel.hardware.sensors.ISensors (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <vendor/zentel/hardware/sensors/ZtSensorString.h>

#include <cstdint>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace sensors {

// The out int vectors are sized by the caller; the service fills or resizes them.
class ISensors : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Sensors)

    virtual ::android::binder::Status startCalibrate(int32_t sensorId, int32_t command, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status startSelfTest(int32_t sensorId, int32_t command, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getCalibrateDelayTime(int32_t sensorId, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getSelfTestDelayTime(int32_t sensorId, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getCalibrateResult(int32_t sensorId, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getSelfTestResult(int32_t sensorId, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getCalibrateType(int32_t sensorId, int32_t size, ZtSensorString* calibType,
                                                       int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getSensorData(int32_t sensorId, ::std::vector<int32_t>* data,
                                                    int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status processSensorParameter(int32_t sensorId, int32_t mainCmd, int32_t subCmd,
                                                             int32_t length, ZtSensorString* para,
                                                             ::std::vector<int32_t>* data, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status activateSensor(int32_t sensorType, bool enable, int64_t samplingRate,
                                                     int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getCompassRawValueLimit(int32_t* _aidl_return) = 0;
};

}  // namespace sensors
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
