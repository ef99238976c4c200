// Flicker measurement over the AIDL sensor service, which computes the frequency itself.
#include <mmi_log.h>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using vendor::zentel::hardware::sensors::ISensors;

namespace native_aidl {

jint GetFlickerFrequency(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = g_aidlSensors.get();
    if (sensors == nullptr) {
        MMI_LOGE("%s: GetFlickerFrequency by aidl fail, g_aidlSensors is null", kLogPrefix);
        return -1;
    }
    int32_t result = -1;
    std::vector<int32_t> data;
    sensors->getSensorData(sensorId, &data, &result);
    if (result == 0 && !data.empty()) {
        MMI_LOGI("%s: GetFlickerFrequency by aidl, frequenceDetected: %d", kLogPrefix, data[0]);
        return data[0];
    }
    MMI_LOGE("%s: GetFlickerFrequency by aidl fail, get result fail, result: %d", kLogPrefix, result);
    return -1;
}

jintArray GetFlickerFrequencyAndAmplitude(JNIEnv* env, jobject /*thiz*/, jint sensorId) {
    sp<ISensors> sensors = g_aidlSensors.get();
    if (sensors == nullptr) {
        MMI_LOGE("%s: GetFlickerFrequencyAndAmplitude by aidl fail, g_aidlSensors is null", kLogPrefix);
        return nullptr;
    }
    int32_t result = -1;
    std::vector<int32_t> data;
    sensors->getSensorData(sensorId, &data, &result);
    jintArray answer = env->NewIntArray(2);
    if (result != 0 || data.empty()) {
        // An empty answer counts as a failure with status 0.
        MMI_LOGE("%s: GetFlickerFrequencyAndAmplitude by aidl fail, get result fail, result: %d", kLogPrefix,
                 result != 0 ? result : 0);
        if (answer != nullptr) env->DeleteLocalRef(answer);
        return nullptr;
    }
    const jint values[2] = {data[0], data.size() >= 2 ? data[1] : -1};
    MMI_LOGI("%s: GetFlickerFrequencyAndAmplitude by aidl, frequenceDetected: %d, amplitude: %d", kLogPrefix,
             values[0], values[1]);
    if (answer != nullptr) env->SetIntArrayRegion(answer, 0, 2, values);
    return answer;
}

}  // namespace native_aidl
