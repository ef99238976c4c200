// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jstring GetScreenCurrentFps(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGE("%s: GetScreenCurrentFps by hidl fail, g_hwDisplay is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jstring GetScreenConfig(JNIEnv* env, jobject /*thiz*/, jint /*station*/) {
    MMI_LOGE("%s: GetScreenConfig by hidl fail, g_hwDisplay is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SetDisplayParameter(JNIEnv* /*env*/, jobject /*thiz*/, jint /*scene*/, jint /*dataInt*/, jstring /*dataString*/) {
    MMI_LOGE("%s: SetDisplayParameter by hidl, g_hwDisplay is null", kLogPrefix);
    return -1;
}

jint GetDisplayPanelType(JNIEnv* /*env*/, jobject /*thiz*/) {
    MMI_LOGE("%s: GetDisplayPanelType by hidl fail, g_hwDisplay is null", kLogPrefix);
    return -1;
}

jint SetDisplaySelfAdaptMinFps(JNIEnv* /*env*/, jobject /*thiz*/, jint /*dataInt*/) {
    MMI_LOGE("%s: SetDisplaySelfAdaptMinFps by hidl, g_hwDisplay is null", kLogPrefix);
    return -1;
}

}  // namespace native_hidl
