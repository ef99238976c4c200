// Device behaviour beyond the method table's: power-state texts, the capacitance test's Java
// field, failed calibration and crown tests, a Java class without that field; the display
// parameter's status, the backlight steered by the display family, video interpolation on a
// handset without the display processor's library (this executable has none on its loader's
// path; tests/panel has it); sensor activation and its boolean byte, and flicker measurement
// (the service's own answer, or raw samples analysed by the library).
#include <sim/light_source.h>

#include <cstdlib>

#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::SensorAnswers;
using mmisim::TouchScreenAnswers;

class DevicesTest : public BackendTest {};
class DeviceTest : public MmiTest {};

TEST_P(DevicesTest, PowerStateTextOnlyWithResultZero) {
    BootBackend();
    handset().power().update([](mmisim::PowerAnswers& a) { a.powerState = {3, "half written"}; });
    EXPECT_EQ(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J("charge")), "");
    // Not an error line on either backend.
    EXPECT_TRUE(Has(kInfo, aidl() ? By("GetPowerState", " fail, result code: 3")
                                  : By("GetPowerState", ", result code: 3, result info: ")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(DevicesTest, CapacitanceTestStoresTheServiceTextInJavaWhateverTheStatus) {
    BootBackend();
    for (const mmisim::TextReply& reply : {mmisim::TextReply{2, "TX3 open, RX7 short"}, mmisim::TextReply{0, ""}}) {
        handset().touchScreen().update([&](TouchScreenAnswers& a) { a.capacitanceTest = reply; });
        EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), reply.ret);
        EXPECT_EQ(FailInfo(), reply.text);
    }
    // Status -1 means the HIDL service never called back; the field then gets the empty text.
    if (!aidl()) {
        SetFailInfo("before");
        handset().setFaults(mmisim::Family::kTouchScreen, {false, true, 0});
        EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
        EXPECT_EQ(FailInfo(), "");
    }
}

// The backends answer a failure differently: empty texts over AIDL, fixed texts over HIDL
// (the crown's own text is dropped).
TEST_P(DevicesTest, FailedCalibrationAndCrown) {
    BootBackend();
    handset().touchScreen().update([](TouchScreenAnswers& a) {
        a.capacitanceCalibrate = {3, "short"};
        a.rotateCrown = {1, "stuck"};
    });
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", 5),
              aidl() ? "" : "Capacitance Calibrate Failed");
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), aidl() ? "" : "error");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, By("GetCapacitanceCalibrateResult", aidl() ? " fail" : " fail, ret: 3")},
                                 {kError, By("GetRotateCrownTestResult", " fail")}}));
    if (!aidl()) {
        EXPECT_TRUE(Has(kInfo, By("GetCapacitanceCalibrateResult", ", ret: 3, info: Capacitance Calibrate Failed")));
    }
}

// A class without the field: the status still comes back, and the failed lookup leaves no
// Java exception behind.
TEST_P(DevicesTest, FailedFieldLookupIsReportedAndCleared) {
    BootBackend();
    handset().touchScreen().update([](TouchScreenAnswers& a) { a.capacitanceTest = {2, "TX3 open"}; });
    PatchedJni jni(mEnv);
    PatchedJni::redirectClass = "java/lang/Object";
    jni.Apply();
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), 2);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, By("GetCapacitanceTestResult", " fail, static field sTpCapacitanceFailInfo "
                                                                         "not found")}}));
}

TEST_F(DeviceTest, WithoutTheServiceTheJavaFieldIsKept) {
    Boot(mmisim::DeviceProfile::Bare());
    SetFailInfo("earlier run");
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
    EXPECT_EQ(FailInfo(), "earlier run");
}

// Any status but 0 answers -1; both backends write the same line.
TEST_P(DevicesTest, ParameterStatusFoldsIntoZeroOrMinusOne) {
    BootBackend();
    for (int status : {5, 1, -3}) {
        handset().display().update([status](mmisim::DisplayAnswers& a) { a.displayParameter = {status, "panel busy"}; });
        Mark();
        EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 9, -1, J("")), -1) << status;
        EXPECT_TRUE(Has(kInfo, Prefixed("SetDisplayParameter scence: 9, dataInt: -1, dataString: , ret: " +
                                        std::to_string(status) + ", result info: panel busy")));
    }
}

// Without an AIDL display the backlight is the HIDL light service's light 1, even when the
// light family itself is served over AIDL.

TEST_F(DeviceTest, BacklightIsSteeredByTheDisplayFamily) {
    DeviceProfile profile = DeviceProfile::AllHidl();
    profile[Family::kLight].transport = mmisim::Transport::kAidl;
    Boot(profile);
    EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 200), -1);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kInfo, "IsDisplayAidlVersion"},
                                          {kInfo, "SetBackLightBrightness, Hidl Called"},
                                          {kError, Prefixed("SetLightBrightness by hidl fail, g_hwLight is null")}}));
    EXPECT_TRUE(handset().light().calls().empty());
}

// Every call fails with the loader's reason and tries the load again, also after a shutdown
// of a library that never opened.
TEST_F(DeviceTest, WithoutTheLibraryInterpolationFailsAndTriesTheLoadAgain) {
    Boot(DeviceProfile::Bare());
    const std::string failure = Prefixed("failed to load libpixelworksMMITest.so: libpixelworksMMITest.so: cannot open");
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        Mark();
        EXPECT_EQ(Int("setVideoInterpolationModelNative", "(II)I", 2, 120), -1);
        EXPECT_EQ(Str("getVideoInterpolationModelNative", "()Ljava/lang/String;"), "");
        EXPECT_EQ(Int("getVideoInterpolationDefaultModelNative", "()I"), -1);
        EXPECT_EQ(Int("recoverInperpolateFreshRateNative", "()I"), -1);
        std::vector<Line> lines = Lines();
        ASSERT_EQ(lines.size(), 10u);
        for (size_t i : {2, 5, 7, 9}) {
            EXPECT_EQ(lines[i].message.rfind(failure, 0), 0u) << lines[i];
            lines[i].message = "<load failure>";
        }
        EXPECT_EQ(lines, (std::vector<Line>{
                                 {kInfo, "SetVideoInterpolationModel, Hidl Called"},
                                 {kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 2, freshRate: 120")},
                                 {kError, "<load failure>"},
                                 {kInfo, "GetVideoInterpolationModel, Hidl Called"},
                                 {kInfo, Prefixed("start getModes by hidl")},
                                 {kError, "<load failure>"},
                                 {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                                 {kError, "<load failure>"},
                                 {kInfo, "RecoverInperpolateFreshRate, Hidl Called"},
                                 {kError, "<load failure>"}}));
        CallOnUnload(Jvm::Get().vm());
        ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    }
}

class FlickerTest : public MmiTest {
protected:
    void Answer(int32_t result, std::vector<int32_t> data, bool supported = false) {
        handset().sensors().update([&](SensorAnswers& a) {
            a.sensorData[5] = {result, data};
            a.flickerSupported = supported;
        });
    }
    int Frequency() { return Int("getFlickerFrequencyNative", "(I)I", 5); }
    std::optional<std::vector<int>> Amplitude() { return Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", 5); }
};

TEST_P(DevicesTest, ActivationIsTrueOnlyForResultZero) {
    BootBackend();
    for (int32_t result : {1, -1}) {
        handset().sensors().update([result](SensorAnswers& a) { a.activateResult = result; });
        EXPECT_FALSE(Bool("sensorActivateNative", "(IZI)Z", 3, JNI_TRUE, 10)) << result;
    }
}

// Through the JVM the native method sees 1 for any true boolean; called directly with the
// byte 2 it logs 2 and the service receives true.
TEST_P(DevicesTest, BooleanByteTwoIsLoggedAsTwoAndSentAsTrue) {
    BootBackend();
    using Activate = jboolean (*)(JNIEnv*, jobject, jint, jboolean, jint);
    auto activate = reinterpret_cast<Activate>(Natives().at("sensorActivateNative"));
    ClearCalls();
    Mark();
    EXPECT_EQ(activate(mEnv, mManager, 4, static_cast<jboolean>(2), 5), JNI_TRUE);
    EXPECT_NE(Lines().back().message.find("sensorType: 4, switch: 2, samplingRate: 5,"), std::string::npos)
            << Lines().back().message;
    EXPECT_EQ(Received(mmisim::Family::kSensors, "activateSensor"),
              (std::vector<std::vector<std::string>>{{"4", "true", "5"}}));
}

// Over AIDL the service reports frequency and amplitude: one value means no amplitude, and
// an empty or failed answer (its data ignored) fails both.
TEST_F(FlickerTest, AidlServiceAnswers) {
    Boot(mmisim::DeviceProfile::AllAidl());
    Answer(0, {120});
    EXPECT_EQ(Amplitude(), (std::vector<int>{120, -1}));
    for (int32_t result : {0, 3}) {
        Answer(result, result == 0 ? std::vector<int32_t>{} : std::vector<int32_t>{100, 2300});
        Mark();
        EXPECT_EQ(Frequency(), -1);
        EXPECT_EQ(Amplitude(), std::nullopt);
        const std::string fail = " by aidl fail, get result fail, result: " + std::to_string(result);
        EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, Prefixed("GetFlickerFrequency" + fail)},
                                                                {kError, Prefixed("GetFlickerFrequencyAndAmplitude" + fail)}}));
    }
}

// Over HIDL the library analyses the first 256 raw samples itself, unless the service
// detects flicker on its own.
TEST_F(FlickerTest, HidlRawSamplesAreAnalysed) {
    Boot(mmisim::DeviceProfile::AllHidl());
    // Mains lighting, modulated by half its level, is found within one bin.
    for (double tone : {100.0, 120.0}) {
        Answer(0, mmisim::LightSourceSamples({tone, 2500.0, 5000.0, 40.0, 7}));
        const int found = Frequency();
        EXPECT_LE(std::abs(found - tone), 1.0) << tone << " Hz came back as " << found;
    }
    // 44 more samples of a very different light change nothing; 255 are too few.
    std::vector<int32_t> samples = mmisim::LightSourceSamples({100.0, 2500.0, 5000.0, 0.0, 1});
    Answer(0, samples);
    const int first = Frequency();
    std::vector<int32_t> longer = samples;
    for (int32_t s : mmisim::LightSourceSamples({300.0, 9000.0, 0.0, 0.0, 2}, 44)) longer.push_back(s);
    Answer(0, longer);
    EXPECT_EQ(Frequency(), first);
    Answer(0, std::vector<int32_t>(256, 0));
    EXPECT_EQ(Frequency(), 0);  // darkness
    ClearCalls();
    Mark();
    Answer(0, std::vector<int32_t>(samples.begin(), samples.begin() + 255));
    EXPECT_EQ(Frequency(), -1);
    Answer(0, {}, true);
    EXPECT_EQ(Frequency(), -1);
    Answer(2, {97}, true);
    EXPECT_EQ(Frequency(), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("GetFlickerFrequency by hidl fail, original data is illegal")},
                                 {kError, Prefixed("GetFlickerFrequency by hidl fail, result data is illegal")},
                                 {kError, Prefixed("GetFlickerFrequency by hidl fail, result fail")}}));
    // A failed read still asks about support; a service that detects flicker answers itself.
    EXPECT_EQ(Received(mmisim::Family::kSensors, "isFlickerSupported").size(), 3u);
    Answer(0, {97, 1, 2}, true);
    EXPECT_EQ(Frequency(), 97);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequency by hidl, isFlickerSupported: 1")));
}

MMI_ON_BOTH_BACKENDS(DevicesTest);

}  // namespace
}  // namespace mmitest
