// Factory commands to the fingerprint HAL through the AIDL fingerprint session.
#include <mmi_log.h>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jint SendCmdToFingerprintHal(JNIEnv* /*env*/, jobject /*thiz*/, jint cmd) {
    std::shared_ptr<fingerprint::ISession> session = g_aidlFingerprintSession.get();
    if (session == nullptr) {
        MMI_LOGE("%s: SendCmdToFingerprintHal by aidl fail, g_aidlFingerprintSession is null", kLogPrefix);
        return -1;
    }
    int32_t ret = -1;
    // The status is released at once: the answer alone decides, and a failed call keeps -1.
    session->sendCmdToHal(cmd, &ret);
    MMI_LOGI("%s: SetCmdToFingerprintHal by aidl, cmd = %d ret = %d", kLogPrefix, cmd, ret);
    return ret;
}

}  // namespace native_aidl
