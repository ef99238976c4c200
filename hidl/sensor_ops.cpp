// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jint GetSensorCalibrateDelayTime(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetSensorCalibrateDelayTime by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

jint GetSensorSelfTestDelayTime(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetSensorSelfTestDelayTime by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

jint StartSensorCalibrate(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/, jint /*command*/) {
    MMI_LOGE("%s: StartSensorCalibrate by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

jint StartSensorSelfTest(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/, jint /*command*/) {
    MMI_LOGE("%s: StartSensorSelfTest fail by hidl, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

jint GetSensorCalibrateResult(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetSensorCalibrateResult by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

jint GetSensorSelfTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetSensorSelfTestResult by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

jstring GetSensorCalibrateType(JNIEnv* env, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetSensorCalibrateType by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint GetCompassRawValueLimit(JNIEnv* /*env*/, jobject /*thiz*/) {
    MMI_LOGE("%s: GetCompassRawValueLimit by hidl fail, g_hwSensors is null", kLogPrefix);
    return -1;
}

jboolean SensorActivate(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorType*/, jboolean /*enable*/, jint /*samplingRate*/) {
    MMI_LOGE("%s: SensorActivate by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return JNI_FALSE;
}

jstring HandleSensorParameter(JNIEnv* env, jobject /*thiz*/, jint /*sensorId*/, jint /*mainCmd*/, jint /*subCmd*/, jint /*length*/) {
    MMI_LOGE("%s: HandleSensorParameter by hidl fail, sensorNewVer and g_zentelSensors are null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jintArray GetAmbientLightParameter(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/, jint /*mainCmd*/, jint /*subCmd*/, jint length) {
    MMI_LOGI("%s: GetAmbientLightParameter by hidl, length: %d", kLogPrefix, length);
    MMI_LOGE("%s: GetAmbientLightParameter by hidl fail, no sensor version can be used", kLogPrefix);
    return nullptr;
}

jint SetAmbientLightParameter(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/, jint /*mainCmd*/, jint /*subCmd*/, jint length) {
    MMI_LOGI("%s: SetAmbientLightParameter by hidl, length: %d", kLogPrefix, length);
    MMI_LOGE("%s: SetAmbientLightParameter by hidl fail, no sensor version can be used", kLogPrefix);
    return -1;
}

jintArray GetColorSensorValues(JNIEnv* env, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetColorSensorValues by hidl fail, g_hwSensors and g_zentelSensors are null.", kLogPrefix);
    return mmi::NewJavaIntArray(env, nullptr, 0);
}

}  // namespace native_hidl
