// Flicker measurement through the JVM: the AIDL service's own answer, and over HIDL either
// the service's answer or raw samples analysed by the library.
#include <sim/light_source.h>

#include <cstdlib>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::SensorAnswers;

constexpr int kSensor = 5;

class AidlFlickerTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        Boot(DeviceProfile::AllAidl());
    }
    void Answer(int32_t result, std::vector<int32_t> data) {
        handset().sensors().update([&](SensorAnswers& a) { a.sensorData[kSensor] = {result, data}; });
    }
    std::optional<std::vector<int>> Amplitude() { return Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", kSensor); }
    int Frequency() { return Int("getFlickerFrequencyNative", "(I)I", kSensor); }
};

TEST_F(AidlFlickerTest, ServiceAnswerComesBackWithItsAmplitude) {
    Answer(0, {100, 2300});
    EXPECT_EQ(Frequency(), 100);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequency by aidl, frequenceDetected: 100")));
    EXPECT_EQ(Amplitude(), (std::vector<int>{100, 2300}));
    EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequencyAndAmplitude by aidl, frequenceDetected: 100, amplitude: 2300")));
    EXPECT_EQ(handset().sensors().callsTo("getSensorData")[0].args, std::vector<std::string>{"5"});
}

TEST_F(AidlFlickerTest, OneValueMeansNoAmplitude) {
    Answer(0, {120});
    EXPECT_EQ(Amplitude(), (std::vector<int>{120, -1}));
}

TEST_F(AidlFlickerTest, EmptyAnswerFailsWithStatusZero) {
    Answer(0, {});
    EXPECT_EQ(Frequency(), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequency by aidl fail, get result fail, result: 0")));
    EXPECT_EQ(Amplitude(), std::nullopt);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequencyAndAmplitude by aidl fail, get result fail, result: 0")));
}

TEST_F(AidlFlickerTest, FailedMeasurementIgnoresItsData) {
    Answer(3, {100, 2300});
    EXPECT_EQ(Frequency(), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequency by aidl fail, get result fail, result: 3")));
    EXPECT_EQ(Amplitude(), std::nullopt);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequencyAndAmplitude by aidl fail, get result fail, result: 3")));
}

class HidlFlickerTest : public MmiTest {
protected:
    void BootHidl(bool withV1 = true) {
        DeviceProfile profile = DeviceProfile::AllHidl();
        profile[Family::kSensors].sensorsV1 = withV1;
        Boot(profile);
    }
    void Answer(bool supported, int32_t result, std::vector<int32_t> data) {
        handset().sensors().update([&](SensorAnswers& a) {
            a.flickerSupported = supported;
            a.sensorData[kSensor] = {result, data};
        });
    }
    // A lamp on mains power, modulated by half its level. (A nearly steady light leaks its
    // level through the window into the lowest searched bins and hides a weak flicker.)
    void LightOf(double frequencyHz, double noise = 40.0) {
        Answer(false, 0, mmisim::LightSourceSamples({frequencyHz, 2500.0, 5000.0, noise, 7}));
    }
    int Frequency() { return Int("getFlickerFrequencyNative", "(I)I", kSensor); }
};

TEST_F(HidlFlickerTest, MainsLightingIsFoundWithinOneBin) {
    BootHidl();
    for (double tone : {100.0, 120.0}) {
        LightOf(tone);
        Mark();
        const int found = Frequency();
        EXPECT_LE(std::abs(found - tone), 1.0) << tone << " Hz came back as " << found;
        EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequency by hidl, isFlickerSupported: 0")));
        EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequency by hidl, frequenceDetected: " + std::to_string(found))));
    }
    // The amplitude exists only over AIDL.
    EXPECT_EQ(Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", kSensor), std::nullopt);
}

TEST_F(HidlFlickerTest, OnlyTheFirst256SamplesAreAnalysed) {
    BootHidl();
    std::vector<int32_t> samples = mmisim::LightSourceSamples({100.0, 2500.0, 5000.0, 0.0, 1});
    Answer(false, 0, samples);
    const int first = Frequency();
    // 44 more samples of a very different light change nothing.
    std::vector<int32_t> longer = samples;
    for (int32_t s : mmisim::LightSourceSamples({300.0, 9000.0, 0.0, 0.0, 2}, 44)) longer.push_back(s);
    Answer(false, 0, longer);
    EXPECT_EQ(Frequency(), first);
    Mark();
    Answer(false, 0, std::vector<int32_t>(samples.begin(), samples.begin() + 255));
    EXPECT_EQ(Frequency(), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequency by hidl fail, original data is illegal")));
}

TEST_F(HidlFlickerTest, DarknessMeasuresZero) {
    BootHidl();
    Answer(false, 0, std::vector<int32_t>(256, 0));
    EXPECT_EQ(Frequency(), 0);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequency by hidl, frequenceDetected: 0")));
}

TEST_F(HidlFlickerTest, ServiceThatDetectsFlickerAnswersItself) {
    BootHidl();
    Answer(true, 0, {97, 1, 2});
    EXPECT_EQ(Frequency(), 97);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetFlickerFrequency by hidl, isFlickerSupported: 1")));
    Mark();
    Answer(true, 0, {});
    EXPECT_EQ(Frequency(), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequency by hidl fail, result data is illegal")));
}

TEST_F(HidlFlickerTest, FailedReadStillAsksAboutSupport) {
    BootHidl();
    Answer(true, 2, {97});
    EXPECT_EQ(Frequency(), -1);
    EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, Prefixed("GetFlickerFrequency by hidl fail, result fail")}}));
    EXPECT_EQ(handset().sensors().callsTo("isFlickerSupported").size(), 1u);
}

TEST_F(HidlFlickerTest, PrefersTheFirstGenerationAndFallsBackToTheSecond) {
    BootHidl();
    Answer(true, 0, {97});
    Frequency();
    for (const auto& call : handset().sensors().calls()) EXPECT_EQ(call.origin, "hidl") << call.method;

    BootHidl(false);
    handset().sensors().update([](SensorAnswers& a) {
        a.flickerSupported = true;
        a.sensorData[kSensor] = {0, {98}};
    });
    EXPECT_EQ(Frequency(), 98);
    const auto calls = handset().sensors().calls();
    ASSERT_EQ(calls.size(), 2u);
    for (const auto& call : calls) EXPECT_EQ(call.origin, "hidl2") << call.method;
}

TEST_F(HidlFlickerTest, WithoutAnySensorsService) {
    Boot(DeviceProfile::Bare());
    EXPECT_EQ(Frequency(), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequency by hidl fail, g_hwSensors and g_zentelSensors are null")));
}

}  // namespace
}  // namespace mmitest
