// Every one of the 61 native methods, called through the JVM, reaches its dispatcher, which
// consults the right family and logs its choice.
#include <string>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;

struct NativeMethod {
    const char* java;
    const char* signature;
    const char* dispatcher;
    const char* predicate;  // first line of the family's predicate; null: none consulted
};

constexpr const char* kFactory = "isFactoryInterfaceAidlVersion";
constexpr const char* kSensor = "IsSensorAidlVersion";
constexpr const char* kTouch = "IsTouchScreenAidlVersion";
constexpr const char* kDisplay = "IsDisplayAidlVersion";
constexpr const char* kPower = "IsPowerAidlVersion";
constexpr const char* kCamera = "IsVaelonAidlVersion";
constexpr const char* kVibrator = "IsVibratorAidlVersion";

const std::vector<NativeMethod> kMethods = {
        {"isFactoryVersionNative", "()Z", "IsFactoryVersion", kFactory},
        {"getManufactureFileNameNative", "()Ljava/lang/String;", "GetManufactureFileName", kFactory},
        {"releaseFactoryHidlResourceNative", "()I", "ReleaseFactoryHidlResource", kFactory},
        {"setMmiResultNative", "(II)I", "SetMmiTestResult", kFactory},
        {"sendCmdToFingerprintHalNative", "(I)I", "SendCmdToFingerprintHal", "IsFingerprintAidlVersion"},
        {"getCapacitanceTestResultNative", "()I", "GetCapacitanceTestResult", kTouch},
        {"getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", "GetCapacitanceCalibrateResult", kTouch},
        {"getSensorCalibrateDelayTimeNative", "(I)I", "GetSensorCalibrateDelayTime", kSensor},
        {"getSensorSelfTestDelayTimeNative", "(I)I", "GetSensorSelfTestDelayTime", kSensor},
        {"startSensorCalibrateNative", "(II)I", "StartSensorCalibrate", kSensor},
        {"startSensorSelfTestNative", "(II)I", "StartSensorSelfTest", kSensor},
        {"getSensorCalibrateResultNative", "(I)I", "GetSensorCalibrateResult", kSensor},
        {"getSensorSelfTestResultNative", "(I)I", "GetSensorSelfTestResult", kSensor},
        {"setLightBrightnessNative", "(II)I", "SetLightBrightness", "IsLightAidlVersion"},
        {"getBsnNative", "()Ljava/lang/String;", "GetBsn", kFactory},
        {"getTestApkPackageNameNative", "()Ljava/lang/String;", "GetTestApkPackageName", kFactory},
        {"getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", "GetPowerState", kPower},
        {"getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", "GetSensorCalibrateType", kSensor},
        {"sendBigDataOperationNative", "(Lcom/corvex/mmitest/model/BigDataOperation;)I", "SendBigDataOperation", kFactory},
        {"sendBigDataValueNative", "(Lcom/corvex/mmitest/model/BigDataValue;)I", "SendBigDataValue", kFactory},
        {"checkUsbSpeedNative", "(Ljava/lang/String;)I", "CheckUsbSpeed", kPower},
        {"getMmiAutoStartFlagNative", "()Ljava/lang/String;", "GetMmiAutoStartFlag", kFactory},
        {"disableMmiAutoStartNative", "(Ljava/lang/String;)I", "SetMmiAutoStartFlag", kFactory},
        {"getCompassRawValueLimitNative", "()I", "GetCompassRawValueLimit", kSensor},
        {"getManufactureStationFlagNative", "(I)Ljava/lang/String;", "GetManufactureStationFlag", kFactory},
        {"setTestCycleNative", "(II)I", "SetTestCycle", kFactory},
        {"getManufactureModeNative", "()I", "GetManufactureMode", kFactory},
        {"setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", "SetPowerState", kPower},
        {"setVibratorParameterNative", "(Ljava/lang/String;)V", "SetVibratorPar", kVibrator},
        {"getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", "GetVibratorResult", kVibrator},
        {"getMmiDeviceFeaturesCheckResultNative", "(I)I", "GetMmiDeviceFeaturesCheckResult", kFactory},
        {"getOeminfoNative", "(III)Ljava/lang/String;", "GetOeminfo", kFactory},
        {"sensorActivateNative", "(IZI)Z", "SensorActivate", kSensor},
        {"getFlickerFrequencyNative", "(I)I", "GetFlickerFrequency", kSensor},
        {"handleSensorParameterNative", "(IIII)Ljava/lang/String;", "HandleSensorParameter", kSensor},
        {"getAmbientLightParameterNative", "(IIII)[I", "GetAmbientLightParameter", kSensor},
        {"setAmbientLightParameterNative", "(IIII)I", "SetAmbientLightParameter", kSensor},
        {"setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I", "SetTouchScreenFeatureConfig", kTouch},
        {"getScreenCurrentFpsNative", "()Ljava/lang/String;", "GetScreenCurrentFps", kDisplay},
        {"getScreenConfigNative", "(I)Ljava/lang/String;", "GetScreenConfig", kDisplay},
        {"setDisplayParameterNative", "(IILjava/lang/String;)I", "SetDisplayParameter", kDisplay},
        {"getVerifySignatureResultNative", "([B)I", "GetVerifySignatureResult", kFactory},
        {"setMockCardTestModeNative", "(Ljava/lang/String;)I", "SetNmCardTestMode", kFactory},
        {"getMockCardTestResultNative", "()Ljava/lang/String;", "GetNmCardTestResult", kFactory},
        {"getRotaryCrownSelfTestNative", "()Ljava/lang/String;", "GetRotateCrownTestResult", kTouch},
        {"getVideoInterpolationDefaultModelNative", "()I", "GetVideoInterpolationDefaultModel", nullptr},
        {"getVideoInterpolationModelNative", "()Ljava/lang/String;", "GetVideoInterpolationModel", nullptr},
        {"setVideoInterpolationModelNative", "(II)I", "SetVideoInterpolationModel", nullptr},
        {"recoverInperpolateFreshRateNative", "()I", "RecoverInperpolateFreshRate", nullptr},
        {"getColorSensorNative", "(I)[I", "GetColorSensorValues", kSensor},
        {"getDeviceInfoNative", "(I)Ljava/lang/String;", "GetDeviceInfo", kFactory},
        {"nativeClearPackageName", "()I", "ClearPackageName", kFactory},
        {"setBackLightBrightnessNative", "(I)I", "SetBackLightBrightness", kDisplay},
        {"nativeGetDisplayPanelType", "()I", "GetDisplayPanelType", kDisplay},
        {"getRsaSignInfoNative", "()Ljava/lang/String;", "GetRsaSignInfo", kFactory},
        {"setDisplaySelfAdaptMinFpsNative", "(I)I", "SetDisplaySelfAdaptMinFps", kDisplay},
        {"getFlickerFrequencyAndAmplitudeNative", "(I)[I", "GetFlickerFrequencyAndAmplitude", kSensor},
        {"getCapabilitiesNative", "()[I", "GetCapabilities", kCamera},
        {"getVaelonOvertimeNative", "(I)I", "GetVaelonOvertime", kCamera},
        {"registerClientNative", "(I)I", "RegisterClient", kCamera},
        {"unregisterClientNative", "()I", "UnregisterClient", kCamera},
};

class MethodTableTest : public MmiTest {
protected:
    // Calls the method with plain arguments of its signature's types.
    void CallWithSampleArguments(const NativeMethod& method) {
        std::vector<jvalue> args;
        const std::string signature = method.signature;
        for (size_t i = 1; signature[i] != ')'; ++i) {
            jvalue value{};
            switch (signature[i]) {
                case 'I': value.i = 1; break;
                case 'Z': value.z = JNI_TRUE; break;
                case '[':
                    value.l = mEnv->NewByteArray(2);
                    ++i;
                    break;
                case 'L': {
                    const size_t end = signature.find(';', i);
                    const std::string className = signature.substr(i + 1, end - i - 1);
                    value.l = className == "java/lang/String" ? J("sample") : NewModel(className);
                    i = end;
                    break;
                }
            }
            args.push_back(value);
        }
        jclass clazz = mEnv->GetObjectClass(mManager);
        jmethodID id = mEnv->GetMethodID(clazz, method.java, method.signature);
        ASSERT_NE(id, nullptr) << method.java;
        const char result = signature[signature.find(')') + 1];
        switch (result) {
            case 'V': mEnv->CallVoidMethodA(mManager, id, args.data()); break;
            case 'Z': mEnv->CallBooleanMethodA(mManager, id, args.data()); break;
            case 'I': mEnv->CallIntMethodA(mManager, id, args.data()); break;
            default: mEnv->DeleteLocalRef(mEnv->CallObjectMethodA(mManager, id, args.data())); break;
        }
        EXPECT_FALSE(mEnv->ExceptionCheck()) << method.java;
        mEnv->ExceptionClear();
        mEnv->DeleteLocalRef(clazz);
    }

    jobject NewModel(const std::string& className) {
        jclass clazz = mEnv->FindClass(className.c_str());
        jobject model = mEnv->NewObject(clazz, mEnv->GetMethodID(clazz, "<init>", "()V"));
        mEnv->DeleteLocalRef(clazz);
        return model;
    }

    // Runs every method; `expected` gives the dispatcher's line for each.
    void CheckEveryMethod(const std::function<Line(const NativeMethod&)>& expected) {
        ASSERT_EQ(kMethods.size(), 61u);
        for (const NativeMethod& method : kMethods) {
            Mark();
            CallWithSampleArguments(method);
            const std::vector<Line> lines = Lines();
            ASSERT_FALSE(lines.empty()) << method.java;
            size_t at = 0;
            if (method.predicate != nullptr) {
                EXPECT_EQ(lines[0], (Line{kInfo, method.predicate})) << method.java;
                at = lines.size() > 1 && lines[1].message == std::string(method.predicate) + ", true" ? 2 : 1;
            }
            ASSERT_GT(lines.size(), at) << method.java;
            EXPECT_EQ(lines[at], expected(method)) << method.java;
        }
    }
};

TEST_F(MethodTableTest, OnAnAidlHandsetEveryFamilyMethodGoesToAidl) {
    Boot(DeviceProfile::AllAidl());
    CheckEveryMethod([](const NativeMethod& m) {
        const std::string name = m.dispatcher;
        return m.predicate == nullptr ? Line{kInfo, name + ", Hidl Called"} : Line{kInfo, name + ", Aidl Called"};
    });
}

TEST_F(MethodTableTest, OnAHidlHandsetEveryMethodTakesItsHidlOrFallbackPath) {
    Boot(DeviceProfile::AllHidl());
    CheckEveryMethod([](const NativeMethod& m) {
        const std::string name = m.dispatcher;
        if (m.predicate == kVibrator) return Line{kError, name + " fail, Aidl is null"};
        if (m.predicate == kCamera) return Line{kInfo, name + ", no Hidl Called"};
        if (name == "GetFlickerFrequencyAndAmplitude") return Line{kInfo, name + ", Aidl is null"};
        return Line{kInfo, name + ", Hidl Called"};
    });
}

}  // namespace
}  // namespace mmitest
