// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jint GetCapacitanceTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint /*unused*/) {
    MMI_LOGE("%s: GetCapacitanceTestResult by hidl fail, g_hwTouchScreen is null", kLogPrefix);
    return -1;
}

jstring GetCapacitanceCalibrateResult(JNIEnv* env, jobject /*thiz*/, jint /*value*/) {
    MMI_LOGE("%s: GetCapacitanceCalibrateResult by hidl fail, g_hwTouchScreen is null", kLogPrefix);
    return mmi::NewJavaString(env, "Capacitance Calibrate Failed");
}

jint SetTouchScreenFeatureConfig(JNIEnv* /*env*/, jobject /*thiz*/, jint /*feature*/, jstring /*config*/) {
    MMI_LOGE("%s: SetTouchScreenFeatureConfig by hidl fail, g_hwTouchScreen is null", kLogPrefix);
    return -1;
}

jstring GetRotateCrownTestResult(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("%s: GetRotateCrownTestResult by hidl fail, g_hwTouchScreen is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

}  // namespace native_hidl
