// Sensor calibration, self test, activation and the compass limit over the AIDL service
// and over either HIDL sensor service: what reaches the service, what Java gets back, the
// preference between the two HIDL handles and the lines naming the handle used.
#include <dlfcn.h>
#include <jni.h>

#include <cstring>
#include <string>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::SensorAnswers;

// A sensors backend as the handset serves it and as the log names it.
struct Backend {
    std::string by;      // "by aidl" / "by hidl"
    std::string handle;  // the handle the result lines name
    std::string origin;  // the service that must receive the calls
    DeviceProfile profile;
};

std::vector<Backend> Backends() {
    DeviceProfile secondOnly = DeviceProfile::AllHidl();
    secondOnly[Family::kSensors].sensorsV1 = false;
    return {{"by aidl", "g_aidlSensors", "aidl", DeviceProfile::AllAidl()},
            // Both HIDL generations served: only the first may be called.
            {"by hidl", "g_hwSensors", "hidl", DeviceProfile::AllHidl()},
            {"by hidl", "g_zentelSensors", "hidl2", secondOnly}};
}

// Each call as "origin method(args)".
std::vector<std::string> ReceivedCalls(mmisim::Handset& handset) {
    std::vector<std::string> calls;
    for (const mmisim::Call& call : handset.sensors().calls()) {
        std::string text = call.origin + " " + call.method + "(";
        for (size_t i = 0; i < call.args.size(); ++i) text += (i > 0 ? "," : "") + call.args[i];
        calls.push_back(text + ")");
    }
    return calls;
}

using ActivateFunction = jboolean (*)(JNIEnv*, jobject, jint, jboolean, jint);

// The function the library registers for sensorActivateNative, captured by running its
// JNI_OnLoad again with an environment whose RegisterNatives only notes the table. Calling
// it directly passes a boolean byte that the JVM would normalise on the way.
ActivateFunction CaptureActivate(JNIEnv* real) {
    static JNIEnv* sReal;
    static JNIEnv* sEnv;
    static ActivateFunction sFound;
    sReal = real;
    sFound = nullptr;
    JNINativeInterface_ functions{};
    functions.FindClass = [](JNIEnv*, const char* name) { return sReal->FindClass(name); };
    functions.DeleteLocalRef = [](JNIEnv*, jobject ref) { sReal->DeleteLocalRef(ref); };
    functions.ExceptionCheck = [](JNIEnv*) { return sReal->ExceptionCheck(); };
    functions.ExceptionClear = [](JNIEnv*) { sReal->ExceptionClear(); };
    functions.RegisterNatives = [](JNIEnv*, jclass, const JNINativeMethod* methods, jint count) {
        for (jint i = 0; i < count; ++i) {
            if (std::strcmp(methods[i].name, "sensorActivateNative") == 0) {
                sFound = reinterpret_cast<ActivateFunction>(methods[i].fnPtr);
            }
        }
        return JNI_OK;
    };
    JNIEnv_ env{};
    env.functions = &functions;
    sEnv = &env;
    JNIInvokeInterface_ invoke{};
    invoke.GetEnv = [](JavaVM*, void** out, jint) {
        *out = sEnv;
        return JNI_OK;
    };
    JavaVM_ vm{};
    vm.functions = &invoke;
    void* library = dlopen(MMI_LIB_DIR "/libZtMmi_jni.so", RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) return nullptr;
    auto onLoad = reinterpret_cast<jint (*)(JavaVM*, void*)>(dlsym(library, "JNI_OnLoad"));
    const bool loaded = onLoad != nullptr && onLoad(&vm, nullptr) == 0x10004;
    dlclose(library);
    return loaded ? sFound : nullptr;
}

class SensorCalibrationTest : public MmiTest {};

TEST_F(SensorCalibrationTest, EveryBackendPassesArgumentsAndAnswersThroughUnchanged) {
    for (const Backend& b : Backends()) {
        SCOPED_TRACE(b.handle);
        Boot(b.profile);
        // Distinct answers, negative ones included, so a value taken from the wrong query or
        // converted on the way shows.
        handset().sensors().update([](SensorAnswers& a) {
            a.startCalibrateResult = 11;
            a.startSelfTestResult = -12;
            a.calibrateDelayTime = 1300;
            a.selfTestDelayTime = 1400;
            a.calibrateResult = -15;
            a.selfTestResult = 16;
            a.calibrateType = {-4, "six-face"};  // the text goes up whatever the result code
            a.compassRawValueLimit = -300;
            a.activateResult = 0;
        });
        EXPECT_EQ(Int("startSensorCalibrateNative", "(II)I", 1, 101), 11);
        EXPECT_EQ(Int("startSensorSelfTestNative", "(II)I", 2, -102), -12);
        EXPECT_EQ(Int("getSensorCalibrateDelayTimeNative", "(I)I", 3), 1300);
        EXPECT_EQ(Int("getSensorSelfTestDelayTimeNative", "(I)I", 4), 1400);
        EXPECT_EQ(Int("getSensorCalibrateResultNative", "(I)I", 5), -15);
        EXPECT_EQ(Int("getSensorSelfTestResultNative", "(I)I", 6), 16);
        EXPECT_EQ(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 7), "six-face");
        EXPECT_EQ(Int("getCompassRawValueLimitNative", "()I"), -300);
        // The smallest rate shows a widening that loses the sign.
        EXPECT_TRUE(Bool("sensorActivateNative", "(IZI)Z", 8, JNI_TRUE, -2147483647 - 1));
        EXPECT_TRUE(Bool("sensorActivateNative", "(IZI)Z", 8, JNI_FALSE, 0));

        const bool hidl = b.origin != "aidl";
        const std::string on = b.by + ", " + b.handle;
        const std::string activated = hidl ? "activeResult" : "result";
        std::vector<Line> results;
        for (const Line& line : Lines()) {
            if (line.message.rfind(Prefixed(""), 0) == 0) results.push_back(line);
        }
        EXPECT_EQ(results,
                  (std::vector<Line>{
                          {kInfo, Prefixed("StartSensorCalibrate " + on + " sensorId: 1, command: 101, result: 11")},
                          {kInfo, Prefixed("StartSensorSelfTest " + on + " sensorId: 2, command: -102, result: -12")},
                          {kInfo, Prefixed("GetSensorCalibrateDelayTime " + on + " sensorId: 3, delayTime: 1300")},
                          {kInfo, Prefixed("GetSensorSelfTestDelayTime " + on + " sensorId: 4, delayTime: 1400")},
                          // Over HIDL this line ends in a newline.
                          {kInfo, Prefixed("GetSensorCalibrateResult " + on + " sensorId: 5, result: -15" +
                                           (hidl ? "\n" : ""))},
                          {kInfo, Prefixed("GetSensorSelfTestResult " + on + " sensorId: 6, result: 16")},
                          {kInfo, Prefixed("GetSensorCalibrateType " + b.by + ", resultCode: -4, calibType: six-face")},
                          {kInfo, Prefixed("GetCompassRawValueLimit " + on + " result: -300")},
                          {kInfo, Prefixed("SensorActivate " + on + " sensorType: 8, switch: 1, samplingRate: "
                                           "-2147483648, " + activated + ": 0")},
                          {kInfo, Prefixed("SensorActivate " + on + " sensorType: 8, switch: 0, samplingRate: 0, " +
                                           activated + ": 0")}}));
        const std::string from = b.origin + " ";
        EXPECT_EQ(ReceivedCalls(handset()),
                  (std::vector<std::string>{from + "startCalibrate(1,101)", from + "startSelfTest(2,-102)",
                                            from + "getCalibrateDelayTime(3)", from + "getSelfTestDelayTime(4)",
                                            from + "getCalibrateResult(5)", from + "getSelfTestResult(6)",
                                            from + "getCalibrateType(7,1024)", from + "getCompassRawValueLimit()",
                                            from + "activateSensor(8,true,-2147483648)",
                                            from + "activateSensor(8,false,0)"}));
    }
}

TEST_F(SensorCalibrationTest, ActivationIsTrueOnlyForResultZero) {
    for (const Backend& b : Backends()) {
        Boot(b.profile);
        for (int32_t result : {1, -1}) {
            handset().sensors().update([result](SensorAnswers& a) { a.activateResult = result; });
            EXPECT_FALSE(Bool("sensorActivateNative", "(IZI)Z", 3, JNI_TRUE, 10)) << b.handle << " " << result;
        }
    }
}

TEST_F(SensorCalibrationTest, FailedCalibrationTypeIsAnEmptyStringNotNull) {
    Boot(DeviceProfile::AllAidl());
    handset().sensors().update([](SensorAnswers& a) { a.calibrateType = {-22, ""}; });
    EXPECT_EQ(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 9), "");
    EXPECT_TRUE(Has(kInfo, Prefixed("GetSensorCalibrateType by aidl, resultCode: -22, calibType: ")));
}

TEST_F(SensorCalibrationTest, BooleanByteTwoIsLoggedAsTwoAndSentAsTrue) {
    for (const Backend& b : Backends()) {
        Boot(b.profile);
        // Through the JVM the native method sees 1: the JVM normalises the byte.
        EXPECT_TRUE(Bool("sensorActivateNative", "(IZI)Z", 4, static_cast<jboolean>(2), 5));
        EXPECT_NE(Lines().back().message.find(" switch: 1,"), std::string::npos) << Lines().back().message;
        const ActivateFunction activate = CaptureActivate(mEnv);
        ASSERT_NE(activate, nullptr);
        Mark();
        EXPECT_EQ(activate(mEnv, mManager, 4, static_cast<jboolean>(2), 5), JNI_TRUE);
        EXPECT_NE(Lines().back().message.find(b.handle + " sensorType: 4, switch: 2, samplingRate: 5,"),
                  std::string::npos)
                << Lines().back().message;
        EXPECT_EQ(ReceivedCalls(handset()).back(), b.origin + " activateSensor(4,true,5)");
    }
}

TEST_F(SensorCalibrationTest, NoSensorServiceGivesEachFallbackWithOneError) {
    Boot(DeviceProfile::Bare());
    EXPECT_EQ(Int("startSensorCalibrateNative", "(II)I", 1, 101), -1);
    EXPECT_EQ(Int("startSensorSelfTestNative", "(II)I", 2, 102), -1);
    EXPECT_EQ(Int("getSensorCalibrateDelayTimeNative", "(I)I", 3), -1);
    EXPECT_EQ(Int("getSensorSelfTestDelayTimeNative", "(I)I", 4), -1);
    EXPECT_EQ(Int("getSensorCalibrateResultNative", "(I)I", 5), -1);
    EXPECT_EQ(Int("getSensorSelfTestResultNative", "(I)I", 6), -1);
    EXPECT_EQ(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 7), "");
    EXPECT_FALSE(Bool("sensorActivateNative", "(IZI)Z", 1, JNI_TRUE, 66));
    EXPECT_EQ(Int("getCompassRawValueLimitNative", "()I"), -1);
    const std::string both = "g_hwSensors and g_zentelSensors are null";
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("StartSensorCalibrate by hidl fail, " + both)},
                                 {kError, Prefixed("StartSensorSelfTest fail by hidl, " + both)},
                                 {kError, Prefixed("GetSensorCalibrateDelayTime by hidl fail, " + both)},
                                 {kError, Prefixed("GetSensorSelfTestDelayTime by hidl fail, " + both)},
                                 {kError, Prefixed("GetSensorCalibrateResult by hidl fail, " + both)},
                                 {kError, Prefixed("GetSensorSelfTestResult by hidl fail, " + both)},
                                 {kError, Prefixed("GetSensorCalibrateType by hidl fail, " + both)},
                                 {kError, Prefixed("SensorActivate by hidl fail, " + both)},
                                 // Both handles were tried; the line names only the first.
                                 {kError, Prefixed("GetCompassRawValueLimit by hidl fail, g_hwSensors is null")}}));
}

}  // namespace
}  // namespace mmitest
