// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jint SendCmdToFingerprintHal(JNIEnv* /*env*/, jobject /*thiz*/, jint /*cmd*/) {
    MMI_LOGE("%s: SetCmdToFingerprintHal by hidl fail, g_hwFingerprint is null", kLogPrefix);
    return -1;
}

}  // namespace native_hidl
