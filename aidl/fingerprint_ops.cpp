// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jint SendCmdToFingerprintHal(JNIEnv* /*env*/, jobject /*thiz*/, jint /*cmd*/) {
    MMI_LOGE("%s: SendCmdToFingerprintHal by aidl fail, g_aidlFingerprintSession is null", kLogPrefix);
    return -1;
}

}  // namespace native_aidl
