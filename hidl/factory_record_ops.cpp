// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jint SetMmiTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint /*item*/, jint /*result*/) {
    MMI_LOGE("%s: SetMmiTestResult by hidl fail, g_hwFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetManufactureStationFlag(JNIEnv* env, jobject /*thiz*/, jint /*stationId*/) {
    MMI_LOGE("%s: GetManufactureStationFlag by hidl fail, g_hwFactoryInterface is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SetTestCycle(JNIEnv* /*env*/, jobject /*thiz*/, jint stationId, jint cycle) {
    MMI_LOGI("%s: SetTestCycle by hidl, stationID: %d, cycle: %d", kLogPrefix, stationId, cycle);
    MMI_LOGE("%s: SetTestCycle by hidl fail, hwFactoryNew is null", kLogPrefix);
    return -1;
}

jint SetNmCardTestMode(JNIEnv* /*env*/, jobject /*thiz*/, jstring /*mode*/) {
    MMI_LOGE("%s: SetNmCardTestMode by hidl fail, g_hwFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetNmCardTestResult(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("%s: GetNmCardTestResult by hidl fail, g_hwFactoryInterface is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SendBigDataOperation(JNIEnv* /*env*/, jobject /*thiz*/, jobject /*operation*/) {
    MMI_LOGE("%s: SendBigDataOperation by hidl fail, env or g_hwFactoryInterface is null", kLogPrefix);
    return -1;
}

jint SendBigDataValue(JNIEnv* /*env*/, jobject /*thiz*/, jobject /*value*/) {
    MMI_LOGE("%s: SendBigDataValue by hidl fail, env or g_hwFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetOeminfo(JNIEnv* env, jobject /*thiz*/, jint /*type*/, jint /*offset*/, jint /*length*/) {
    MMI_LOGE("%s: GetOeminfo by hidl fail, hwFactoryNew is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint GetVerifySignatureResult(JNIEnv* /*env*/, jobject /*thiz*/, jbyteArray /*signature*/) {
    MMI_LOGE("%s: GetVerifySignatureResult by hidl fail, g_hwFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetRsaSignInfo(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("GetRsaSignInfo by hidl, g_hwFactoryInterface is null");
    return mmi::NewJavaString(env, "");
}

jstring GetDeviceInfo(JNIEnv* env, jobject /*thiz*/, jint /*id*/) {
    MMI_LOGE("GetDeviceInfo by hidl, g_hwFactoryInterface is null");
    return mmi::NewJavaString(env, "");
}

}  // namespace native_hidl
