// The detector's functions at their edges, against expected values and the literal transcription.
#include <gtest/gtest.h>
#include <hostcontrol/securec_faults.h>
#include <securec.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include "flicker_detector.h"
#include "flicker_fast.h"
#include "flicker_kernels.h"
#include "flicker_reference.h"

namespace ref = flicker_reference;

namespace {

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();
constexpr int kUntouched = 0x5A5A5A5A;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// The record has the documented layout, field for field.
static_assert(sizeof(AlgoContext) == 17804 && sizeof(AlgoContext) == sizeof(ref::AlgoContext), "record size");
static_assert(offsetof(AlgoContext, fftInput) == offsetof(ref::AlgoContext, fftInput) &&
                      offsetof(AlgoContext, cosTable) == offsetof(ref::AlgoContext, cosTable) &&
                      offsetof(AlgoContext, imagPart) == offsetof(ref::AlgoContext, imagPart),
              "record layout");

struct ClearFaults {
    ~ClearFaults() { hostcontrol::ClearSecurecFaults(); }
};

// The library's record and the literal one, both zeroed.
struct Records {
    AlgoContext lib;
    ref::AlgoContext literal;
    Records() {
        std::memset(&lib, 0, sizeof(lib));
        std::memset(&literal, 0, sizeof(literal));
    }
    template <typename Set>
    void Both(Set set) {
        set(lib);
        set(literal);
    }
    bool Same() const { return std::memcmp(&lib, &literal, sizeof(lib)) == 0; }
};

// A tone centred on a bin of the 1024-point transform, plus a DC level.
void Tone(int (&samples)[256], double bin, double amplitude, double dc = 0.0, bool add = false) {
    for (int n = 0; n < 256; ++n) {
        const int v = static_cast<int>(std::lround(dc + amplitude * std::cos(2.0 * M_PI * bin * n / 1024.0)));
        samples[n] = add ? samples[n] + v : v;
    }
}

// 256 deterministic samples, large enough to overflow the filter when `huge`.
void Noise(int* samples, unsigned seed, bool huge) {
    for (int i = 0; i < 256; ++i) {
        seed = seed * 1664525u + 1013904223u;
        samples[i] = huge ? static_cast<int>(seed) : static_cast<int>(seed >> 16) - 32768;
    }
}

// BandingLpf on a record's arrays: the library's, and the literal one.
int Filter(AlgoContext& c, int count) { return BandingLpf(c.rawData, c.filteredData, count); }
int Filter(ref::AlgoContext& c, int count) { return ref::BandingLpf(c.rawData, c.filteredData, count); }

// Runs a step on both records and compares the results and the whole records. The step is a
// generic lambda: on the literal record its unqualified calls find the literal functions.
template <typename Step>
void ExpectSame(Records& r, const char* what, Step step) {
    SCOPED_TRACE(what);
    const int lib = step(r.lib);
    EXPECT_EQ(lib, step(r.literal));
    EXPECT_TRUE(r.Same());
}

// Every step, one after the other, on records of any window length, transform size, sample
// rate and content (overflowing the filter too).
TEST(FlickerRecord, EveryStepMatchesTheLiteralTranscription) {
    const int lengths[] = {256, 1, 0, -4, 2, 3, 255, 300};
    const int sizes[] = {1024, 1, 4, 7, 37, 500, 1000, 0, -5};
    const float rates[] = {1000.0f, 44100.0f, -1000.0f};
    const int counts[] = {256, 3, 300, 37, 2, 1};
    for (int i = 0; i < 24; ++i) {
        SCOPED_TRACE("record " + std::to_string(i));
        int samples[256];
        Noise(samples, 1000u + i, i % 3 == 0);
        Tone(samples, 30.0 + 37.0 * i, 5000.0, 0.0, true);
        Records r;
        ExpectSame(r, "prepare", [&](auto& c) {
            PrepareFrequenceDetectAlgo(c, samples, lengths[i % 8], rates[i % 3]);
            return 0;
        });
        r.Both([&](auto& c) {
            c.fftSize = sizes[i % 9];
            Noise(c.fftInput, 7u * i, i % 2 == 0);
            Noise(c.filteredData, 11u * i, i % 4 == 0);
        });
        ExpectSame(r, "cosine table", [](auto& c) { return InitFftCoef(c), 0; });
        ExpectSame(r, "window", [](auto& c) { return InitHammingWindowFiltert(c), 0; });
        ExpectSame(r, "window step", [](auto& c) { return ProcessHammingWindowFilter(c), 0; });
        ExpectSame(r, "transform", [](auto& c) { return AnalyseDataWithFft(c); });
        ExpectSame(r, "detection on a copy", [](auto& c) { return CaclueFrequency(c); });
        ExpectSame(r, "filter", [&](auto& c) { return Filter(c, counts[i % 6]); });
    }
}

// Inputs {a, b, c} and the one output of count 3 (the history is copied whatever the count,
// checked against the literal transcription by the test above): sums divide toward zero (with
// b = 0 the sum is 20c - 637a) and wrap like 32-bit arithmetic. A refused count or clearing
// leaves the output untouched.
TEST(BandingLpf, RoundingWrappingAndRefusals) {
    const int cases[][4] = {{19, 0, 554, 0},   {12, 0, 331, -1}, {5, 0, 108, -1},  // sums -1023, -1024, -1025
                            {4, 0, 25, -2},    {1, 0, 83, 0},    {8, 0, 306, 1},   // -2048, 1023, 1024
                            {kIntMax, kIntMax, kIntMax, 0},  // 1022 * INT_MAX is -1022 modulo 2^32
                            {0, 0, 1 << 27, (kIntMin + (1 << 29)) / 1024}};  // 20 * 2^27 = 2^31 + 2^29
    for (const auto& c : cases) {
        int input[300] = {c[0], c[1], c[2]}, out[300] = {}, literal[300] = {};
        EXPECT_EQ(BandingLpf(input, out, 3), 0);
        ref::BandingLpf(input, literal, 3);
        EXPECT_EQ(std::make_pair(out[2], literal[2]), std::make_pair(c[3], c[3])) << c[0] << ", " << c[1] << ", "
                                                                                  << c[2];
    }
    ClearFaults guard;
    for (int count : {0, -1, 301, 256}) {
        if (count == 256) hostcontrol::FailNextMemset(SECUREC_EINVAL);
        int in[300] = {-77, 123456}, out[300];
        std::fill(std::begin(out), std::end(out), kUntouched);
        EXPECT_EQ(BandingLpf(in, out, count), -1) << "count " << count;
        EXPECT_EQ(std::make_pair(out[0], out[1]), std::make_pair(kUntouched, kUntouched));
    }
}

TEST(FlickerRecord, ClearingTheWindowAndTheWindowStep) {
    ClearFaults guard;
    AlgoContext record;
    std::memset(&record, 0xAB, sizeof(record));
    hostcontrol::FailNextMemset(SECUREC_ERANGE);
    EXPECT_FALSE(InitFrequencyDetectAlgo(record));
    EXPECT_EQ(record.fftSize, static_cast<int>(0xABABABAB));
    EXPECT_TRUE(InitFrequencyDetectAlgo(record));
    EXPECT_TRUE(std::all_of(reinterpret_cast<unsigned char*>(&record), reinterpret_cast<unsigned char*>(&record + 1),
                            [](unsigned char b) { return b == 0; }));

    // Symmetric, 0.08 at both ends; the window of one sample is 0/0.
    int samples[256] = {};
    PrepareFrequenceDetectAlgo(record, samples, 256, 1000.0f);
    EXPECT_NEAR(record.hammingCoef[0], 0.08f, 1e-6f);
    EXPECT_NEAR(record.hammingCoef[255], 0.08f, 1e-6f);
    EXPECT_GT(record.hammingCoef[127], 0.9999f);
    PrepareFrequenceDetectAlgo(record, samples, 1, 1000.0f);
    EXPECT_TRUE(std::isnan(record.hammingCoef[0]));

    // The window step truncates, saturates and gives 0 for NaN.
    const float coef[] = {kNaN, 1.0f, 1.0f, 2.0f, -0.5f, 0.08f, 0.999f};
    const int data[] = {123, kIntMax, kIntMin, kIntMin, 7, -99, 1000, 555};
    const int expected[] = {0, kIntMax, kIntMin, kIntMin, -3, -7, 999, 555};  // index 7 is outside the window
    Records r;
    r.Both([&](auto& c) {
        std::memcpy(c.hammingCoef, coef, sizeof(coef));
        std::memcpy(c.filteredData, data, sizeof(data));
        c.windowLength = 7;
    });
    ExpectSame(r, "window step", [](auto& c) { return ProcessHammingWindowFilter(c), 0; });
    for (int i = 0; i < 8; ++i) EXPECT_EQ(r.lib.filteredData[i], expected[i]) << "index " << i;
}

// With x[1] = 1 as the only input, bin k has cosTable[k] as its real part and
// -cosTable[(768 + k) mod 1024] as its imaginary part: the table sets the magnitudes.
TEST(AnalyseDataWithFft, PeakSearchRules) {
    const struct {
        std::vector<std::pair<int, float>> table;  // cosine table entries set
        int frequency;
        std::vector<std::pair<int, float>> magnitudes;  // bins whose magnitude is checked
        int size = 1024;
        float rate = 1000.0f;
    } cases[] = {
            {{}, 0, {{100, 0.0f}, {300, 0.0f}}},  // nothing above zero
            // Bins 150 (cosine), 406 (sine of entry 150) and 300 tie: the lowest wins, 146.48 Hz.
            {{{150, 3.0f}, {300, 3.0f}}, 146, {{406, 3.0f}}},
            {{{150, 3.0f}, {300, 3.0f}, {400, 3.0001f}}, 390, {}},  // only larger wins
            // Bin 5 (sine of entry 773) and bin 499 are computed but never candidates.
            {{{773, 100.0f}, {499, 100.0f}}, 0, {{5, 100.0f}, {499, 100.0f}}},
            {{{773, 100.0f}, {499, 100.0f}, {200, 1.0f}}, 195, {}},
            // 12 points at rate 100: entry 3 peaks bins 3, 15, 27 (cosine) and 30 (sine).
            // 27 * (100 / 12) is 224.99998 in float; 27 * 100 / 12 would be 225.
            {{{3, 5.0f}}, 224, {{27, 5.0f}}, 12, 100.0f},
    };
    for (const auto& c : cases) {
        AlgoContext record{};
        record.fftSize = c.size;
        record.sampleRate = c.rate;
        record.fftInput[1] = 1;
        for (const auto& [entry, value] : c.table) record.cosTable[entry] = value;
        EXPECT_EQ(AnalyseDataWithFft(record), c.frequency);
        for (const auto& [bin, value] : c.magnitudes) EXPECT_EQ(record.magnitude[bin], value) << "bin " << bin;
    }
    AlgoContext record{};
    record.fftInput[0] = 5;
    EXPECT_EQ(AnalyseDataWithFft(record), 0);  // fftSize 0: no terms, 0 * (rate / 0) is NaN -> 0
    record.fftSize = 1025;                     // beyond the record's tables: refused, record untouched
    const AlgoContext before = record;
    EXPECT_EQ(AnalyseDataWithFft(record), 0);
    EXPECT_EQ(std::memcmp(&before, &record, sizeof(record)), 0);
}

TEST(CaclueFrequency, GoesOnWithTheOldOutputWhenTheFilterCannotClear) {
    ClearFaults guard;
    int tone[256], other[256] = {};
    Tone(tone, 300.0, 20000.0);
    Tone(other, 60.0, 20000.0);
    Records r;
    r.Both([&](auto& c) { PrepareFrequenceDetectAlgo(c, tone, 256, 1000.0f); });
    int raw[300] = {};
    std::memcpy(raw, other, sizeof(other));
    BandingLpf(raw, r.lib.filteredData, 256);  // leftover output of another signal
    std::memcpy(r.literal.filteredData, r.lib.filteredData, sizeof(r.lib.filteredData));
    const int normal = CaclueFrequency(r.lib);
    EXPECT_EQ(normal, ref::CaclueFrequency(r.literal));
    EXPECT_GT(normal, 280);  // near bin 300; the filter's slope pulls the peak down a little
    hostcontrol::FailNextMemset(SECUREC_EINVAL);
    EXPECT_EQ(CaclueFrequency(r.lib), 58);  // bin 60, from the leftover output
    hostcontrol::FailNextMemset(SECUREC_EINVAL);
    EXPECT_EQ(ref::CaclueFrequency(r.literal), 58);
}

// The documented results, on the literal transcription and on the public entry. (Every kernel
// gives the literal transcription's bits: see the identity test.)
TEST(FlickerDetection, DocumentedResults) {
    int silence[256] = {}, bin100[256], bins10And60[256], tie[256] = {10000, 1}, bin150[256];
    Tone(bin100, 100.0, 20000.0, 30000.0);
    Tone(bins10And60, 10.0, 30000.0);  // the stronger bin 10 is below the searched bins
    Tone(bins10And60, 60.0, 10000.0, 0.0, true);
    Tone(bin150, 150.0, 20000.0, 25000.0);
    const struct {
        int (*samples)[256];
        int length;
        float rate;
        int frequency;
    } cases[] = {
            {&silence, 256, 1000.0f, 0}, {&bin100, 256, 1000.0f, 97},  // bin 100: 97.66 Hz truncated
            {&bin100, 256, 2048.0f, 200}, {&bin100, 256, -1000.0f, -97}, {&bin100, 256, 0.0f, 0},
            {&bin100, 256, kNaN, 0}, {&bin100, 300, 1000.0f, 97}, {&bins10And60, 256, 1000.0f, 58},
            // Window of 2: only the first windowed sample is not 0, all bins tie, bin 20 wins.
            {&tie, 2, 1000.0f, 19},
            // No terms, or one windowed by 0/0.
            {&bin150, 0, 1000.0f, 0}, {&bin150, -1, 1000.0f, 0}, {&bin150, -300, 1000.0f, 0}, {&bin150, 1, 1000.0f, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        int literal = -777, got = -777;
        EXPECT_EQ(ref::DetectFlickerFrequence(*c.samples, c.length, literal, c.rate), 0);
        EXPECT_EQ(::DetectFlickerFrequence(*c.samples, c.length, got, c.rate), 0);
        EXPECT_EQ(std::make_pair(literal, got), std::make_pair(c.frequency, c.frequency));
    }
}

// The public entry and the kernels refuse a window beyond the record, and a detection whose
// record cannot be cleared: -1, with nothing written.
class DetectFlickerFrequence : public FlickerKernelTest {};

TEST_P(DetectFlickerFrequence, RefusesWithoutWriting) {
    ClearFaults guard;
    int samples[256];
    Tone(samples, 100.0, 20000.0);
    const struct {
        int length;
        errno_t clearing;  // of every memset_s
    } cases[] = {{301, EOK}, {100000, EOK}, {256, SECUREC_EINVAL}, {256, SECUREC_ERANGE_AND_RESET}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.length);
        if (c.clearing != EOK) hostcontrol::FailNextMemset(c.clearing, 100);
        int literal = -777, got = -777, entry = -777;
        const int literalRc = c.length <= 300 ? ref::DetectFlickerFrequence(samples, c.length, literal, 1000.0f) : -1;
        const int entryRc = ::DetectFlickerFrequence(samples, c.length, entry, 1000.0f);
        float magnitudes[500];
        std::fill(std::begin(magnitudes), std::end(magnitudes), 5.0f);
        const int rc = FlickerDetectWithKernel(GetParam(), samples, c.length, got, 1000.0f, &magnitudes);
        EXPECT_EQ(std::make_tuple(literalRc, entryRc, rc, literal, entry, got, magnitudes[3]),
                  std::make_tuple(-1, -1, -1, -777, -777, -777, 5.0f));
        hostcontrol::ClearSecurecFaults();
    }
    int frequency = -777;
    hostcontrol::FailNextMemset(SECUREC_EINVAL);  // used up by one detection
    EXPECT_EQ(::DetectFlickerFrequence(samples, 256, frequency, 1000.0f), -1);
    EXPECT_EQ(::DetectFlickerFrequence(samples, 256, frequency, 1000.0f), 0);
    EXPECT_EQ(frequency, 97);
}

INSTANTIATE_TEST_SUITE_P(Kernel, DetectFlickerFrequence, testing::ValuesIn(BuiltInFlickerKernels()),
                         FlickerKernelParamName);

}  // namespace
