// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {

jint GetFlickerFrequency(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetFlickerFrequency by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
    return -1;
}

}  // namespace native_hidl
