// Bit-identity of the fast detector with the literal transcription (result, frequency, all
// 500 magnitudes) on each kernel, and of the public entry's result, over 4,000 seeded inputs
// of several kinds. The fuzz target explores further.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "flicker_detector.h"
#include "flicker_fast.h"
#include "flicker_kernels.h"
#include "flicker_reference.h"

namespace {

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();
constexpr double kTwoPi = 6.283185307179586;

struct Input {
    int samples[256];
    int windowLength = 256;
    float rate = 1000.0f;
};

class Random {
public:
    explicit Random(uint32_t index) : state_((static_cast<uint64_t>(index) + 1) * 0x9E3779B97F4A7C15ull) {}
    uint64_t Next() {  // splitmix64
        uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int Int(int lo, int hi) {  // inclusive
        return static_cast<int>(lo + static_cast<int64_t>(Next() % (uint64_t(int64_t(hi) - lo) + 1)));
    }
    double Real(double lo, double hi) { return lo + (hi - lo) * static_cast<double>(Next() >> 11) / 9007199254740992.0; }

private:
    uint64_t state_;
};

int Clamp(double v) {
    return v >= 2147483647.0 ? kIntMax : v <= -2147483648.0 ? kIntMin : static_cast<int>(std::lround(v));
}

// The input of an index: index % 8 picks the kind, the rest varies it.
void MakeInput(uint32_t index, Input& in) {
    Random r(index);
    const uint32_t kind = index % 8, variant = index / 8;
    static const int kExtremes[] = {kIntMin, kIntMin + 1, kIntMax, kIntMax - 1, 0, -1, 1, 860000, -860000, 1 << 24};
    static const float kRates[] = {1000.0f, 500.0f, 2000.0f, 0.0f, -1000.0f, 1.0f, 1e-3f, 44100.0f, 1e30f,
                                   std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                                   -std::numeric_limits<float>::infinity()};
    // One or two tones, or a square wave, with DC and noise; a third of them exactly on a bin
    // from 15 to 505, the edges of the searched range (bins 20 to 498) first.
    static const int kEdgeBins[] = {19, 20, 498, 499, 15, 505};
    const int bin = variant / 3 < 6 ? kEdgeBins[variant / 3] : 15 + static_cast<int>(variant * 7 % 491);
    const double amplitude = std::pow(10.0, r.Real(0.0, 5.5)), dc = variant % 3 ? r.Real(0.0, 2.0 * amplitude) : 0.0;
    const double f = variant % 3 == 1 ? bin * 1000.0 / 1024.0 : r.Real(0.5, 499.5);
    const double second = variant % 2 ? amplitude * r.Real(0.05, 1.0) : 0.0, f2 = r.Real(0.5, 499.5);
    const double noise = amplitude * r.Real(0.0, 0.9), phase = r.Real(0.0, kTwoPi), duty = r.Real(0.1, 0.9);
    const int pick = r.Int(0, 9), value = r.Int(-100000, 100000), at = r.Int(0, 255), slope = r.Int(-5000, 5000);
    static const int kRanges[][2] = {{-32768, 32767}, {0, 65535}, {-8, 8}, {1000, 5095}};  // -8..8 windows to 0 or 1
    for (int n = 0; n < 256; ++n) {
        const double cycle = f * n / 1000.0 + phase / kTwoPi;
        const double tone = amplitude * std::cos(kTwoPi * cycle) + second * std::sin(kTwoPi * f2 * n / 1000.0);
        const double square = cycle - std::floor(cycle) < duty ? amplitude : -amplitude;
        const int flat[] = {0, value, n == at ? value : 0, n < at ? 0 : value, slope * n};
        switch (kind) {
            case 0: in.samples[n] = r.Int(kRanges[variant % 4][0], kRanges[variant % 4][1]); break;
            case 1: in.samples[n] = Clamp(tone + dc + noise * r.Real(-1.0, 1.0)); break;
            case 2: in.samples[n] = Clamp(square + dc + noise * r.Real(-0.3, 0.3)); break;
            // Values near the int limits and beyond the filter's overflow limit (~860,000).
            case 3: in.samples[n] = variant % 2 ? kExtremes[r.Int(0, 9)] : kExtremes[pick]; break;
            case 4: in.samples[n] = variant % 2 ? static_cast<int>(r.Next()) : n % 2 ? kIntMin : kIntMax; break;
            case 5: in.samples[n] = Clamp(2.1e9 * std::sin(kTwoPi * (pick * 47 + 5) * n / 1000.0)); break;
            case 6: in.samples[n] = flat[variant % 5]; break;  // silence, constants, impulses, steps, ramps
            default: in.samples[n] = variant % 2 ? r.Int(-32768, 32767) : Clamp(tone + dc); break;
        }
    }
    if (kind >= 3 && kind <= 5) {
        // Odd lengths have a window coefficient of exactly 1.0 in the middle: a filtered
        // INT_MAX there converts from 2^31 and saturates.
        static const int kLengths[] = {256, 256, 256, 3, 5, 255, 257, 299, 300};
        in.windowLength = kLengths[r.Int(0, 8)];
        if (in.windowLength == 3 && r.Int(0, 1)) in.samples[1] = kIntMax;
    } else if (kind == 6 && variant % 5 == 0) {  // silence under any window length and rate
        in.windowLength = r.Int(-3, 300);
        in.rate = static_cast<float>(r.Real(-5000.0, 5000.0));
    } else if (kind == 7 && variant % 4 == 0) {
        // Two-sample windows: only the first windowed sample survives, so all bins tie.
        in.samples[1] = r.Int(-12, 12);
        in.windowLength = 2;
    } else if (kind == 7) {  // any window length and sample rate
        in.windowLength = r.Int(-3, 300);
        in.rate = pick < 9 ? kRates[r.Int(0, 11)] : static_cast<float>(r.Real(1.0, 100000.0));
    }
}

struct Report {
    std::mutex mutex;
    uint64_t mismatches = 0;
    std::vector<std::string> examples;
    std::set<int> frequencies;  // of the literal transcription
};

void CheckOne(FlickerKernel kernel, uint32_t index, Report& report) {
    Input in;
    MakeInput(index, in);
    float expected[500], magnitudes[500];
    int expectedFrequency = -12345, frequency = -12345, entryFrequency = -12345;
    const int expectedRc =
            flicker_reference::DetectWithMagnitudes(in.samples, in.windowLength, expectedFrequency, in.rate, expected);
    const int rc = FlickerDetectWithKernel(kernel, in.samples, in.windowLength, frequency, in.rate, &magnitudes);
    const int entryRc = DetectFlickerFrequence(in.samples, in.windowLength, entryFrequency, in.rate);  // no magnitudes
    const bool same = rc == expectedRc && frequency == expectedFrequency && entryRc == expectedRc &&
                      entryFrequency == expectedFrequency && std::memcmp(magnitudes, expected, sizeof(expected)) == 0;
    std::lock_guard<std::mutex> lock(report.mutex);
    report.frequencies.insert(expectedFrequency);
    if (!same && ++report.mismatches <= 5) {
        std::ostringstream example;
        example << "input " << index << ": literal rc " << expectedRc << " frequency " << expectedFrequency << "; "
                << FlickerKernelName(kernel) << " rc " << rc << " frequency " << frequency << "; public entry rc "
                << entryRc << " frequency " << entryFrequency << "; magnitudes "
                << (std::memcmp(magnitudes, expected, sizeof(expected)) == 0 ? "same" : "differ");
        report.examples.push_back(example.str());
    }
}

class FlickerIdentity : public FlickerKernelTest {};

// Spread over the hardware threads. The inputs reach many frequencies, silence, ties going
// to bin 20 and saturating or negative results (and the filter's overflow: kinds 3 to 5).
TEST_P(FlickerIdentity, SeededInputs) {
    constexpr uint32_t kInputs = 4000;
    Report report;
    std::atomic<uint32_t> next{0};
    auto worker = [&] {
        for (uint32_t i; (i = next.fetch_add(1)) < kInputs;) CheckOne(GetParam(), i, report);
    };
    std::vector<std::thread> pool(std::max(1u, std::thread::hardware_concurrency()) - 1);
    for (std::thread& t : pool) t = std::thread(worker);
    worker();
    for (std::thread& t : pool) t.join();
    EXPECT_EQ(report.mismatches, 0u);
    for (const std::string& example : report.examples) ADD_FAILURE() << example;
    EXPECT_GT(report.frequencies.size(), 200u);  // of the 468 reportable values
    for (int frequency : {0, 19, kIntMax}) EXPECT_EQ(report.frequencies.count(frequency), 1u) << frequency;
    EXPECT_LT(*report.frequencies.begin(), 0);
}

INSTANTIATE_TEST_SUITE_P(Kernel, FlickerIdentity, testing::ValuesIn(BuiltInFlickerKernels()), FlickerKernelParamName);

TEST(FlickerKernels, BestKernelIsSelected) {
    ASSERT_TRUE(FlickerKernelAvailable(FlickerKernel::kPortable));
#if defined(__x86_64__)
    EXPECT_EQ(FlickerKernelSelect(), __builtin_cpu_supports("avx2") ? FlickerKernel::kAvx2 : FlickerKernel::kPortable);
#elif defined(__aarch64__)
    EXPECT_TRUE(FlickerKernelBuiltIn(FlickerKernel::kNeon));
    EXPECT_EQ(FlickerKernelSelect(), FlickerKernel::kNeon);
#endif
    std::printf("selected kernel: %s\n", FlickerKernelName(FlickerKernelSelect()));
}

}  // namespace
