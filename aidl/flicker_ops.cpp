// Placeholder operations: until each is written, it answers as when its service is missing.
#include <mmi_log.h>

#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using mmi::kLogPrefix;

namespace native_aidl {

jint GetFlickerFrequency(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetFlickerFrequency by aidl fail, g_aidlSensors is null", kLogPrefix);
    return -1;
}

jintArray GetFlickerFrequencyAndAmplitude(JNIEnv* /*env*/, jobject /*thiz*/, jint /*sensorId*/) {
    MMI_LOGE("%s: GetFlickerFrequencyAndAmplitude by aidl fail, g_aidlSensors is null", kLogPrefix);
    return nullptr;
}

}  // namespace native_aidl
