// Touch-screen tests over the AIDL touch-screen service: capacitance test and calibration,
// rotary-crown self test and feature configuration. Binder statuses are not looked at: a
// failed call leaves the fresh result record (status 0, empty text) or the preset.
#include <mmi_log.h>
#include <service_access.h>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using mmi::NewJavaString;
using vendor::zentel::hardware::tp::ITouchscreen;
using vendor::zentel::hardware::tp::ITPIntString;

namespace native_aidl {
namespace {

constexpr const char* kFailInfoField = "sTpCapacitanceFailInfo";

// Hands the capacitance test's text to the Java side through the static String field
// MmiNativeManager.sTpCapacitanceFailInfo. A lookup that fails is logged and its exception
// cleared, so the test's status still reaches Java.
void StoreCapacitanceFailInfo(JNIEnv* env, const std::string& info) {
    mmi::SetStaticStringField(env, "GetCapacitanceTestResult by aidl", mmi::kNativeManagerClass, kFailInfoField, info);
}

}  // namespace

jint GetCapacitanceTestResult(JNIEnv* env, jobject /*thiz*/, jint /*unused*/) {
    sp<ITouchscreen> touch = mmi::ServiceOr(g_aidlTouchScreen, "%s: GetCapacitanceTestResult by aidl fail, g_aidlTouchScreen is null");
    if (touch == nullptr) return -1;
    ITPIntString result;
    touch->getCapacitanceTestResult(&result);
    MMI_LOGI("%s: GetCapacitanceTestResult by aidl, ret: %d, info: %s", kLogPrefix, result.ret, result.info.c_str());
    // The text is stored whatever the status: a passing test leaves its own (often empty) text.
    StoreCapacitanceFailInfo(env, result.info);
    return result.ret;
}

jstring GetCapacitanceCalibrateResult(JNIEnv* env, jobject /*thiz*/, jint value) {
    sp<ITouchscreen> touch =
            mmi::ServiceOr(g_aidlTouchScreen, "%s: GetCapacitanceCalibrateResult by aidl fail, g_aidlTouchScreen is null");
    if (touch == nullptr) return NewJavaString(env, "");
    ITPIntString result;
    touch->getCapacitanceCalibrateResult(value, &result);
    if (result.ret != 0) {
        MMI_LOGE("%s: GetCapacitanceCalibrateResult by aidl fail", kLogPrefix);
        return NewJavaString(env, "");
    }
    MMI_LOGI("%s: GetCapacitanceCalibrateResult by aidl, ret: %d, info: %s", kLogPrefix, result.ret,
             result.info.c_str());
    return NewJavaString(env, result.info);
}

jint SetTouchScreenFeatureConfig(JNIEnv* env, jobject /*thiz*/, jint feature, jstring config) {
    sp<ITouchscreen> touch = mmi::ServiceOr(g_aidlTouchScreen, "%s: SetTouchScreenFeatureConfig by aidl fail, g_aidlTouchScreen is null");
    if (touch == nullptr) return -1;
    mmi::JavaUtfChars configChars(env, config);
    if (configChars.isNull()) {
        mmi::LogNullArgument("SetTouchScreenFeatureConfig by aidl", "config");
        return -1;
    }
    int32_t result = -1;
    touch->setTouchScreenFeatureConfig(feature, configChars.c_str(), &result);
    MMI_LOGI("%s: SetTouchScreenFeatureConfig by aidl, feature: %d, config: %s, result: %d", kLogPrefix, feature,
             configChars.c_str(), result);
    return result;
}

jstring GetRotateCrownTestResult(JNIEnv* env, jobject /*thiz*/) {
    sp<ITouchscreen> touch = mmi::ServiceOr(g_aidlTouchScreen, "%s: GetRotateCrownTestResult by aidl fail, g_aidlTouchScreen is null");
    if (touch == nullptr) return NewJavaString(env, "");
    ITPIntString result;
    touch->getRotateCrownTestResult(&result);
    if (result.ret != 0) {
        MMI_LOGE("%s: GetRotateCrownTestResult by aidl fail", kLogPrefix);
        return NewJavaString(env, "");
    }
    MMI_LOGI("%s: GetRotateCrownTestResult by aidl, ret: %d, info: %s", kLogPrefix, result.ret, result.info.c_str());
    return NewJavaString(env, result.info);
}

}  // namespace native_aidl
