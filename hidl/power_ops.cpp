// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jstring GetPowerState(JNIEnv* env, jobject /*thiz*/, jstring /*key*/) {
    MMI_LOGE("%s: GetPowerState by hidl fail, g_hwPower is null", kLogPrefix);
    return mmi::NewJavaString(env, "");
}

jint SetPowerState(JNIEnv* /*env*/, jobject /*thiz*/, jstring /*testScene*/, jstring /*para*/) {
    MMI_LOGE("%s: SetPowerState by hidl fail, g_hwPower is null", kLogPrefix);
    return -1;
}

jint CheckUsbSpeed(JNIEnv* /*env*/, jobject /*thiz*/, jstring /*scene*/) {
    MMI_LOGE("%s: CheckUsbSpeed by hidl fail, g_hwPower is null", kLogPrefix);
    return -1;
}

}  // namespace native_hidl
