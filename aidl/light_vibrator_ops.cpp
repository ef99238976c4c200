// Light brightness over the AIDL light service, and the vibrator test over the maker's
// vibrator extension (AIDL only). Vibrator commands and results travel as UTF-16 texts.
// Binder statuses are not looked at: a failed call leaves the presets.
#include <mmi_log.h>
#include <service_access.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using android::String16;
using android::String8;
using mmi::kLogPrefix;
using vendor::zentel::hardware::light::ILight;
using vendor::zentel::hardware::vibrator::ICustVibrator;

namespace native_aidl {
namespace {

}  // namespace

jint SetLightBrightness(JNIEnv* /*env*/, jobject /*thiz*/, jint id, jint brightness) {
    sp<ILight> light = g_aidlLight.get();
    if (light == nullptr) {
        MMI_LOGE("%s: SetLightBrightness by aidl fail, g_aidlLight is null", kLogPrefix);
        return -1;
    }
    int32_t result = -1;
    light->setLightBrightness(id, brightness, &result);
    MMI_LOGI("%s: SetLightBrightness by aidl, Id: %d, brightness: %d, result: %d", kLogPrefix, id, brightness, result);
    return result;
}

void SetVibratorPar(JNIEnv* env, jobject /*thiz*/, jstring command) {
    sp<ICustVibrator> vibrator = mmi::ServiceOr(g_aidlVibrator, "%s: SetVibratorPar by aidl fail, g_aidlVibrator is null");
    if (vibrator == nullptr) return;
    mmi::JavaUtfChars commandChars(env, command);
    if (commandChars.isNull()) {
        mmi::LogNullArgument("SetVibratorPar by aidl", "command");
        return;
    }
    // Deliberately never released, unlike every other Java text of this library: the two
    // vibrator operations have always left the command's characters taken on the devices,
    // and their behaviour is kept exactly as it is. Each call leaves one small copy of the
    // command with the Java VM.
    commandChars.keepTaken();
    const String16 command16(commandChars.c_str());
    vibrator->setVibratorParameter(command16);
    MMI_LOGI("%s: SetVibratorPar by aidl, strCmd = %s", kLogPrefix, String8(command16).c_str());
}

jstring GetVibratorResult(JNIEnv* env, jobject /*thiz*/, jstring command) {
    sp<ICustVibrator> vibrator = mmi::ServiceOr(g_aidlVibrator, "%s: GetVibratorResult by aidl fail, g_aidlVibrator is null");
    if (vibrator == nullptr) return mmi::NewJavaString(env, "");
    mmi::JavaUtfChars commandChars(env, command);
    if (commandChars.isNull()) {
        mmi::LogNullArgument("GetVibratorResult by aidl", "command");
        return mmi::NewJavaString(env, "");
    }
    // Left taken on purpose, as in SetVibratorPar.
    commandChars.keepTaken();
    String16 result;
    vibrator->getVibratorResult(String16(commandChars.c_str()), &result);
    MMI_LOGI("%s: GetVibratorResult by aidl, result:%s", kLogPrefix, String8(result).c_str());
    // Java strings are UTF-16 like the service's answer: handing the characters over as they
    // are keeps every one of them, also those outside the Basic Multilingual Plane, which JNI's
    // modified UTF-8 would not take in their standard UTF-8 form.
    return env->NewString(reinterpret_cast<const jchar*>(result.string()), static_cast<jsize>(result.size()));
}

}  // namespace native_aidl
