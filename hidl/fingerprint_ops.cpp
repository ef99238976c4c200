// Factory commands to the fingerprint HAL over its HIDL extension 2.2.
#include <mmi_log.h>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using mmi::kLogPrefix;

namespace native_hidl {

jint SendCmdToFingerprintHal(JNIEnv* /*env*/, jobject /*thiz*/, jint cmd) {
    sp<hw::biometrics::fingerprint::V2_2::IExtBiometricsFingerprint> fingerprint = g_hwFingerprint.get();
    if (fingerprint == nullptr) {
        MMI_LOGE("%s: SetCmdToFingerprintHal by hidl fail, g_hwFingerprint is null", kLogPrefix);
        return -1;
    }
    const int32_t ret = ValueOr(fingerprint->sendCmdToHal(cmd), -1);
    MMI_LOGI("%s: SetCmdToFingerprintHal by hidl, cmd = %d ret = %d", kLogPrefix, cmd, ret);
    return ret;
}

}  // namespace native_hidl
