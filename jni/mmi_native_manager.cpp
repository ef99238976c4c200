// The JNI bridge of MmiNativeManager: library load and unload, the native-method table, and
// one dispatcher per native method. A dispatcher asks, on every call, whether the family is
// served over AIDL at this moment, logs its choice and forwards the arguments unchanged to
// the same-named operation of that backend.
#include <jni.h>
#include <mmi_log.h>
#include <nativehelper/jni_macros.h>

#include <iterator>

#include "../aidl/mmi_aidl_manager.h"
#include "../hidl/mmi_hidl_manager.h"
#include "java_helpers.h"

using mmi::kLogPrefix;

namespace {

constexpr jint kJniVersion = 0x10004;  // JNI 1.4

// The Java capacitance test passes no argument; the operations take one they never use.
constexpr jint kUnusedArgument = 0;

#define DISPATCH(PREDICATE, NAME, ...)                     \
    do {                                                   \
        if (native_aidl::PREDICATE()) {                    \
            MMI_LOGI("%s", #NAME ", Aidl Called");         \
            return native_aidl::NAME(__VA_ARGS__);         \
        }                                                  \
        MMI_LOGI("%s", #NAME ", Hidl Called");             \
        return native_hidl::NAME(__VA_ARGS__);             \
    } while (0)

#define DISPATCH_FACTORY(NAME, ...) DISPATCH(IsFactoryInterfaceAidlVersion, NAME, __VA_ARGS__)
#define DISPATCH_SENSOR(NAME, ...) DISPATCH(IsSensorAidlVersion, NAME, __VA_ARGS__)

// Factory interface.
jboolean IsFactoryVersion(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(IsFactoryVersion, env, thiz); }
jstring GetManufactureFileName(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetManufactureFileName, env, thiz); }
jint ReleaseFactoryHidlResource(JNIEnv* env, jobject thiz) {
    DISPATCH_FACTORY(ReleaseFactoryHidlResource, env, thiz);
}
jint SetMmiTestResult(JNIEnv* env, jobject thiz, jint item, jint result) {
    DISPATCH_FACTORY(SetMmiTestResult, env, thiz, item, result);
}
jstring GetBsn(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetBsn, env, thiz); }
jstring GetTestApkPackageName(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetTestApkPackageName, env, thiz); }
jint SendBigDataOperation(JNIEnv* env, jobject thiz, jobject operation) {
    DISPATCH_FACTORY(SendBigDataOperation, env, thiz, operation);
}
jint SendBigDataValue(JNIEnv* env, jobject thiz, jobject value) {
    DISPATCH_FACTORY(SendBigDataValue, env, thiz, value);
}
jstring GetMmiAutoStartFlag(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetMmiAutoStartFlag, env, thiz); }
jint SetMmiAutoStartFlag(JNIEnv* env, jobject thiz, jstring flag) {
    DISPATCH_FACTORY(SetMmiAutoStartFlag, env, thiz, flag);
}
jstring GetManufactureStationFlag(JNIEnv* env, jobject thiz, jint stationId) {
    DISPATCH_FACTORY(GetManufactureStationFlag, env, thiz, stationId);
}
jint SetTestCycle(JNIEnv* env, jobject thiz, jint stationId, jint cycle) {
    DISPATCH_FACTORY(SetTestCycle, env, thiz, stationId, cycle);
}
jint GetManufactureMode(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetManufactureMode, env, thiz); }
jint GetMmiDeviceFeaturesCheckResult(JNIEnv* env, jobject thiz, jint feature) {
    DISPATCH_FACTORY(GetMmiDeviceFeaturesCheckResult, env, thiz, feature);
}
jstring GetOeminfo(JNIEnv* env, jobject thiz, jint type, jint offset, jint length) {
    DISPATCH_FACTORY(GetOeminfo, env, thiz, type, offset, length);
}
jint GetVerifySignatureResult(JNIEnv* env, jobject thiz, jbyteArray signature) {
    DISPATCH_FACTORY(GetVerifySignatureResult, env, thiz, signature);
}
jint SetNmCardTestMode(JNIEnv* env, jobject thiz, jstring mode) {
    DISPATCH_FACTORY(SetNmCardTestMode, env, thiz, mode);
}
jstring GetNmCardTestResult(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetNmCardTestResult, env, thiz); }
jstring GetDeviceInfo(JNIEnv* env, jobject thiz, jint id) { DISPATCH_FACTORY(GetDeviceInfo, env, thiz, id); }
jint ClearPackageName(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(ClearPackageName, env, thiz); }
jstring GetRsaSignInfo(JNIEnv* env, jobject thiz) { DISPATCH_FACTORY(GetRsaSignInfo, env, thiz); }

// Fingerprint.
jint SendCmdToFingerprintHal(JNIEnv* env, jobject thiz, jint cmd) {
    DISPATCH(IsFingerprintAidlVersion, SendCmdToFingerprintHal, env, thiz, cmd);
}

// Touch screen (the rotary crown belongs to it too).
jint GetCapacitanceTestResult(JNIEnv* env, jobject thiz) {
    DISPATCH(IsTouchScreenAidlVersion, GetCapacitanceTestResult, env, thiz, kUnusedArgument);
}
jstring GetCapacitanceCalibrateResult(JNIEnv* env, jobject thiz, jint value) {
    DISPATCH(IsTouchScreenAidlVersion, GetCapacitanceCalibrateResult, env, thiz, value);
}
jint SetTouchScreenFeatureConfig(JNIEnv* env, jobject thiz, jint feature, jstring config) {
    DISPATCH(IsTouchScreenAidlVersion, SetTouchScreenFeatureConfig, env, thiz, feature, config);
}
jstring GetRotateCrownTestResult(JNIEnv* env, jobject thiz) {
    DISPATCH(IsTouchScreenAidlVersion, GetRotateCrownTestResult, env, thiz);
}

// Sensors.
jint GetSensorCalibrateDelayTime(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetSensorCalibrateDelayTime, env, thiz, sensorId);
}
jint GetSensorSelfTestDelayTime(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetSensorSelfTestDelayTime, env, thiz, sensorId);
}
jint StartSensorCalibrate(JNIEnv* env, jobject thiz, jint sensorId, jint command) {
    DISPATCH_SENSOR(StartSensorCalibrate, env, thiz, sensorId, command);
}
jint StartSensorSelfTest(JNIEnv* env, jobject thiz, jint sensorId, jint command) {
    DISPATCH_SENSOR(StartSensorSelfTest, env, thiz, sensorId, command);
}
jint GetSensorCalibrateResult(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetSensorCalibrateResult, env, thiz, sensorId);
}
jint GetSensorSelfTestResult(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetSensorSelfTestResult, env, thiz, sensorId);
}
jstring GetSensorCalibrateType(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetSensorCalibrateType, env, thiz, sensorId);
}
jint GetCompassRawValueLimit(JNIEnv* env, jobject thiz) { DISPATCH_SENSOR(GetCompassRawValueLimit, env, thiz); }
jboolean SensorActivate(JNIEnv* env, jobject thiz, jint sensorType, jboolean enable, jint samplingRate) {
    DISPATCH_SENSOR(SensorActivate, env, thiz, sensorType, enable, samplingRate);
}
jint GetFlickerFrequency(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetFlickerFrequency, env, thiz, sensorId);
}
jstring HandleSensorParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length) {
    DISPATCH_SENSOR(HandleSensorParameter, env, thiz, sensorId, mainCmd, subCmd, length);
}
jintArray GetAmbientLightParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length) {
    DISPATCH_SENSOR(GetAmbientLightParameter, env, thiz, sensorId, mainCmd, subCmd, length);
}
jint SetAmbientLightParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length) {
    DISPATCH_SENSOR(SetAmbientLightParameter, env, thiz, sensorId, mainCmd, subCmd, length);
}
jintArray GetColorSensorValues(JNIEnv* env, jobject thiz, jint sensorId) {
    DISPATCH_SENSOR(GetColorSensorValues, env, thiz, sensorId);
}

// The flicker amplitude exists only over AIDL.
jintArray GetFlickerFrequencyAndAmplitude(JNIEnv* env, jobject thiz, jint sensorId) {
    if (!native_aidl::IsSensorAidlVersion()) {
        MMI_LOGI("GetFlickerFrequencyAndAmplitude, Aidl is null");
        return nullptr;
    }
    MMI_LOGI("GetFlickerFrequencyAndAmplitude, Aidl Called");
    return native_aidl::GetFlickerFrequencyAndAmplitude(env, thiz, sensorId);
}

// Power and USB.
jstring GetPowerState(JNIEnv* env, jobject thiz, jstring key) { DISPATCH(IsPowerAidlVersion, GetPowerState, env, thiz, key); }
jint SetPowerState(JNIEnv* env, jobject thiz, jstring testScene, jstring para) {
    DISPATCH(IsPowerAidlVersion, SetPowerState, env, thiz, testScene, para);
}
jint CheckUsbSpeed(JNIEnv* env, jobject thiz, jstring scene) { DISPATCH(IsPowerAidlVersion, CheckUsbSpeed, env, thiz, scene); }

// Light.
jint SetLightBrightness(JNIEnv* env, jobject thiz, jint id, jint brightness) {
    DISPATCH(IsLightAidlVersion, SetLightBrightness, env, thiz, id, brightness);
}

// Vibrator: AIDL only.
void SetVibratorPar(JNIEnv* env, jobject thiz, jstring command) {
    if (!native_aidl::IsVibratorAidlVersion()) {
        MMI_LOGE("SetVibratorPar fail, Aidl is null");
        return;
    }
    MMI_LOGI("SetVibratorPar, Aidl Called");
    native_aidl::SetVibratorPar(env, thiz, command);
}
jstring GetVibratorResult(JNIEnv* env, jobject thiz, jstring command) {
    if (!native_aidl::IsVibratorAidlVersion()) {
        MMI_LOGE("GetVibratorResult fail, Aidl is null");
        return mmi::NewJavaString(env, "");
    }
    MMI_LOGI("GetVibratorResult, Aidl Called");
    return native_aidl::GetVibratorResult(env, thiz, command);
}

// Display.
jstring GetScreenCurrentFps(JNIEnv* env, jobject thiz) { DISPATCH(IsDisplayAidlVersion, GetScreenCurrentFps, env, thiz); }
jstring GetScreenConfig(JNIEnv* env, jobject thiz, jint station) {
    DISPATCH(IsDisplayAidlVersion, GetScreenConfig, env, thiz, station);
}
jint SetDisplayParameter(JNIEnv* env, jobject thiz, jint scene, jint dataInt, jstring dataString) {
    DISPATCH(IsDisplayAidlVersion, SetDisplayParameter, env, thiz, scene, dataInt, dataString);
}
jint GetDisplayPanelType(JNIEnv* env, jobject thiz) { DISPATCH(IsDisplayAidlVersion, GetDisplayPanelType, env, thiz); }
jint SetDisplaySelfAdaptMinFps(JNIEnv* env, jobject thiz, jint dataInt) {
    DISPATCH(IsDisplayAidlVersion, SetDisplaySelfAdaptMinFps, env, thiz, dataInt);
}

// The backlight is steered by the display family; without an AIDL display it is light 1
// of the HIDL light service.
jint SetBackLightBrightness(JNIEnv* env, jobject thiz, jint level) {
    constexpr jint kBacklightId = 1;
    if (native_aidl::IsDisplayAidlVersion()) {
        MMI_LOGI("SetBackLightBrightness, Aidl Called");
        return native_aidl::SetBackLightBrightness(env, thiz, level);
    }
    MMI_LOGI("SetBackLightBrightness, Hidl Called");
    return native_hidl::SetLightBrightness(env, thiz, kBacklightId, level);
}

// Video interpolation: always the panel-processor library of the HIDL backend.
jint GetVideoInterpolationDefaultModel(JNIEnv* env, jobject thiz) {
    MMI_LOGI("GetVideoInterpolationDefaultModel, Hidl Called");
    return native_hidl::GetVideoInterpolationDefaultModel(env, thiz);
}
jstring GetVideoInterpolationModel(JNIEnv* env, jobject thiz) {
    MMI_LOGI("GetVideoInterpolationModel, Hidl Called");
    return native_hidl::GetVideoInterpolationModel(env, thiz);
}
jint SetVideoInterpolationModel(JNIEnv* env, jobject thiz, jint mode, jint freshRate) {
    MMI_LOGI("SetVideoInterpolationModel, Hidl Called");
    return native_hidl::SetVideoInterpolationModel(env, thiz, mode, freshRate);
}
jint RecoverInperpolateFreshRate(JNIEnv* env, jobject thiz) {
    MMI_LOGI("RecoverInperpolateFreshRate, Hidl Called");
    return native_hidl::RecoverInperpolateFreshRate(env, thiz);
}

// Camera always-on service: AIDL only.
jintArray GetCapabilities(JNIEnv* env, jobject thiz) {
    if (!native_aidl::IsVaelonAidlVersion()) {
        MMI_LOGI("GetCapabilities, no Hidl Called");
        return nullptr;
    }
    MMI_LOGI("GetCapabilities, Aidl Called");
    return native_aidl::GetCapabilities(env, thiz);
}
jint GetVaelonOvertime(JNIEnv* env, jobject thiz, jint serviceType) {
    if (!native_aidl::IsVaelonAidlVersion()) {
        MMI_LOGI("GetVaelonOvertime, no Hidl Called");
        return -1;
    }
    MMI_LOGI("GetVaelonOvertime, Aidl Called");
    return native_aidl::GetVaelonOvertime(env, thiz, serviceType);
}
jint RegisterClient(JNIEnv* env, jobject thiz, jint serviceType) {
    if (!native_aidl::IsVaelonAidlVersion()) {
        MMI_LOGI("RegisterClient, no Hidl Called");
        return -1;
    }
    MMI_LOGI("RegisterClient, Aidl Called");
    return native_aidl::RegisterClient(env, thiz, serviceType);
}
jint UnregisterClient(JNIEnv* env, jobject thiz) {
    if (!native_aidl::IsVaelonAidlVersion()) {
        MMI_LOGI("UnregisterClient, no Hidl Called");
        return -1;
    }
    MMI_LOGI("UnregisterClient, Aidl Called");
    return native_aidl::UnregisterClient(env, thiz);
}

#undef DISPATCH_SENSOR
#undef DISPATCH_FACTORY
#undef DISPATCH

// The 61 native methods of MmiNativeManager, in the order of the Java class's table.
// Signatures are checked against the functions' types at compile time.
const JNINativeMethod kNativeMethods[] = {
        MAKE_JNI_NATIVE_METHOD("isFactoryVersionNative", "()Z", IsFactoryVersion),
        MAKE_JNI_NATIVE_METHOD("getManufactureFileNameNative", "()Ljava/lang/String;", GetManufactureFileName),
        MAKE_JNI_NATIVE_METHOD("releaseFactoryHidlResourceNative", "()I", ReleaseFactoryHidlResource),
        MAKE_JNI_NATIVE_METHOD("setMmiResultNative", "(II)I", SetMmiTestResult),
        MAKE_JNI_NATIVE_METHOD("sendCmdToFingerprintHalNative", "(I)I", SendCmdToFingerprintHal),
        MAKE_JNI_NATIVE_METHOD("getCapacitanceTestResultNative", "()I", GetCapacitanceTestResult),
        MAKE_JNI_NATIVE_METHOD("getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;",
                               GetCapacitanceCalibrateResult),
        MAKE_JNI_NATIVE_METHOD("getSensorCalibrateDelayTimeNative", "(I)I", GetSensorCalibrateDelayTime),
        MAKE_JNI_NATIVE_METHOD("getSensorSelfTestDelayTimeNative", "(I)I", GetSensorSelfTestDelayTime),
        MAKE_JNI_NATIVE_METHOD("startSensorCalibrateNative", "(II)I", StartSensorCalibrate),
        MAKE_JNI_NATIVE_METHOD("startSensorSelfTestNative", "(II)I", StartSensorSelfTest),
        MAKE_JNI_NATIVE_METHOD("getSensorCalibrateResultNative", "(I)I", GetSensorCalibrateResult),
        MAKE_JNI_NATIVE_METHOD("getSensorSelfTestResultNative", "(I)I", GetSensorSelfTestResult),
        MAKE_JNI_NATIVE_METHOD("setLightBrightnessNative", "(II)I", SetLightBrightness),
        MAKE_JNI_NATIVE_METHOD("getBsnNative", "()Ljava/lang/String;", GetBsn),
        MAKE_JNI_NATIVE_METHOD("getTestApkPackageNameNative", "()Ljava/lang/String;", GetTestApkPackageName),
        MAKE_JNI_NATIVE_METHOD("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", GetPowerState),
        MAKE_JNI_NATIVE_METHOD("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", GetSensorCalibrateType),
        MAKE_JNI_NATIVE_METHOD("sendBigDataOperationNative", "(Lcom/corvex/mmitest/model/BigDataOperation;)I",
                               SendBigDataOperation),
        MAKE_JNI_NATIVE_METHOD("sendBigDataValueNative", "(Lcom/corvex/mmitest/model/BigDataValue;)I",
                               SendBigDataValue),
        MAKE_JNI_NATIVE_METHOD("checkUsbSpeedNative", "(Ljava/lang/String;)I", CheckUsbSpeed),
        MAKE_JNI_NATIVE_METHOD("getMmiAutoStartFlagNative", "()Ljava/lang/String;", GetMmiAutoStartFlag),
        MAKE_JNI_NATIVE_METHOD("disableMmiAutoStartNative", "(Ljava/lang/String;)I", SetMmiAutoStartFlag),
        MAKE_JNI_NATIVE_METHOD("getCompassRawValueLimitNative", "()I", GetCompassRawValueLimit),
        MAKE_JNI_NATIVE_METHOD("getManufactureStationFlagNative", "(I)Ljava/lang/String;", GetManufactureStationFlag),
        MAKE_JNI_NATIVE_METHOD("setTestCycleNative", "(II)I", SetTestCycle),
        MAKE_JNI_NATIVE_METHOD("getManufactureModeNative", "()I", GetManufactureMode),
        MAKE_JNI_NATIVE_METHOD("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", SetPowerState),
        MAKE_JNI_NATIVE_METHOD("setVibratorParameterNative", "(Ljava/lang/String;)V", SetVibratorPar),
        MAKE_JNI_NATIVE_METHOD("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;",
                               GetVibratorResult),
        MAKE_JNI_NATIVE_METHOD("getMmiDeviceFeaturesCheckResultNative", "(I)I", GetMmiDeviceFeaturesCheckResult),
        MAKE_JNI_NATIVE_METHOD("getOeminfoNative", "(III)Ljava/lang/String;", GetOeminfo),
        MAKE_JNI_NATIVE_METHOD("sensorActivateNative", "(IZI)Z", SensorActivate),
        MAKE_JNI_NATIVE_METHOD("getFlickerFrequencyNative", "(I)I", GetFlickerFrequency),
        MAKE_JNI_NATIVE_METHOD("handleSensorParameterNative", "(IIII)Ljava/lang/String;", HandleSensorParameter),
        MAKE_JNI_NATIVE_METHOD("getAmbientLightParameterNative", "(IIII)[I", GetAmbientLightParameter),
        MAKE_JNI_NATIVE_METHOD("setAmbientLightParameterNative", "(IIII)I", SetAmbientLightParameter),
        MAKE_JNI_NATIVE_METHOD("setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I",
                               SetTouchScreenFeatureConfig),
        MAKE_JNI_NATIVE_METHOD("getScreenCurrentFpsNative", "()Ljava/lang/String;", GetScreenCurrentFps),
        MAKE_JNI_NATIVE_METHOD("getScreenConfigNative", "(I)Ljava/lang/String;", GetScreenConfig),
        MAKE_JNI_NATIVE_METHOD("setDisplayParameterNative", "(IILjava/lang/String;)I", SetDisplayParameter),
        MAKE_JNI_NATIVE_METHOD("getVerifySignatureResultNative", "([B)I", GetVerifySignatureResult),
        MAKE_JNI_NATIVE_METHOD("setMockCardTestModeNative", "(Ljava/lang/String;)I", SetNmCardTestMode),
        MAKE_JNI_NATIVE_METHOD("getMockCardTestResultNative", "()Ljava/lang/String;", GetNmCardTestResult),
        MAKE_JNI_NATIVE_METHOD("getRotaryCrownSelfTestNative", "()Ljava/lang/String;", GetRotateCrownTestResult),
        MAKE_JNI_NATIVE_METHOD("getVideoInterpolationDefaultModelNative", "()I", GetVideoInterpolationDefaultModel),
        MAKE_JNI_NATIVE_METHOD("getVideoInterpolationModelNative", "()Ljava/lang/String;", GetVideoInterpolationModel),
        MAKE_JNI_NATIVE_METHOD("setVideoInterpolationModelNative", "(II)I", SetVideoInterpolationModel),
        MAKE_JNI_NATIVE_METHOD("recoverInperpolateFreshRateNative", "()I", RecoverInperpolateFreshRate),
        MAKE_JNI_NATIVE_METHOD("getColorSensorNative", "(I)[I", GetColorSensorValues),
        MAKE_JNI_NATIVE_METHOD("getDeviceInfoNative", "(I)Ljava/lang/String;", GetDeviceInfo),
        MAKE_JNI_NATIVE_METHOD("nativeClearPackageName", "()I", ClearPackageName),
        MAKE_JNI_NATIVE_METHOD("setBackLightBrightnessNative", "(I)I", SetBackLightBrightness),
        MAKE_JNI_NATIVE_METHOD("nativeGetDisplayPanelType", "()I", GetDisplayPanelType),
        MAKE_JNI_NATIVE_METHOD("getRsaSignInfoNative", "()Ljava/lang/String;", GetRsaSignInfo),
        MAKE_JNI_NATIVE_METHOD("setDisplaySelfAdaptMinFpsNative", "(I)I", SetDisplaySelfAdaptMinFps),
        MAKE_JNI_NATIVE_METHOD("getFlickerFrequencyAndAmplitudeNative", "(I)[I", GetFlickerFrequencyAndAmplitude),
        MAKE_JNI_NATIVE_METHOD("getCapabilitiesNative", "()[I", GetCapabilities),
        MAKE_JNI_NATIVE_METHOD("getVaelonOvertimeNative", "(I)I", GetVaelonOvertime),
        MAKE_JNI_NATIVE_METHOD("registerClientNative", "(I)I", RegisterClient),
        MAKE_JNI_NATIVE_METHOD("unregisterClientNative", "()I", UnregisterClient),
};
static_assert(std::size(kNativeMethods) == 61, "MmiNativeManager has 61 native methods");

// Connects every family: AIDL first, HIDL only where AIDL is not served. The camera and the
// vibrator exist only over AIDL.
void ConnectServices() {
    if (!native_aidl::InitFactoryInterface()) native_hidl::InitFactoryInterface();
    if (!native_aidl::InitDisplay()) native_hidl::InitDisplay();
    if (!native_aidl::InitTouchScreen()) native_hidl::InitTouchScreen();
    if (!native_aidl::InitFingerprint()) native_hidl::InitFingerprint();
    if (!native_aidl::InitSensor()) {
        native_hidl::InitSensor();
        native_hidl::InitSensorsV20();
    }
    if (!native_aidl::InitPower()) native_hidl::InitPower();
    if (!native_aidl::InitLight()) native_hidl::InitLight();
    native_aidl::InitVaelon();
    native_aidl::InitVibrator();
}

bool RegisterNativeMethods(JNIEnv* env) {
    if (env == nullptr) {
        MMI_LOGE("%s: RegisterNativeMethods fail, env is null", kLogPrefix);
        return false;
    }
    jclass clazz = env->FindClass(mmi::kNativeManagerClass);
    if (clazz == nullptr) {
        mmi::ClearPendingException(env);
        MMI_LOGE("%s: RegisterNativeMethods fail, class not found", kLogPrefix);
        return false;
    }
    const jint result = env->RegisterNatives(clazz, kNativeMethods, static_cast<jint>(std::size(kNativeMethods)));
    env->DeleteLocalRef(clazz);
    if (result < 0) {
        mmi::ClearPendingException(env);
        MMI_LOGE("%s: RegisterNativeMethods fail, cont not register all the methods", kLogPrefix);
        return false;
    }
    return true;
}

}  // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* /*reserved*/) {
    if (vm == nullptr) {
        MMI_LOGE("%s: JNI_OnLoad fail, vm is null", kLogPrefix);
        return -1;
    }
    MMI_LOGI("%s: InitMmiNativeManager", kLogPrefix);
    ConnectServices();
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), kJniVersion) != JNI_OK) {
        MMI_LOGE("%s: JNI_OnLoad fail, GetEnv error", kLogPrefix);
        return -1;
    }
    if (!RegisterNativeMethods(env)) {
        MMI_LOGE("%s: JNI_OnLoad fail, registerNatives failed", kLogPrefix);
        return -1;
    }
    return kJniVersion;
}

extern "C" JNIEXPORT void JNICALL JNI_OnUnload(JavaVM* vm, void* /*reserved*/) {
    if (vm == nullptr) {
        MMI_LOGE("%s: JNI_OnUnLoad fail, vm is null", kLogPrefix);
        return;
    }
    MMI_LOGI("ExitMmiNativeManager");
    native_aidl::ExitMmiManager();
    native_hidl::ExitMmiManager();
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), kJniVersion) != JNI_OK) {
        MMI_LOGE("%s: JNI_OnUnLoad fail, GetEnv error", kLogPrefix);
        return;
    }
    MMI_LOGI("ReleaseNativeGlobalValue");
    native_aidl::ReleaseGlobalValue(env);
}
