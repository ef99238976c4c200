// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jint GetCapacitanceTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint /*unused*/) {
    MMI_LOGE("%s: GetCapacitanceTestResult by aidl fail, g_aidlTouchScreen is null", kLogPrefix);
    return -1;
}

jstring GetCapacitanceCalibrateResult(JNIEnv* env, jobject /*thiz*/, jint /*value*/) {
    MMI_LOGE("%s: GetCapacitanceCalibrateResult by aidl fail, g_aidlTouchScreen is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SetTouchScreenFeatureConfig(JNIEnv* /*env*/, jobject /*thiz*/, jint /*feature*/, jstring /*config*/) {
    MMI_LOGE("%s: SetTouchScreenFeatureConfig by aidl fail, g_aidlTouchScreen is null", kLogPrefix);
    return -1;
}

jstring GetRotateCrownTestResult(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("%s: GetRotateCrownTestResult by aidl fail, g_aidlTouchScreen is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

}  // namespace native_aidl
