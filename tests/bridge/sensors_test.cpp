// Sensor behaviour beyond the method table's: activation and its boolean byte, and flicker
// measurement (the service's own answer, or raw samples analysed by the library).
#include <sim/light_source.h>

#include <cstdlib>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::SensorAnswers;

class SensorsTest : public BackendTest {};

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

TEST_P(SensorsTest, ActivationIsTrueOnlyForResultZero) {
    BootBackend();
    for (int32_t result : {1, -1}) {
        handset().sensors().update([result](SensorAnswers& a) { a.activateResult = result; });
        EXPECT_FALSE(Bool("sensorActivateNative", "(IZI)Z", 3, JNI_TRUE, 10)) << result;
    }
}

// Through the JVM the native method sees 1 for any true boolean; called directly with the
// byte 2 it logs 2 and the service receives true.
TEST_P(SensorsTest, BooleanByteTwoIsLoggedAsTwoAndSentAsTrue) {
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

MMI_ON_BOTH_BACKENDS(SensorsTest);

}  // namespace
}  // namespace mmitest
