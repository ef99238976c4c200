// Sensor calibration and self test, the sensor parameter channel, colour-sensor values,
// sensor activation and the compass limit over the AIDL sensor service. Every result comes
// back through an out value preset before the call; the binder status is not looked at, so
// a failed transaction answers with the preset.
#include <mmi_log.h>
#include <service_access.h>

#include <vector>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using mmi::NewJavaIntArray;
using mmi::NewJavaString;
using vendor::zentel::hardware::sensors::ISensors;
using vendor::zentel::hardware::sensors::ZtSensorString;

namespace native_aidl {
namespace {

// The text buffer size the calibration type is asked with.
constexpr int32_t CALIBRATE_TYPE_SIZE = 1024;
// Reply sizes the parameter channel is pre-sized with: the ambient-light read may fill up
// to 4096 ints; the set and the generic command get a small buffer.
constexpr size_t AMBIENT_LIGHT_REPLY_INTS = 4096;
constexpr size_t PARAMETER_REPLY_INTS = 64;

struct ParameterReply {
    int32_t ret = -1;
    ZtSensorString para;
    std::vector<int32_t> data;
};

// One request on the parameter channel with a reply vector of `replyInts` zeros.
ParameterReply ProcessSensorParameter(ISensors& sensors, jint sensorId, jint mainCmd, jint subCmd, jint length,
                                      size_t replyInts) {
    ParameterReply reply;
    reply.data.assign(replyInts, 0);
    sensors.processSensorParameter(sensorId, mainCmd, subCmd, length, &reply.para, &reply.data, &reply.ret);
    return reply;
}

}  // namespace

jint StartSensorCalibrate(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId, jint command) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: StartSensorCalibrate by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t result = -1;
    sensors->startCalibrate(sensorId, command, &result);
    MMI_LOGI("%s: StartSensorCalibrate by aidl, g_aidlSensors sensorId: %d, command: %d, result: %d", kLogPrefix,
             sensorId, command, result);
    return result;
}

jint StartSensorSelfTest(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId, jint command) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: StartSensorSelfTest by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t result = -1;
    sensors->startSelfTest(sensorId, command, &result);
    MMI_LOGI("%s: StartSensorSelfTest by aidl, g_aidlSensors sensorId: %d, command: %d, result: %d", kLogPrefix,
             sensorId, command, result);
    return result;
}

jint GetSensorCalibrateDelayTime(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetSensorCalibrateDelayTime by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t delayTime = -1;
    sensors->getCalibrateDelayTime(sensorId, &delayTime);
    MMI_LOGI("%s: GetSensorCalibrateDelayTime by aidl, g_aidlSensors sensorId: %d, delayTime: %d", kLogPrefix,
             sensorId, delayTime);
    return delayTime;
}

jint GetSensorSelfTestDelayTime(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetSensorSelfTestDelayTime by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t delayTime = -1;
    sensors->getSelfTestDelayTime(sensorId, &delayTime);
    MMI_LOGI("%s: GetSensorSelfTestDelayTime by aidl, g_aidlSensors sensorId: %d, delayTime: %d", kLogPrefix,
             sensorId, delayTime);
    return delayTime;
}

jint GetSensorCalibrateResult(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetSensorCalibrateResult by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t result = -1;
    sensors->getCalibrateResult(sensorId, &result);
    MMI_LOGI("%s: GetSensorCalibrateResult by aidl, g_aidlSensors sensorId: %d, result: %d", kLogPrefix, sensorId,
             result);
    return result;
}

jint GetSensorSelfTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetSensorSelfTestResult by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t result = -1;
    sensors->getSelfTestResult(sensorId, &result);
    MMI_LOGI("%s: GetSensorSelfTestResult by aidl, g_aidlSensors sensorId: %d, result: %d", kLogPrefix, sensorId,
             result);
    return result;
}

jstring GetSensorCalibrateType(JNIEnv* env, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetSensorCalibrateType by aidl fail, g_aidlSensors are null");
    if (sensors == nullptr) return NewJavaString(env, "");
    int32_t resultCode = -1;
    ZtSensorString calibType;
    sensors->getCalibrateType(sensorId, CALIBRATE_TYPE_SIZE, &calibType, &resultCode);
    MMI_LOGI("%s: GetSensorCalibrateType by aidl, resultCode: %d, calibType: %s", kLogPrefix, resultCode,
             calibType.text.c_str());
    // The text goes up whatever the result code says; after a failure it is usually empty.
    return NewJavaString(env, calibType.text);
}

jint GetCompassRawValueLimit(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetCompassRawValueLimit by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    int32_t value = -1;
    sensors->getCompassRawValueLimit(&value);
    MMI_LOGI("%s: GetCompassRawValueLimit by aidl, g_aidlSensors result: %d", kLogPrefix, value);
    return value;
}

jboolean SensorActivate(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorType, jboolean enable, jint samplingRate) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: SensorActivate by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return JNI_FALSE;
    int32_t result = -1;
    // Any non-zero byte switches the sensor on; the rate keeps its sign when widened.
    sensors->activateSensor(sensorType, enable != JNI_FALSE, static_cast<int64_t>(samplingRate), &result);
    MMI_LOGI("%s: SensorActivate by aidl, g_aidlSensors sensorType: %d, switch: %d, samplingRate: %d, result: %d",
             kLogPrefix, sensorType, enable, samplingRate, result);
    return result == 0 ? JNI_TRUE : JNI_FALSE;
}

jstring HandleSensorParameter(JNIEnv* env, jobject /*thiz*/, jint sensorId, jint mainCmd, jint subCmd, jint length) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: HandleSensorParameter by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return NewJavaString(env, "");
    const ParameterReply reply =
            ProcessSensorParameter(*sensors, sensorId, mainCmd, subCmd, length, PARAMETER_REPLY_INTS);
    MMI_LOGI("%s: HandleSensorParameter by aidl, ret: %d, resultInfo: %s, sensorId: %d, mainCmd: %d, subCmd: %d, "
             "length: %d ",
             kLogPrefix, reply.ret, reply.para.text.c_str(), sensorId, mainCmd, subCmd, length);
    return NewJavaString(env, reply.para.text);
}

jintArray GetAmbientLightParameter(JNIEnv* env, jobject /*thiz*/, jint sensorId, jint mainCmd, jint subCmd,
                                   jint length) {
    MMI_LOGI("%s: GetAmbientLightParameter by aidl, length: %d", kLogPrefix, length);
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetAmbientLightParameter by aidl fail, ");
    if (sensors == nullptr) return nullptr;
    const ParameterReply reply =
            ProcessSensorParameter(*sensors, sensorId, mainCmd, subCmd, length, AMBIENT_LIGHT_REPLY_INTS);
    jintArray values = NewJavaIntArray(env, reply.data);
    // The length reported is the number of ints that came back, not the one asked for.
    MMI_LOGI("%s: GetAmbientLightParameter by aidl, ret: %d, para: %s, sensorId: %d, mainCmd: %d, subCmd: %d, "
             "length: %d",
             kLogPrefix, reply.ret, reply.para.text.c_str(), sensorId, mainCmd, subCmd,
             static_cast<int>(reply.data.size()));
    return values;
}

jint SetAmbientLightParameter(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId, jint mainCmd, jint subCmd,
                              jint length) {
    MMI_LOGI("%s: SetAmbientLightParameter by aidl, length: %d", kLogPrefix, length);
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: SetAmbientLightParameter by aidl fail, g_aidlSensors is null");
    if (sensors == nullptr) return -1;
    const ParameterReply reply =
            ProcessSensorParameter(*sensors, sensorId, mainCmd, subCmd, length, PARAMETER_REPLY_INTS);
    MMI_LOGI("%s: SetAmbientLightParameter by aidl, ret: %d, para: %s, sensorId: %d, mainCmd: %d, subCmd: %d",
             kLogPrefix, reply.ret, reply.para.text.c_str(), sensorId, mainCmd, subCmd);
    return reply.ret;
}

jintArray GetColorSensorValues(JNIEnv* env, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = mmi::ServiceOr(g_aidlSensors, "%s: GetColorSensorValues by aidl fail, g_aidlSensors is null.");
    if (sensors == nullptr) return NewJavaIntArray(env, nullptr, 0);
    std::vector<int32_t> data;
    int32_t ret = -1;
    sensors->getSensorData(sensorId, &data, &ret);
    jintArray values = NewJavaIntArray(env, data);
    MMI_LOGI("%s: GetColorSensorValues by aidl success, return %d ints.", kLogPrefix, static_cast<int>(data.size()));
    return values;
}

}  // namespace native_aidl
