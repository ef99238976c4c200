// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jintArray GetCapabilities(JNIEnv* /*env*/, jobject /*thiz*/) {
    MMI_LOGE("%s: GetCapabilities by aidl fail, g_aidlVaelon is null", kLogPrefix);
    return nullptr;
}

jint GetVaelonOvertime(JNIEnv* /*env*/, jobject /*thiz*/, jint /*serviceType*/) {
    MMI_LOGE("%s: GetVaelonOvertime by aidl fail, g_aidlVaelon is null", kLogPrefix);
    return -1;
}

jint RegisterClient(JNIEnv* /*env*/, jobject /*thiz*/, jint /*serviceType*/) {
    MMI_LOGE("%s: RegisterClient by aidl fail, g_aidlVaelon is null", kLogPrefix);
    return -1;
}

jint UnregisterClient(JNIEnv* /*env*/, jobject /*thiz*/) {
    MMI_LOGE("%s: UnregisterClient by aidl fail, g_aidlVaelon is null", kLogPrefix);
    return -1;
}

}  // namespace native_aidl
