// Touch-screen tests over both backends: the capacitance test and its Java field, the
// calibration, the rotary crown and the feature configuration.
#include "device_support.h"
#include "jvm.h"

namespace mmitest {
namespace {

using mmisim::TouchScreenAnswers;

constexpr const char* kCalibrateSig = "(I)Ljava/lang/String;";
constexpr const char* kFeatureSig = "(ILjava/lang/String;)I";

class TouchScreenBackendTest : public DeviceBackendCase {};

TEST_P(TouchScreenBackendTest, CapacitanceTestStoresTheServiceTextWhateverTheStatus) {
    handset().touchScreen().update([](TouchScreenAnswers& a) { a.capacitanceTest = {2, "TX3 open, RX7 short"}; });
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), 2);
    EXPECT_EQ(CapacitanceFailInfo(mEnv), "TX3 open, RX7 short");
    EXPECT_TRUE(Has(kInfo, By("GetCapacitanceTestResult", ", ret: 2, info: TX3 open, RX7 short")));
    handset().touchScreen().update([](TouchScreenAnswers& a) { a.capacitanceTest = {0, ""}; });
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), 0);
    EXPECT_EQ(CapacitanceFailInfo(mEnv), "");
    const std::string origin = GetParam().name;
    EXPECT_EQ(CallsTo(handset().touchScreen(), "getCapacitanceTestResult"), (Rows{{origin}, {origin}}));
}

TEST_P(TouchScreenBackendTest, PassingCalibrationAndCrownAnswerTheServiceText) {
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", kCalibrateSig, 5), "calibrated");
    EXPECT_EQ(CallsTo(handset().touchScreen(), "getCapacitanceCalibrateResult"), (Rows{{GetParam().name, "5"}}));
    EXPECT_TRUE(Has(kInfo, By("GetCapacitanceCalibrateResult", ", ret: 0, info: calibrated")));
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), "pass");
    // Only the AIDL line carries the status.
    EXPECT_TRUE(Has(kInfo, By("GetRotateCrownTestResult", GetParam().aidl() ? ", ret: 0, info: pass"
                                                                             : ", info: pass")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

// The backends answer a failure differently: empty texts over AIDL, fixed texts over HIDL
// (the crown's own text is dropped).
TEST_P(TouchScreenBackendTest, FailedCalibrationAndCrown) {
    handset().touchScreen().update([](TouchScreenAnswers& a) {
        a.capacitanceCalibrate = {3, "short"};
        a.rotateCrown = {1, "stuck"};
    });
    const bool aidl = GetParam().aidl();
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", kCalibrateSig, 5), aidl ? "" : "Capacitance Calibrate Failed");
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), aidl ? "" : "error");
    EXPECT_EQ(LinesWithPriority(kError), Errors({By("GetCapacitanceCalibrateResult", aidl ? " fail" : " fail, ret: 3"),
                                                 By("GetRotateCrownTestResult", " fail")}));
    if (!aidl) {
        EXPECT_TRUE(Has(kInfo, By("GetCapacitanceCalibrateResult", ", ret: 3, info: Capacitance Calibrate Failed")));
    }
}

TEST_P(TouchScreenBackendTest, FeatureConfigurationReachesTheServiceUnlessTheTextIsNull) {
    handset().touchScreen().update([](TouchScreenAnswers& a) { a.featureConfigResult = 4; });
    EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", kFeatureSig, 3, J("glove=1")), 4);
    EXPECT_EQ(CallsTo(handset().touchScreen(), "setTouchScreenFeatureConfig"),
              (Rows{{GetParam().name, "3", "glove=1"}}));
    // Only the AIDL line carries the result.
    const std::string line = std::string(", feature: 3, config: glove=1") + (GetParam().aidl() ? ", result: 4" : "");
    EXPECT_TRUE(Has(kInfo, By("SetTouchScreenFeatureConfig", line)));
    Mark();
    EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", kFeatureSig, 3, (jstring) nullptr), -1);
    EXPECT_EQ(LinesWithPriority(kError), Errors({By("SetTouchScreenFeatureConfig", " fail, config is null")}));
    EXPECT_EQ(handset().touchScreen().callsTo("setTouchScreenFeatureConfig").size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Backends, TouchScreenBackendTest, ::testing::Values(kAidlDevices, kHidlDevices),
                         DeviceBackendName);

class TouchScreenTest : public MmiTest {};

TEST_F(TouchScreenTest, WithoutServiceAnswersFallbacksAndKeepsTheJavaField) {
    Boot(mmisim::DeviceProfile::Bare());
    SetCapacitanceFailInfo(mEnv, "earlier run");
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
    EXPECT_EQ(CapacitanceFailInfo(mEnv), "earlier run");
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", kCalibrateSig, 5), "Capacitance Calibrate Failed");
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", kFeatureSig, 3, J("glove=1")), -1);
    const std::string null = " by hidl fail, g_hwTouchScreen is null";
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({Prefixed("GetCapacitanceTestResult" + null), Prefixed("GetCapacitanceCalibrateResult" + null),
                      Prefixed("GetRotateCrownTestResult" + null), Prefixed("SetTouchScreenFeatureConfig" + null)}));
}

// A class without the field (called straight through the library's native table): the status
// still comes back, and the failed lookup leaves no Java exception behind.
TEST_F(TouchScreenTest, FailedFieldLookupIsReportedAndCleared) {
    for (const DeviceBackend& backend : {kAidlDevices, kHidlDevices}) {
        Boot(backend.profile());
        handset().touchScreen().update([](TouchScreenAnswers& a) { a.capacitanceTest = {2, "TX3 open"}; });
        const auto table = NativeTable::Capture([this](JavaVM* vm) { return CallOnLoad(vm); }, mEnv);
        auto capacitanceTest = reinterpret_cast<jint (*)(JNIEnv*, jobject)>(table.at("getCapacitanceTestResultNative"));
        RedirectedEnv env(mEnv, "java/lang/Object", Jvm::Get().vm());
        Mark();
        EXPECT_EQ(capacitanceTest(env.get(), mManager), 2);
        EXPECT_FALSE(mEnv->ExceptionCheck());
        EXPECT_EQ(LinesWithPriority(kError),
                  Errors({Prefixed(std::string("GetCapacitanceTestResult by ") + backend.name +
                                   " fail, static field sTpCapacitanceFailInfo not found")}));
    }
}

TEST_F(TouchScreenTest, HidlServiceDyingUnderTheCallsAnswersThePresets) {
    Boot(mmisim::DeviceProfile::AllHidl());
    WithDeadService(mmisim::Family::kTouchScreen, [&] {
        EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
        EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", kCalibrateSig, 5), "Capacitance Calibrate Failed");
        EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), "error");
        EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", kFeatureSig, 3, J("glove=1")), -1);
    });
    EXPECT_TRUE(Has(kInfo, Prefixed("GetCapacitanceTestResult by hidl, ret: -1, info: ")));
}

}  // namespace
}  // namespace mmitest
