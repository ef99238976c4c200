// Touch-screen tests over the HIDL touch-screen service 1.0: capacitance test and
// calibration, rotary-crown self test and feature configuration. Results that come through
// a callback are copied into locals that hold their presets until the service answers.
#include <mmi_log.h>
#include <service_access.h>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_string;
using mmi::kLogPrefix;
using mmi::NewJavaString;

namespace native_hidl {
namespace {

using TouchScreenV1_0 = hw::tp::V1_0::ITouchscreen;

constexpr const char* kFailInfoField = "sTpCapacitanceFailInfo";
constexpr const char* kCalibrateFailedText = "Capacitance Calibrate Failed";
constexpr const char* kRotateCrownFailedText = "error";

// Hands the capacitance test's text to the Java side through the static String field
// MmiNativeManager.sTpCapacitanceFailInfo. A lookup that fails is logged and its exception
// cleared, so the test's status still reaches Java.
void StoreCapacitanceFailInfo(JNIEnv* env, const std::string& info) {
    mmi::SetStaticStringField(env, "GetCapacitanceTestResult by hidl", mmi::kNativeManagerClass, kFailInfoField, info);
}

}  // namespace

jint GetCapacitanceTestResult(JNIEnv* env, jobject /*thiz*/, jint /*unused*/) {
    sp<TouchScreenV1_0> touch = mmi::ServiceOr(g_hwTouchScreen, "%s: GetCapacitanceTestResult by hidl fail, g_hwTouchScreen is null");
    if (touch == nullptr) return -1;
    TextResult result;
    Finish(touch->getCapacitanceTestResult(Into(result)));
    MMI_LOGI("%s: GetCapacitanceTestResult by hidl, ret: %d, info: %s", kLogPrefix, result.ret, result.text.c_str());
    // The text is stored whatever the status: a passing test leaves its own (often empty) text.
    StoreCapacitanceFailInfo(env, result.text);
    return result.ret;
}

jstring GetCapacitanceCalibrateResult(JNIEnv* env, jobject /*thiz*/, jint value) {
    sp<TouchScreenV1_0> touch =
            mmi::ServiceOr(g_hwTouchScreen, "%s: GetCapacitanceCalibrateResult by hidl fail, g_hwTouchScreen is null");
    if (touch == nullptr) return NewJavaString(env, kCalibrateFailedText);
    TextResult result;
    Finish(touch->getCapacitanceCalibrateResult(value, Into(result)));
    if (result.ret != 0) {
        MMI_LOGE("%s: GetCapacitanceCalibrateResult by hidl fail, ret: %d", kLogPrefix, result.ret);
        result.text = kCalibrateFailedText;
    }
    MMI_LOGI("%s: GetCapacitanceCalibrateResult by hidl, ret: %d, info: %s", kLogPrefix, result.ret,
             result.text.c_str());
    return NewJavaString(env, result.text);
}

jint SetTouchScreenFeatureConfig(JNIEnv* env, jobject /*thiz*/, jint feature, jstring config) {
    sp<TouchScreenV1_0> touch = mmi::ServiceOr(g_hwTouchScreen, "%s: SetTouchScreenFeatureConfig by hidl fail, g_hwTouchScreen is null");
    if (touch == nullptr) return -1;
    mmi::JavaUtfChars configChars(env, config);
    if (configChars.isNull()) {
        mmi::LogNullArgument("SetTouchScreenFeatureConfig by hidl", "config");
        return -1;
    }
    const int32_t result = ValueOr(touch->setTouchScreenFeatureConfig(feature, hidl_string(configChars.c_str())), -1);
    MMI_LOGI("%s: SetTouchScreenFeatureConfig by hidl, feature: %d, config: %s", kLogPrefix, feature,
             configChars.c_str());
    return result;
}

jstring GetRotateCrownTestResult(JNIEnv* env, jobject /*thiz*/) {
    sp<TouchScreenV1_0> touch = mmi::ServiceOr(g_hwTouchScreen, "%s: GetRotateCrownTestResult by hidl fail, g_hwTouchScreen is null");
    if (touch == nullptr) return NewJavaString(env, "");
    bool success = false;  // stays false when the service never calls back
    std::string info;
    Finish(touch->getRotateCrownTestResult([&](bool ok, const hidl_string& text) {
        success = ok;
        info = text;
    }));
    if (!success) {
        // The service's text is dropped: a failed self test answers the fixed failure text.
        MMI_LOGE("%s: GetRotateCrownTestResult by hidl fail", kLogPrefix);
        return NewJavaString(env, kRotateCrownFailedText);
    }
    MMI_LOGI("%s: GetRotateCrownTestResult by hidl, info: %s", kLogPrefix, info.c_str());
    return NewJavaString(env, info);
}

}  // namespace native_hidl
