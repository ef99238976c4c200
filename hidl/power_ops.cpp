// Power test scenes and the USB speed check over the HIDL power service 1.0. Results that
// come through a callback are copied into locals that hold their presets until the service
// answers.
#include <mmi_log.h>
#include <service_access.h>

#include <string>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_string;
using mmi::kLogPrefix;
using mmi::NewJavaString;

namespace native_hidl {
namespace {

using PowerV1_0 = hw::power::V1_0::IHWPower;

}  // namespace

jint SetPowerState(JNIEnv* env, jobject /*thiz*/, jstring testScene, jstring para) {
    sp<PowerV1_0> power = mmi::ServiceOr(g_hwPower, "%s: SetPowerState by hidl fail, g_hwPower is null");
    if (power == nullptr) return -1;
    mmi::JavaUtfChars sceneChars(env, testScene);
    if (sceneChars.isNull()) {
        mmi::LogNullArgument("SetPowerState by hidl", "testScene");
        return -1;
    }
    mmi::JavaUtfChars paraChars(env, para);
    if (paraChars.isNull()) {
        mmi::LogNullArgument("SetPowerState by hidl", "para");
        return -1;
    }
    const int32_t result =
            ValueOr(power->setPowerState(hidl_string(sceneChars.c_str()), hidl_string(paraChars.c_str())), -1);
    MMI_LOGI("%s: SetPowerState by hidl, testScene:%s, para:%s, result:%d", kLogPrefix, sceneChars.c_str(),
             paraChars.c_str(), result);
    return result;
}

jstring GetPowerState(JNIEnv* env, jobject /*thiz*/, jstring key) {
    sp<PowerV1_0> power = mmi::ServiceOr(g_hwPower, "%s: GetPowerState by hidl fail, g_hwPower is null");
    if (power == nullptr) return NewJavaString(env, "");
    mmi::JavaUtfChars keyChars(env, key);
    if (keyChars.isNull()) {
        mmi::LogNullArgument("GetPowerState by hidl", "key");
        return NewJavaString(env, "");
    }
    TextResult state;
    Finish(power->getPowerState(hidl_string(keyChars.c_str()), Into(state)));
    // A failed request never hands a partial text to Java.
    if (state.ret != 0) state.text.clear();
    MMI_LOGI("%s: GetPowerState by hidl, result code: %d, result info: %s", kLogPrefix, state.ret,
             state.text.c_str());
    return NewJavaString(env, state.text);
}

// The test count and the two limits always go as empty texts.
jint CheckUsbSpeed(JNIEnv* env, jobject /*thiz*/, jstring scene) {
    sp<PowerV1_0> power = mmi::ServiceOr(g_hwPower, "%s: CheckUsbSpeed by hidl fail, g_hwPower is null");
    if (power == nullptr) return -1;
    mmi::JavaUtfChars sceneChars(env, scene);
    if (sceneChars.isNull()) {
        mmi::LogNullArgument("CheckUsbSpeed by hidl", "scene");
        return -1;
    }
    const hidl_string testTimes;
    const hidl_string maxLimit;
    const hidl_string minLimit;
    TextResult usb;
    Finish(power->checkUsbSpeed(hidl_string(sceneChars.c_str()), testTimes, maxLimit, minLimit, Into(usb)));
    MMI_LOGI("%s: CheckUsbSpeed by hidl, scene: %s, resultCode: %d, resultInfo: %s", kLogPrefix, sceneChars.c_str(),
             usb.ret, usb.text.c_str());
    return usb.ret;
}

}  // namespace native_hidl
