// Power test scenes and the USB speed check over the AIDL power service. Every request
// carries the caller tag of this library first. Binder statuses are not looked at: a
// failed call leaves the presets.
#include <mmi_log.h>
#include <service_access.h>

#include <string>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using mmi::NewJavaString;
using vendor::zentel::hardware::power::IHWPower;
using vendor::zentel::hardware::power::PowerOutInfo;

namespace native_aidl {
namespace {

// The tag the power service knows this caller by (the same text as the log prefix).
constexpr const char* kCallerTag = "ZtMmiTest_jni";

// The parameter text of a USB speed check: "testTimes=<count>,maxLimit=<max>,minLimit=<min>".
// This library always sends the three values empty.
std::string UsbSpeedParameter(const std::string& testTimes, const std::string& maxLimit, const std::string& minLimit) {
    return "testTimes=" + testTimes + ",maxLimit=" + maxLimit + ",minLimit=" + minLimit;
}

}  // namespace

jint SetPowerState(JNIEnv* env, jobject /*thiz*/, jstring testScene, jstring para) {
    sp<IHWPower> power = mmi::ServiceOr(g_aidlPower, "%s: SetPowerState by aidl fail, g_aidlPower is null");
    if (power == nullptr) return -1;
    mmi::JavaUtfChars sceneChars(env, testScene);
    if (sceneChars.isNull()) {
        mmi::LogNullArgument("SetPowerState by aidl", "testScene");
        return -1;
    }
    mmi::JavaUtfChars paraChars(env, para);
    if (paraChars.isNull()) {
        mmi::LogNullArgument("SetPowerState by aidl", "para");
        return -1;
    }
    int32_t result = -1;
    power->setPowerState(kCallerTag, sceneChars.c_str(), paraChars.c_str(), &result);
    MMI_LOGI("%s: SetPowerState by aidl, testScene:%s, para:%s, result:%d", kLogPrefix, sceneChars.c_str(),
             paraChars.c_str(), result);
    return result;
}

jstring GetPowerState(JNIEnv* env, jobject /*thiz*/, jstring key) {
    sp<IHWPower> power = mmi::ServiceOr(g_aidlPower, "%s: GetPowerState by aidl fail, g_aidlPower is null");
    if (power == nullptr) return NewJavaString(env, "");
    mmi::JavaUtfChars keyChars(env, key);
    if (keyChars.isNull()) {
        mmi::LogNullArgument("GetPowerState by aidl", "key");
        return NewJavaString(env, "");
    }
    PowerOutInfo info;
    int32_t result = -1;
    power->getPowerState(kCallerTag, keyChars.c_str(), &info, &result);
    if (result != 0) {
        // A failed request never hands a partial text to Java.
        MMI_LOGI("%s: GetPowerState by aidl fail, result code: %d", kLogPrefix, result);
        return NewJavaString(env, "");
    }
    MMI_LOGI("%s: GetPowerState by aidl, result code: %d, result info: %s", kLogPrefix, result, info.info.c_str());
    return NewJavaString(env, info.info);
}

// The AIDL power service has no USB operation of its own: the check is a power-state
// request for the scene with the USB speed parameter text.
jint CheckUsbSpeed(JNIEnv* env, jobject /*thiz*/, jstring scene) {
    sp<IHWPower> power = mmi::ServiceOr(g_aidlPower, "%s: CheckUsbSpeed by aidl fail, g_aidlPower is null");
    if (power == nullptr) return -1;
    mmi::JavaUtfChars sceneChars(env, scene);
    if (sceneChars.isNull()) {
        mmi::LogNullArgument("CheckUsbSpeed by aidl", "scene");
        return -1;
    }
    const std::string testTimes;
    const std::string maxLimit;
    const std::string minLimit;
    int32_t result = -1;
    power->setPowerState(kCallerTag, sceneChars.c_str(), UsbSpeedParameter(testTimes, maxLimit, minLimit), &result);
    MMI_LOGI("%s: CheckUsbSpeed by aidl, scene: %s, resultCode: %d", kLogPrefix, sceneChars.c_str(), result);
    return result;
}

}  // namespace native_aidl
