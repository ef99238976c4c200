// Flicker measurement over the HIDL sensor services. A service that cannot detect flicker
// itself hands over raw samples instead, and the frequency is computed here.
#include <flicker_detector.h>
#include <mmi_log.h>

#include <algorithm>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_vec;
using mmi::kLogPrefix;

namespace native_hidl {
namespace {

constexpr int kRawSampleCount = 256;
constexpr float kRawSampleRateHz = 1000.0f;

struct Measurement {
    int32_t result = -1;
    std::vector<int32_t> data;
    bool supported = false;
};

// Reads the sensor's data and then asks whether the service detected the flicker itself;
// the second question is asked whatever the first answered.
template <typename Sensors>
Measurement Measure(Sensors& sensors, int32_t sensorId) {
    Measurement m;
    Finish(sensors.getSensorData(sensorId, [&m](int32_t result, const hidl_vec<int32_t>& data) {
        m.result = result;
        m.data.assign(data.begin(), data.end());
    }));
    m.supported = ValueOr(sensors.isFlickerSupported(sensorId), false);
    return m;
}

}  // namespace

jint GetFlickerFrequency(JNIEnv* /*env*/, jobject /*thiz*/, jint sensorId) {
    sp<hw::sensors::V1_0::ISensors> hwSensors = g_hwSensors.get();
    sp<hw::sensors::V2_0::ISensors> zentelSensors = g_zentelSensors.get();
    if (hwSensors == nullptr && zentelSensors == nullptr) {
        MMI_LOGE("%s: GetFlickerFrequency by hidl fail, g_hwSensors and g_zentelSensors are null", kLogPrefix);
        return -1;
    }
    const Measurement m = hwSensors != nullptr ? Measure(*hwSensors, sensorId) : Measure(*zentelSensors, sensorId);
    if (m.result != 0) {
        MMI_LOGE("%s: GetFlickerFrequency by hidl fail, result fail", kLogPrefix);
        return -1;
    }
    MMI_LOGI("%s: GetFlickerFrequency by hidl, isFlickerSupported: %d", kLogPrefix, m.supported ? 1 : 0);
    int frequency = -1;
    if (m.supported) {
        if (m.data.empty()) {
            MMI_LOGE("%s: GetFlickerFrequency by hidl fail, result data is illegal", kLogPrefix);
            return -1;
        }
        frequency = m.data[0];
        MMI_LOGI("%s: GetFlickerFrequency by hidl, frequenceDetected: %d", kLogPrefix, frequency);
        return frequency;
    }
    // Raw samples: the first 256 are analysed at 1000 Hz, any further ones ignored.
    int samples[kRawSampleCount] = {};
    if (m.data.size() < static_cast<size_t>(kRawSampleCount)) {
        MMI_LOGE("%s: GetFlickerFrequency by hidl fail, original data is illegal", kLogPrefix);
        return -1;
    }
    std::copy_n(m.data.begin(), kRawSampleCount, samples);
    DetectFlickerFrequence(samples, kRawSampleCount, frequency, kRawSampleRateHz);  // frequency stays -1 on failure
    MMI_LOGI("%s: GetFlickerFrequency by hidl, frequenceDetected: %d", kLogPrefix, frequency);
    return frequency;
}

}  // namespace native_hidl
