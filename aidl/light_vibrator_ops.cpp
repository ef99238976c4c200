// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jint SetLightBrightness(JNIEnv* /*env*/, jobject /*thiz*/, jint /*id*/, jint /*brightness*/) {
    MMI_LOGE("%s: SetLightBrightness by aidl fail, g_aidlLight is null", kLogPrefix);
    return -1;
}

void SetVibratorPar(JNIEnv* /*env*/, jobject /*thiz*/, jstring /*command*/) {
    MMI_LOGE("%s: SetVibratorPar by aidl fail, g_aidlVibrator is null", kLogPrefix);
}

jstring GetVibratorResult(JNIEnv* env, jobject /*thiz*/, jstring /*command*/) {
    MMI_LOGE("%s: GetVibratorResult by aidl fail, g_aidlVibrator is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

}  // namespace native_aidl
