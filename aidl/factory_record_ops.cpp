// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jint SetMmiTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint /*item*/, jint /*result*/) {
    MMI_LOGE("%s: SetMmiTestResult by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetManufactureStationFlag(JNIEnv* env, jobject /*thiz*/, jint /*stationId*/) {
    MMI_LOGE("%s: GetManufactureStationFlag by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SetTestCycle(JNIEnv* /*env*/, jobject /*thiz*/, jint stationId, jint cycle) {
    MMI_LOGI("%s: SetTestCycle by aidl, stationID: %d, cycle: %d", kLogPrefix, stationId, cycle);
    MMI_LOGE("%s: SetTestCycle by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return -1;
}

jint SetNmCardTestMode(JNIEnv* /*env*/, jobject /*thiz*/, jstring /*mode*/) {
    MMI_LOGE("%s: SetNmCardTestMode by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetNmCardTestResult(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("%s: GetNmCardTestResult by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SendBigDataOperation(JNIEnv* /*env*/, jobject /*thiz*/, jobject /*operation*/) {
    MMI_LOGE("%s: SendBigDataOperation by aidl fail, env or g_aidlFactoryInterface is null", kLogPrefix);
    return -1;
}

jint SendBigDataValue(JNIEnv* /*env*/, jobject /*thiz*/, jobject /*value*/) {
    MMI_LOGE("%s: SendBigDataValue by aidl fail, env or g_aidlFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetOeminfo(JNIEnv* env, jobject /*thiz*/, jint /*type*/, jint /*offset*/, jint /*length*/) {
    MMI_LOGE("%s: GetOeminfo by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint GetVerifySignatureResult(JNIEnv* /*env*/, jobject /*thiz*/, jbyteArray /*signature*/) {
    MMI_LOGE("%s: GetVerifySignatureResult by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
    return -1;
}

jstring GetRsaSignInfo(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("GetRsaSignInfo by aidl, g_aidlFactoryInterface is null");
    return mmi::NewJavaString(env, "");
}

jstring GetDeviceInfo(JNIEnv* env, jobject /*thiz*/, jint /*id*/) {
    MMI_LOGE("GetDeviceInfo by aidl, g_aidlFactoryInterface is null");
    return mmi::NewJavaString(env, "");
}

}  // namespace native_aidl
