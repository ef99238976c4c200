// Sensor calibration and self test, the sensor parameter channel, colour-sensor values,
// sensor activation and the compass limit over the HIDL sensor services: the 1.x service
// (g_hwSensors, with 1.1 and 1.2 cast per call for the parameter channel) and the 2.0
// service (g_zentelSensors), which has the same methods under the same signatures.
//
// No call's status is read unchecked: when a call fails in transport (its service died
// under it) the operation answers with its presets, as if the service had written nothing.
#include <mmi_log.h>
#include <vendor/zentel/hardware/sensors/1.1/ISensors.h>
#include <vendor/zentel/hardware/sensors/1.2/ISensors.h>

#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using mmi::kLogPrefix;
using mmi::NewJavaIntArray;
using mmi::NewJavaString;

namespace native_hidl {
namespace {

using SensorsV1_0 = hw::sensors::V1_0::ISensors;
using SensorsV1_1 = hw::sensors::V1_1::ISensors;
using SensorsV1_2 = hw::sensors::V1_2::ISensors;
using SensorsV2_0 = hw::sensors::V2_0::ISensors;

// The text buffer size the calibration type is asked with.
constexpr int32_t CALIBRATE_TYPE_SIZE = 1024;

// Runs `use(service, handleName)` on g_hwSensors when it is set, else on g_zentelSensors,
// and hands back its result; nullopt (nothing called) when neither is set. `use` is
// generic: it is instantiated once for each interface.
template <typename Use>
auto WithSensors(Use&& use) -> std::optional<std::invoke_result_t<Use&, SensorsV1_0&, const char*>> {
    if (sp<SensorsV1_0> hwSensors = g_hwSensors.get(); hwSensors != nullptr) {
        return use(*hwSensors, "g_hwSensors");
    }
    if (sp<SensorsV2_0> zentelSensors = g_zentelSensors.get(); zentelSensors != nullptr) {
        return use(*zentelSensors, "g_zentelSensors");
    }
    return std::nullopt;
}

struct ParameterReply {
    int32_t ret = -1;
    std::string para;
    std::vector<int32_t> data;
};

// One request on the parameter channel. The reply's ints are kept only when asked for.
template <typename Sensors>
ParameterReply ProcessSensorParameter(Sensors& sensors, jint sensorId, jint mainCmd, jint subCmd, jint length,
                                      bool keepData) {
    ParameterReply reply;
    Finish(sensors.processSensorParameter(
            sensorId, mainCmd, subCmd, length,
            [&reply, keepData](int32_t ret, const hidl_string& para, const hidl_vec<int32_t>& data) {
                reply.ret = ret;
                reply.para = para;
                if (keepData) reply.data.assign(data.begin(), data.end());
            }));
    return reply;
}

// The ambient-light requests go to the 1.2 version of g_hwSensors when its service has it,
// else to g_zentelSensors, after the operation's line naming the one used (lines without
// prefix); nullopt when neither service can take the request.
std::optional<ParameterReply> AmbientLightRequest(const sp<SensorsV1_2>& sensorNewVer, jint sensorId, jint mainCmd,
                                                  jint subCmd, jint length, const char* useNewVerLine,
                                                  const char* useZentelLine) {
    if (sensorNewVer != nullptr) {
        MMI_LOGI("%s", useNewVerLine);
        return ProcessSensorParameter(*sensorNewVer, sensorId, mainCmd, subCmd, length, true);
    }
    if (sp<SensorsV2_0> zentelSensors = g_zentelSensors.get(); zentelSensors != nullptr) {
        MMI_LOGI("%s", useZentelLine);
        return ProcessSensorParameter(*zentelSensors, sensorId, mainCmd, subCmd, length, true);
    }
    return std::nullopt;
}

}  // namespace

jint StartSensorCalibrate(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId, jint command) {
    const std::optional<int32_t> result = WithSensors([&](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.startCalibrate(sensorId, command), -1);
        MMI_LOGI("%s: StartSensorCalibrate by hidl, %s sensorId: %d, command: %d, result: %d", kLogPrefix, handle,
                 sensorId, command, value);
        return value;
    });
    if (!result) {
        MMI_LOGE("%s: StartSensorCalibrate by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return -1;
    }
    return *result;
}

jint StartSensorSelfTest(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId, jint command) {
    const std::optional<int32_t> result = WithSensors([&](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.startSelfTest(sensorId, command), -1);
        MMI_LOGI("%s: StartSensorSelfTest by hidl, %s sensorId: %d, command: %d, result: %d", kLogPrefix, handle,
                 sensorId, command, value);
        return value;
    });
    if (!result) {
        MMI_LOGE("%s: StartSensorSelfTest fail by hidl, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return -1;
    }
    return *result;
}

jint GetSensorCalibrateDelayTime(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    const std::optional<int32_t> delayTime = WithSensors([&](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.getCalibrateDelayTime(sensorId), -1);
        MMI_LOGI("%s: GetSensorCalibrateDelayTime by hidl, %s sensorId: %d, delayTime: %d", kLogPrefix, handle,
                 sensorId, value);
        return value;
    });
    if (!delayTime) {
        MMI_LOGE("%s: GetSensorCalibrateDelayTime by hidl fail, g_hwSensors and g_zentelSensors are null",
                 kLogPrefix);
        return -1;
    }
    return *delayTime;
}

jint GetSensorSelfTestDelayTime(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    const std::optional<int32_t> delayTime = WithSensors([&](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.getSelfTestDelayTime(sensorId), -1);
        MMI_LOGI("%s: GetSensorSelfTestDelayTime by hidl, %s sensorId: %d, delayTime: %d", kLogPrefix, handle,
                 sensorId, value);
        return value;
    });
    if (!delayTime) {
        MMI_LOGE("%s: GetSensorSelfTestDelayTime by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return -1;
    }
    return *delayTime;
}

jint GetSensorCalibrateResult(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    const std::optional<int32_t> result = WithSensors([&](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.getCalibrateResult(sensorId), -1);
        // This line ends in a newline, unlike its siblings.
        MMI_LOGI("%s: GetSensorCalibrateResult by hidl, %s sensorId: %d, result: %d\n", kLogPrefix, handle, sensorId,
                 value);
        return value;
    });
    if (!result) {
        MMI_LOGE("%s: GetSensorCalibrateResult by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return -1;
    }
    return *result;
}

jint GetSensorSelfTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    const std::optional<int32_t> result = WithSensors([&](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.getSelfTestResult(sensorId), -1);
        MMI_LOGI("%s: GetSensorSelfTestResult by hidl, %s sensorId: %d, result: %d", kLogPrefix, handle, sensorId,
                 value);
        return value;
    });
    if (!result) {
        MMI_LOGE("%s: GetSensorSelfTestResult by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return -1;
    }
    return *result;
}

jstring GetSensorCalibrateType(JNIEnv* env, jobject /*thiz*/, jint sensorId) {
    struct CalibrateType {
        int32_t resultCode = -1;
        std::string text;
    };
    const std::optional<CalibrateType> type = WithSensors([&](auto& sensors, const char* /*handle*/) {
        CalibrateType answer;
        Finish(sensors.getCalibrateType(sensorId, CALIBRATE_TYPE_SIZE,
                                        [&answer](int32_t resultCode, const hidl_string& calibType) {
                                            answer.resultCode = resultCode;
                                            answer.text = calibType;
                                        }));
        return answer;
    });
    if (!type) {
        MMI_LOGE("%s: GetSensorCalibrateType by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return NewJavaString(env, "");
    }
    MMI_LOGI("%s: GetSensorCalibrateType by hidl, resultCode: %d, calibType: %s", kLogPrefix, type->resultCode,
             type->text.c_str());
    // The text goes up whatever the result code says.
    return NewJavaString(env, type->text);
}

jint GetCompassRawValueLimit(JNIEnv* /*env*/, jobject /*thiz*/) {
    const std::optional<int32_t> limit = WithSensors([](auto& sensors, const char* handle) {
        const int32_t value = ValueOr(sensors.getCompassRawValueLimit(), -1);
        MMI_LOGI("%s: GetCompassRawValueLimit by hidl, %s result: %d", kLogPrefix, handle, value);
        return value;
    });
    if (!limit) {
        // Both handles were tried; the line names only the first, as it always has.
        MMI_LOGE("%s: GetCompassRawValueLimit by hidl fail, g_hwSensors is null", kLogPrefix);
        return -1;
    }
    return *limit;
}

jboolean SensorActivate(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorType, jboolean enable, jint samplingRate) {
    const std::optional<int32_t> result = WithSensors([&](auto& sensors, const char* handle) {
        // Any non-zero byte switches the sensor on; the rate keeps its sign when widened.
        const int32_t value = ValueOr(
                sensors.activateSensor(sensorType, enable != JNI_FALSE, static_cast<int64_t>(samplingRate)), -1);
        MMI_LOGI("%s: SensorActivate by hidl, %s sensorType: %d, switch: %d, samplingRate: %d, activeResult: %d",
                 kLogPrefix, handle, sensorType, enable, samplingRate, value);
        return value;
    });
    if (!result) {
        MMI_LOGE("%s: SensorActivate by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return JNI_FALSE;
    }
    return *result == 0 ? JNI_TRUE : JNI_FALSE;
}

jstring HandleSensorParameter(JNIEnv* env, jobject /*thiz*/, jint sensorId, jint mainCmd, jint subCmd, jint length) {
    // The generic command exists from 1.1 on (the ambient-light commands want 1.2).
    sp<SensorsV1_1> sensorNewVer = CastTo<SensorsV1_1>(g_hwSensors.get());
    sp<SensorsV2_0> zentelSensors = sensorNewVer == nullptr ? g_zentelSensors.get() : nullptr;
    if (sensorNewVer == nullptr && zentelSensors == nullptr) {
        MMI_LOGE("%s: HandleSensorParameter by hidl fail, sensorNewVer and g_zentelSensors are null", kLogPrefix);
        return NewJavaString(env, "");
    }
    const ParameterReply reply =
            sensorNewVer != nullptr
                    ? ProcessSensorParameter(*sensorNewVer, sensorId, mainCmd, subCmd, length, false)
                    : ProcessSensorParameter(*zentelSensors, sensorId, mainCmd, subCmd, length, false);
    MMI_LOGI("%s: HandleSensorParameter by hidl, ret: %d, resultInfo: %s, sensorId: %d, mainCmd: %d, subCmd: %d, "
             "length: %d",
             kLogPrefix, reply.ret, reply.para.c_str(), sensorId, mainCmd, subCmd, length);
    return NewJavaString(env, reply.para);
}

jintArray GetAmbientLightParameter(JNIEnv* env, jobject /*thiz*/, jint sensorId, jint mainCmd, jint subCmd,
                                   jint length) {
    sp<SensorsV1_2> sensorNewVer = CastTo<SensorsV1_2>(g_hwSensors.get());
    MMI_LOGI("%s: GetAmbientLightParameter by hidl, length: %d", kLogPrefix, length);
    const std::optional<ParameterReply> reply =
            AmbientLightRequest(sensorNewVer, sensorId, mainCmd, subCmd, length,
                                "GetAmbientLightParameter by hidl, use sensorNewVer",
                                "GetAmbientLightParameter by hidl, use g_zentelSensors");
    if (!reply) {
        MMI_LOGE("%s: GetAmbientLightParameter by hidl fail, no sensor version can be used", kLogPrefix);
        return nullptr;
    }
    jintArray values = NewJavaIntArray(env, reply->data);
    // The length reported is the number of ints that came back, not the one asked for.
    MMI_LOGI("%s: GetAmbientLightParameter by hidl, ret: %d, para: %s, sensorId: %d, mainCmd: %d, subCmd: %d, "
             "length: %d",
             kLogPrefix, reply->ret, reply->para.c_str(), sensorId, mainCmd, subCmd,
             static_cast<int>(reply->data.size()));
    return values;
}

jint SetAmbientLightParameter(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId, jint mainCmd, jint subCmd,
                              jint length) {
    sp<SensorsV1_2> sensorNewVer = CastTo<SensorsV1_2>(g_hwSensors.get());
    MMI_LOGI("%s: SetAmbientLightParameter by hidl, length: %d", kLogPrefix, length);
    const std::optional<ParameterReply> reply =
            AmbientLightRequest(sensorNewVer, sensorId, mainCmd, subCmd, length,
                                "SetAmbientLightParameter by hidl, use sensorNewVer",
                                "SetAmbientLightParameter by hidl, use g_zentelSensors");
    if (!reply) {
        MMI_LOGE("%s: SetAmbientLightParameter by hidl fail, no sensor version can be used", kLogPrefix);
        return -1;
    }
    MMI_LOGI("%s: SetAmbientLightParameter by hidl, ret: %d, para: %s, sensorId: %d, mainCmd: %d, subCmd: %d",
             kLogPrefix, reply->ret, reply->para.c_str(), sensorId, mainCmd, subCmd);
    return reply->ret;
}

jintArray GetColorSensorValues(JNIEnv* env, jobject /*thiz*/, jint sensorId) {
    // Colour values are read from the 1.x service only, although the line names both.
    sp<SensorsV1_0> hwSensors = g_hwSensors.get();
    if (hwSensors == nullptr) {
        MMI_LOGE("%s: GetColorSensorValues by hidl fail, g_hwSensors and g_zentelSensors are null.", kLogPrefix);
        return NewJavaIntArray(env, nullptr, 0);
    }
    // The service's status is not part of the answer: whatever ints came back go up.
    std::vector<int32_t> data;
    Finish(hwSensors->getSensorData(sensorId, [&data](int32_t /*ret*/, const hidl_vec<int32_t>& values) {
        data.assign(values.begin(), values.end());
    }));
    jintArray values = NewJavaIntArray(env, data);
    MMI_LOGI("%s: GetColorSensorValues by hidl success, return %d ints.", kLogPrefix, static_cast<int>(data.size()));
    return values;
}

}  // namespace native_hidl
