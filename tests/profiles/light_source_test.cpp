// The simulated light in front of the sensor: what the flicker detector finds in its samples.
#include <flicker_detector.h>
#include <gtest/gtest.h>
#include <sim/light_source.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

using mmisim::LightSource;

// What the detector finds in 256 samples of the light.
int Detect(const LightSource& light) {
    int raw[256], frequency = -1;
    const std::vector<int32_t> samples = mmisim::LightSourceSamples(light, 256, 1000.0);
    std::copy(samples.begin(), samples.end(), raw);
    EXPECT_EQ(DetectFlickerFrequence(raw, 256, frequency, 1000.0f), 0);
    return frequency;
}

// Within a bin (0.98 Hz) and the truncation of the light's frequency. Far above the low-pass
// filter's 50 Hz a weak flicker drowns in what the steady level leaks into the lowest searched
// bins (19 to 30 Hz); a strong one comes through. A steady light gives no peak.
TEST(DetectedFlicker, IsTheLightsFrequencyUnlessItDrowns) {
    for (double frequency : {30.0, 50.0, 60.0, 100.0, 120.0, 150.0, 160.0}) {
        EXPECT_NEAR(Detect(LightSource{frequency, 400.0, 2000.0, 20.0, 7}), frequency, 2.0);
    }
    for (double frequency : {300.0, 400.0, 480.0}) {
        EXPECT_NEAR(Detect(LightSource{frequency, 400.0, 2000.0, 20.0, 7}), 24.5, 5.5) << frequency;  // 19 to 30
    }
    EXPECT_NEAR(Detect(LightSource{200.0, 2000.0, 2000.0, 20.0, 7}), 200.0, 2.0);
    EXPECT_EQ(Detect(LightSource{0.0, 0.0, 0.0, 0.0, 1}), 0);
}

}  // namespace
