// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jstring GetScreenCurrentFps(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("%s: GetScreenCurrentFps by aidl fail, g_aidlDisplay is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jstring GetScreenConfig(JNIEnv* env, jobject /*thiz*/, jint /*station*/) {
    MMI_LOGE("%s: GetScreenConfig by aidl fail, g_aidlDisplay is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SetDisplayParameter(JNIEnv* /*env*/, jobject /*thiz*/, jint /*scene*/, jint /*dataInt*/, jstring /*dataString*/) {
    MMI_LOGE("%s: SetDisplayParameter, g_aidlDisplay is null", kLogPrefix);
    return -1;
}

jint SetBackLightBrightness(JNIEnv* /*env*/, jobject /*thiz*/, jint /*brightness*/) {
    MMI_LOGE("%s: SetBackLightBrightness by aidl fail, g_aidlDisplay is null", kLogPrefix);
    return -1;
}

jint GetDisplayPanelType(JNIEnv* /*env*/, jobject /*thiz*/) {
    MMI_LOGE("%s: GetDisplayPanelType by aidl fail, g_aidlDisplay is null", kLogPrefix);
    return -1;
}

jint SetDisplaySelfAdaptMinFps(JNIEnv* /*env*/, jobject /*thiz*/, jint /*dataInt*/) {
    MMI_LOGE("%s: SetDisplaySelfAdaptMinFps, g_aidlDisplay is null", kLogPrefix);
    return -1;
}

}  // namespace native_aidl
