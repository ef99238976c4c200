// Bit-identity of the fast detector with the literal transcription: result
// code, frequency and all 500 magnitudes, over 100,000 inputs of several
// kinds, for each kernel the processor runs (one test per kernel), and the
// public entry's result. Inputs are spread over the hardware threads. The
// sanitizer and emulated passes, many times slower, set
// MMI_FLICKER_IDENTITY_DIVISOR to check a fraction of the inputs instead.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
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

enum class Kind { kRandom16, kTones, kExtremes, kFlat, kParameters };

struct Input {
    int samples[256];
    int windowLength = 256;
    float rate = 1000.0f;
};

class Random {
public:
    Random(Kind kind, uint32_t index) : state_((static_cast<uint64_t>(kind) << 32 | index) * 0x9E3779B97F4A7C15ull) {}
    uint64_t Next() {  // splitmix64
        uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int Int(int lo, int hi) {  // inclusive
        return static_cast<int>(lo + static_cast<int64_t>(Next() % (uint64_t(int64_t(hi) - lo) + 1)));
    }
    double Real(double lo, double hi) {
        return lo + (hi - lo) * static_cast<double>(Next() >> 11) / 9007199254740992.0;
    }

private:
    uint64_t state_;
};

int Clamp(double v) {
    return v >= 2147483647.0 ? kIntMax : v <= -2147483648.0 ? kIntMin : static_cast<int>(std::lround(v));
}

void RandomSamples(Random& r, uint32_t index, Input& in) {
    static const int kRanges[][2] = {{-32768, 32767}, {0, 65535}, {-8, 8}, {1000, 5095}};
    const auto& range = kRanges[index % 4];  // -8..8 windows to 0 or 1
    for (int& s : in.samples) s = r.Int(range[0], range[1]);
}

// One or two tones, or a square wave, on or between bins, with DC and noise.
void ToneSamples(Random& r, uint32_t index, Input& in) {
    const double amplitude = std::pow(10.0, r.Real(0.0, 5.5));
    const double dc = index % 3 ? r.Real(0.0, 2.0 * amplitude) : 0.0;
    const double noise = amplitude * r.Real(0.0, index % 5 == 4 ? 0.9 : 0.3);
    // Every fifth tone sits exactly on a bin, 15..505, including 19, 20, 498 and 499.
    const double f = index % 5 == 1 ? (15 + index / 5 % 491) * 1000.0 / 1024.0 : r.Real(0.5, 499.5);
    const double second = index % 5 == 2 ? amplitude * r.Real(0.05, 1.0) : 0.0;
    const double f2 = r.Real(0.5, 499.5), phase = r.Real(0.0, kTwoPi), duty = r.Real(0.1, 0.9);
    for (int n = 0; n < 256; ++n) {
        const double cycle = f * n / 1000.0 + phase / kTwoPi;
        double v = index % 5 == 3 ? (cycle - std::floor(cycle) < duty ? amplitude : -amplitude)
                                  : amplitude * std::cos(kTwoPi * cycle) + second * std::sin(kTwoPi * f2 * n / 1000.0);
        in.samples[n] = Clamp(v + dc + noise * r.Real(-1.0, 1.0));
    }
}

// Values near the int limits and above the filter's overflow limit (~860,000).
void ExtremeSamples(Random& r, uint32_t index, Input& in) {
    static const int kValues[] = {kIntMin, kIntMin + 1, kIntMax, kIntMax - 1, 0, -1, 1, 860000, -860000, 1 << 24};
    static const int kLengths[] = {256, 256, 256, 3, 5, 255, 257, 299, 300};
    const int pick = r.Int(0, 9);
    for (int n = 0; n < 256; ++n) {
        switch (index % 5) {
            case 0: in.samples[n] = kValues[r.Int(0, 9)]; break;
            case 1: in.samples[n] = static_cast<int>(static_cast<uint32_t>(r.Next())); break;
            case 2: in.samples[n] = kValues[pick]; break;
            case 3: in.samples[n] = n % 2 ? kIntMin : kIntMax; break;
            default: in.samples[n] = Clamp(2.1e9 * std::sin(kTwoPi * (pick * 47 + 5) * n / 1000.0)); break;
        }
    }
    // Odd lengths have a window coefficient of exactly 1.0 in the middle: a
    // filtered INT_MAX there converts from 2^31 and saturates.
    in.windowLength = kLengths[r.Int(0, 8)];
    if (in.windowLength == 3 && r.Int(0, 1)) in.samples[1] = kIntMax;
}

// Silence, constants, impulses, steps, ramps and two-sample windows (only the
// first windowed sample survives, so all bins tie).
void FlatSamples(Random& r, uint32_t index, Input& in) {
    const int value = r.Int(0, 3) ? r.Int(-100000, 100000) : static_cast<int>(static_cast<uint32_t>(r.Next()));
    const int at = r.Int(0, 255), slope = r.Int(-5000, 5000);
    for (int n = 0; n < 256; ++n) {
        const int kinds[] = {0, value, n == at ? value : 0, n < at ? 0 : value, slope * n, r.Int(-32768, 32767)};
        in.samples[n] = kinds[index % 6];
    }
    if (index % 6 == 5) {
        in.samples[1] = r.Int(-12, 12);
        in.windowLength = 2;
    }
    if (index % 6 == 0) {  // silence under any window length and rate
        in.windowLength = r.Int(-3, 300);
        in.rate = static_cast<float>(r.Real(-5000.0, 5000.0));
    }
}

void MakeInput(Kind kind, uint32_t index, Input& in) {
    Random r(kind, index);
    switch (kind) {
        case Kind::kRandom16: RandomSamples(r, index, in); break;
        case Kind::kTones: ToneSamples(r, index, in); break;
        case Kind::kExtremes: ExtremeSamples(r, index, in); break;
        case Kind::kFlat: FlatSamples(r, index, in); break;
        case Kind::kParameters: {
            constexpr float kInf = std::numeric_limits<float>::infinity();
            static const float kRates[] = {1000.0f, 500.0f, 2000.0f, 0.0f, -1000.0f, 1.0f, 1e-3f, 44100.0f, 1e30f,
                                           std::numeric_limits<float>::quiet_NaN(), kInf, -kInf};
            index % 2 ? ToneSamples(r, index / 2, in) : RandomSamples(r, index / 2, in);
            in.windowLength = r.Int(-3, 300);
            const int pick = r.Int(0, 15);
            in.rate = pick < 12 ? kRates[pick] : static_cast<float>(r.Real(1.0, 100000.0));
            break;
        }
    }
}

// True when the exact filter sum leaves the 32-bit range for this input.
bool FilterOverflows(const Input& in) {
    int64_t older = in.samples[0], last = in.samples[1];
    for (int i = 2; i < 256; ++i) {
        const int64_t sum =
            20LL * in.samples[i - 2] + 41LL * in.samples[i - 1] + 20LL * in.samples[i] + 1598 * last - 657 * older;
        if (sum != static_cast<int32_t>(sum)) return true;
        older = last;
        last = sum / 1024;
    }
    return false;
}

struct Report {
    std::mutex mutex;
    uint64_t mismatches = 0, overflows = 0;
    std::vector<std::string> examples;
    std::set<int> frequencies;  // of the literal transcription
};

void CheckOne(FlickerKernel kernel, Kind kind, uint32_t index, Report& report) {
    Input in;
    MakeInput(kind, index, in);
    float expected[500];
    int expectedFrequency = -12345;
    const int expectedRc =
        flicker_reference::DetectWithMagnitudes(in.samples, in.windowLength, expectedFrequency, in.rate, expected);
    std::ostringstream problems;
    {
        float magnitudes[500];
        int frequency = -12345;
        const int rc = FlickerDetectWithKernel(kernel, in.samples, in.windowLength, frequency, in.rate, &magnitudes);
        if (rc != expectedRc || frequency != expectedFrequency) {
            problems << FlickerKernelName(kernel) << ": rc " << rc << " frequency " << frequency << "; ";
        } else if (std::memcmp(magnitudes, expected, sizeof(expected)) != 0) {
            int bin = 0;
            while (std::memcmp(&magnitudes[bin], &expected[bin], sizeof(float)) == 0) ++bin;
            problems << FlickerKernelName(kernel) << ": bin " << bin << " magnitude " << magnitudes[bin] << " vs "
                     << expected[bin] << "; ";
        }
    }
    int frequency = -12345;  // the public entry: selected kernel, no magnitudes
    const int rc = DetectFlickerFrequence(in.samples, in.windowLength, frequency, in.rate);
    if (rc != expectedRc || frequency != expectedFrequency) {
        problems << "public: rc " << rc << " frequency " << frequency;
    }

    std::lock_guard<std::mutex> lock(report.mutex);
    report.frequencies.insert(expectedFrequency);
    report.overflows += FilterOverflows(in);
    if (!problems.str().empty()) {
        ++report.mismatches;
        if (report.examples.size() < 5) {
            report.examples.push_back("input " + std::to_string(index) + " (literal: rc " + std::to_string(expectedRc) +
                                      " frequency " + std::to_string(expectedFrequency) + "): " + problems.str());
        }
    }
}

// The number of inputs of a kind: the full count, divided by MMI_FLICKER_IDENTITY_DIVISOR
// when that is set.
uint32_t Inputs(uint32_t full) {
    const char* divisor = std::getenv("MMI_FLICKER_IDENTITY_DIVISOR");
    const long parsed = divisor != nullptr ? std::strtol(divisor, nullptr, 10) : 1;
    return parsed > 1 ? static_cast<uint32_t>(full / static_cast<uint32_t>(parsed)) : full;
}

void RunIdentity(FlickerKernel kernel, Kind kind, uint32_t count, Report& report) {
    std::printf("identity of the %s kernel over %u inputs\n", FlickerKernelName(kernel), count);
    std::atomic<uint32_t> next{0};
    auto worker = [&] {
        for (uint32_t begin; (begin = next.fetch_add(64)) < count;) {
            for (uint32_t i = begin; i < std::min(count, begin + 64); ++i) CheckOne(kernel, kind, i, report);
        }
    };
    std::vector<std::thread> pool(std::max(1u, std::thread::hardware_concurrency()) - 1);
    for (std::thread& t : pool) t = std::thread(worker);
    worker();
    for (std::thread& t : pool) t.join();
    EXPECT_EQ(report.mismatches, 0u);
    for (const std::string& example : report.examples) ADD_FAILURE() << example;
}

class FlickerIdentity : public FlickerKernelTest {};

// 30,000 + 30,000 + 15,000 + 10,000 + 15,000 = 100,000 inputs.
TEST_P(FlickerIdentity, RandomSixteenBitSamples) {
    Report report;
    RunIdentity(GetParam(), Kind::kRandom16, Inputs(30000), report);
    EXPECT_GT(report.frequencies.size(), 40u);  // filtered noise peaks low, but spread
}

TEST_P(FlickerIdentity, TonesWithNoise) {
    Report report;
    RunIdentity(GetParam(), Kind::kTones, Inputs(30000), report);
    EXPECT_GT(report.frequencies.size(), 200u);  // of the 468 reportable values
}

TEST_P(FlickerIdentity, ExtremeSamplesOverflowingTheFilter) {
    Report report;
    const uint32_t count = Inputs(15000);
    RunIdentity(GetParam(), Kind::kExtremes, count, report);
    EXPECT_GT(report.overflows, count / 2);
}

TEST_P(FlickerIdentity, SilenceConstantsImpulsesAndTies) {
    Report report;
    RunIdentity(GetParam(), Kind::kFlat, Inputs(10000), report);
    EXPECT_EQ(report.frequencies.count(0), 1u);   // silence
    EXPECT_EQ(report.frequencies.count(19), 1u);  // ties go to bin 20
}

TEST_P(FlickerIdentity, WindowLengthsAndSampleRates) {
    Report report;
    RunIdentity(GetParam(), Kind::kParameters, Inputs(15000), report);
    EXPECT_EQ(report.frequencies.count(kIntMax), 1u);  // an infinite rate saturates
    EXPECT_LT(*report.frequencies.begin(), 0);         // negative rates
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
