// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jint SetLightBrightness(JNIEnv* /*env*/, jobject /*thiz*/, jint /*id*/, jint /*brightness*/) {
    MMI_LOGE("%s: SetLightBrightness by hidl fail, g_hwLight is null", kLogPrefix);
    return -1;
}

}  // namespace native_hidl
