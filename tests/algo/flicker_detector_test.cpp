// The detector's functions at their edges, against expected values and
// against the literal transcription.
#include <gtest/gtest.h>
#include <hostcontrol/securec_faults.h>
#include <securec.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
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

// The library's record and the literal one, both zeroed, compared bytewise.
struct Records {
    AlgoContext lib;
    ref::AlgoContext literal;
    Records() {
        std::memset(&lib, 0, sizeof(lib));
        std::memset(&literal, 0, sizeof(literal));
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

TEST(BandingLpf, HistoryCountsAndRounding) {
    int in[300] = {-77, 123456, 999, 4000};
    for (int count : {1, 2, 3}) {
        int out[300];
        std::fill(std::begin(out), std::end(out), kUntouched);
        EXPECT_EQ(BandingLpf(in, out, count), 0);
        EXPECT_EQ(out[0], -77);  // the history is copied even for count 1
        EXPECT_EQ(out[1], 123456);
        const int first = (20 * -77 + 41 * 123456 + 20 * 999 + 1598 * 123456 - 657 * -77) / 1024;
        EXPECT_EQ(out[2], count == 3 ? first : kUntouched);
        EXPECT_EQ(out[3], kUntouched);
    }
    // With in[1] = 0 the first sum is -637 * in[0] + 20 * in[2]; it divides toward zero.
    const int sums[][2] = {{-1023, 0}, {-1024, -1}, {-1025, -1}, {-2048, -2}, {1023, 0}, {1024, 1}};
    for (const auto& c : sums) {
        int a = 0;
        while ((c[0] + 637 * a) % 20 != 0) ++a;
        int history[300] = {a, 0, (c[0] + 637 * a) / 20};
        int out[300] = {}, literal[300] = {};
        EXPECT_EQ(BandingLpf(history, out, 3), 0);
        ref::BandingLpf(history, literal, 3);
        EXPECT_EQ(out[2], c[1]) << "sum " << c[0];
        EXPECT_EQ(literal[2], c[1]) << "sum " << c[0];
    }
    // The sum wraps like 32-bit arithmetic: 1022 * INT_MAX is -1022 modulo 2^32.
    int big[300] = {kIntMax, kIntMax, kIntMax};
    int out[300] = {};
    BandingLpf(big, out, 3);
    EXPECT_EQ(out[2], 0);
    int wrap[300] = {0, 0, 1 << 27};  // 20 * 2^27 = 2^31 + 2^29
    BandingLpf(wrap, out, 3);
    EXPECT_EQ(out[2], (kIntMin + (1 << 29)) / 1024);
}

TEST(BandingLpf, MatchesTheLiteralAndRejectsFailedClearing) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        int in[300] = {};
        Noise(in, seed, seed % 2 == 1);
        const int count = 3 + static_cast<int>(seed * 37 % 298);
        int out[300] = {}, literal[300] = {};
        ASSERT_EQ(BandingLpf(in, out, count), ref::BandingLpf(in, literal, count));
        ASSERT_EQ(std::memcmp(out, literal, sizeof(out)), 0) << "seed " << seed << " count " << count;
    }
    ClearFaults guard;
    int in[300] = {5, 6};
    for (int count : {0, -1, 301, 256}) {
        if (count == 256) hostcontrol::FailNextMemset(SECUREC_EINVAL);
        int out[300];
        std::fill(std::begin(out), std::end(out), kUntouched);
        EXPECT_EQ(BandingLpf(in, out, count), -1) << "count " << count;
        EXPECT_EQ(out[0], kUntouched);
        EXPECT_EQ(out[1], kUntouched);
    }
}

TEST(FlickerRecord, ClearingPreparationAndTablesMatchTheLiteral) {
    ClearFaults guard;
    AlgoContext record;
    std::memset(&record, 0xAB, sizeof(record));
    hostcontrol::FailNextMemset(SECUREC_ERANGE);
    EXPECT_FALSE(InitFrequencyDetectAlgo(record));
    EXPECT_EQ(record.fftSize, static_cast<int>(0xABABABAB));
    EXPECT_TRUE(InitFrequencyDetectAlgo(record));
    EXPECT_TRUE(std::all_of(reinterpret_cast<unsigned char*>(&record), reinterpret_cast<unsigned char*>(&record + 1),
                            [](unsigned char b) { return b == 0; }));

    int samples[256];
    Tone(samples, 77.5, 9000.0, 20000.0);
    for (int length : {256, 1, 0, -4, 2, 3, 255, 300}) {
        Records r;
        PrepareFrequenceDetectAlgo(r.lib, samples, length, 1000.0f);
        ref::PrepareFrequenceDetectAlgo(r.literal, samples, length, 1000.0f);
        EXPECT_TRUE(r.Same()) << "window length " << length;
        EXPECT_EQ(length == 1, std::isnan(r.lib.hammingCoef[0])) << "0/0 only for length 1";
        // The stand-alone steps give the same tables and leave other entries alone.
        AlgoContext alone{};
        alone.fftSize = 1024;
        alone.windowLength = length;
        alone.hammingCoef[std::max(length, 0) % 300] = 7.0f;
        InitFftCoef(alone);
        InitHammingWindowFiltert(alone);
        EXPECT_EQ(std::memcmp(alone.cosTable, r.lib.cosTable, sizeof(alone.cosTable)), 0);
        EXPECT_EQ(std::memcmp(alone.hammingCoef, r.lib.hammingCoef, sizeof(float) * std::max(length, 0)), 0);
        if (length < 300) {
            EXPECT_EQ(alone.hammingCoef[std::max(length, 0)], 7.0f) << "window length " << length;
        }
    }
    for (int size : {1, 7, 1000, 0, -5}) {
        Records r;
        r.lib.cosTable[std::max(size, 0)] = r.literal.cosTable[std::max(size, 0)] = 7.0f;
        r.lib.fftSize = r.literal.fftSize = size;
        InitFftCoef(r.lib);
        ref::InitFftCoef(r.literal);
        EXPECT_TRUE(r.Same()) << "fftSize " << size;
        EXPECT_EQ(r.lib.cosTable[std::max(size, 0)], 7.0f) << "fftSize " << size;
    }
    AlgoContext window{};
    window.windowLength = 256;
    InitHammingWindowFiltert(window);
    EXPECT_NEAR(window.hammingCoef[0], 0.08f, 1e-6f);
    EXPECT_NEAR(window.hammingCoef[255], 0.08f, 1e-6f);
    EXPECT_GT(window.hammingCoef[127], 0.9999f);
}

TEST(FlickerRecord, WindowStepTruncatesSaturatesAndZeroesNaN) {
    Records r;
    const float coef[] = {kNaN, 1.0f, 1.0f, 2.0f, -0.5f, 0.08f, 0.999f};
    const int data[] = {123, kIntMax, kIntMin, kIntMin, 7, -99, 1000, 555};
    const int expected[] = {0, kIntMax, kIntMin, kIntMin, -3, -7, 999, 555};  // index 7 is outside the window
    std::memcpy(r.lib.hammingCoef, coef, sizeof(coef));
    std::memcpy(r.literal.hammingCoef, coef, sizeof(coef));
    std::memcpy(r.lib.filteredData, data, sizeof(data));
    std::memcpy(r.literal.filteredData, data, sizeof(data));
    r.lib.windowLength = r.literal.windowLength = 7;
    ProcessHammingWindowFilter(r.lib);
    ref::ProcessHammingWindowFilter(r.literal);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(r.lib.filteredData[i], expected[i]) << "index " << i;
    EXPECT_TRUE(r.Same());
}

// With x[1] = 1 as the only input, bin k has cosTable[k] as its real part and
// -cosTable[(768 + k) mod 1024] as its imaginary part: the table sets the magnitudes.
int PeakOfTable(std::vector<std::pair<int, float>> entries, AlgoContext* out = nullptr, int size = 1024,
                float rate = 1000.0f) {
    AlgoContext record{};
    record.fftSize = size;
    record.sampleRate = rate;
    record.fftInput[1] = 1;
    for (const auto& e : entries) record.cosTable[e.first] = e.second;
    const int frequency = AnalyseDataWithFft(record);
    if (out != nullptr) *out = record;
    return frequency;
}

TEST(AnalyseDataWithFft, PeakSearchRules) {
    AlgoContext record;
    EXPECT_EQ(PeakOfTable({}, &record), 0);  // nothing above zero
    EXPECT_TRUE(std::all_of(std::begin(record.magnitude), std::end(record.magnitude), [](float m) { return m == 0; }));
    // Bins 150 (cosine), 406 (sine of entry 150) and 300 tie: the lowest wins, 146.48 Hz.
    EXPECT_EQ(PeakOfTable({{150, 3.0f}, {300, 3.0f}}, &record), 146);
    EXPECT_EQ(record.magnitude[406], 3.0f);
    EXPECT_EQ(PeakOfTable({{150, 3.0f}, {300, 3.0f}, {400, 3.0001f}}), 390);  // only larger wins
    // Bin 5 (sine of entry 773) and bin 499 are computed but never candidates.
    EXPECT_EQ(PeakOfTable({{773, 100.0f}, {499, 100.0f}}, &record), 0);
    EXPECT_EQ(record.magnitude[5], 100.0f);
    EXPECT_EQ(record.magnitude[499], 100.0f);
    EXPECT_EQ(PeakOfTable({{773, 100.0f}, {499, 100.0f}, {200, 1.0f}}), 195);
    // 12 points at rate 100: entry 3 peaks bins 3, 15, 27 (cosine) and 30
    // (sine). 27 * (100 / 12) is 224.99998 in float; 27 * 100 / 12 would be 225.
    EXPECT_EQ(PeakOfTable({{3, 5.0f}}, &record, 12, 100.0f), 224);
    EXPECT_EQ(record.magnitude[27], 5.0f);
}

TEST(AnalyseDataWithFft, WholeRecordMatchesTheLiteralForAnySize) {
    for (int size : {1, 4, 37, 500, 1000, 1024}) {
        int samples[256];
        Noise(samples, static_cast<unsigned>(size), size % 2 == 0);
        Records r;
        for (int i = 0; i < 1024; ++i) r.lib.fftInput[i] = r.literal.fftInput[i] = samples[i % 256] / (1 + i % 7);
        r.lib.fftSize = r.literal.fftSize = size;
        r.lib.sampleRate = r.literal.sampleRate = 44100.0f;
        InitFftCoef(r.lib);
        ref::InitFftCoef(r.literal);
        EXPECT_EQ(AnalyseDataWithFft(r.lib), ref::AnalyseDataWithFft(r.literal)) << "size " << size;
        EXPECT_TRUE(r.Same()) << "size " << size;
    }
    AlgoContext record{};
    record.fftInput[0] = 5;
    EXPECT_EQ(AnalyseDataWithFft(record), 0);  // fftSize 0: no terms, 0 * (rate / 0) is NaN -> 0
    record.fftSize = 1025;                     // beyond the record's tables: refused, record untouched
    const AlgoContext before = record;
    EXPECT_EQ(AnalyseDataWithFft(record), 0);
    EXPECT_EQ(std::memcmp(&before, &record, sizeof(record)), 0);
}

TEST(CaclueFrequency, MatchesTheLiteralAndLeavesTheCallersRecordAlone) {
    for (int i = 0; i < 12; ++i) {
        int samples[256];
        Noise(samples, 1000u + i, i % 3 == 0);
        Tone(samples, 30.0 + 37.0 * i, 5000.0, 0.0, true);
        const int length = i % 4 ? 256 : 3 + 29 * i;
        Records r;
        PrepareFrequenceDetectAlgo(r.lib, samples, length, 1000.0f);
        ref::PrepareFrequenceDetectAlgo(r.literal, samples, length, 1000.0f);
        const AlgoContext before = r.lib;
        const int frequency = CaclueFrequency(r.lib);
        EXPECT_EQ(frequency, ref::CaclueFrequency(r.literal)) << "input " << i;
        EXPECT_EQ(std::memcmp(&before, &r.lib, sizeof(before)), 0) << "input " << i;
        int fast = -1;
        ASSERT_EQ(DetectFlickerFrequence(samples, length, fast, 1000.0f), 0);
        EXPECT_EQ(fast, frequency) << "input " << i;
    }
}

TEST(CaclueFrequency, GoesOnWithTheOldOutputWhenTheFilterCannotClear) {
    ClearFaults guard;
    int tone[256], other[256] = {};
    Tone(tone, 300.0, 20000.0);
    Tone(other, 60.0, 20000.0);
    Records r;
    PrepareFrequenceDetectAlgo(r.lib, tone, 256, 1000.0f);
    ref::PrepareFrequenceDetectAlgo(r.literal, tone, 256, 1000.0f);
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

// The literal transcription, the public entry and the kernel must all give
// `rc` and, on success, `frequency`; on failure the frequency stays untouched.
void ExpectDetection(FlickerKernel kernel, int (&samples)[256], int length, float rate, int rc, int frequency,
                     const char* what) {
    int literal = -777;
    if (length <= 300) {
        EXPECT_EQ(ref::DetectFlickerFrequence(samples, length, literal, rate), rc) << what;
        EXPECT_EQ(literal, rc == 0 ? frequency : -777) << what << ": literal";
    }
    int got = -777;
    EXPECT_EQ(DetectFlickerFrequence(samples, length, got, rate), rc) << what;
    EXPECT_EQ(got, rc == 0 ? frequency : -777) << what;
    float magnitudes[500];
    std::fill(std::begin(magnitudes), std::end(magnitudes), 5.0f);
    got = -777;
    EXPECT_EQ(FlickerDetectWithKernel(kernel, samples, length, got, rate, &magnitudes), rc) << what;
    EXPECT_EQ(got, rc == 0 ? frequency : -777) << what << ": " << FlickerKernelName(kernel);
    if (rc != 0) {
        EXPECT_EQ(magnitudes[3], 5.0f) << what << ": " << FlickerKernelName(kernel);
    }
}

std::vector<float> Magnitudes(FlickerKernel kernel, int (&samples)[256], int length) {
    float magnitudes[500];
    int frequency = 0;
    EXPECT_EQ(FlickerDetectWithKernel(kernel, samples, length, frequency, 1000.0f, &magnitudes), 0);
    return std::vector<float>(std::begin(magnitudes), std::end(magnitudes));
}

bool AllZero(const std::vector<float>& m) {
    return std::all_of(m.begin(), m.end(), [](float v) { return v == 0.0f; });
}

// The public entry and the record functions above do not depend on the
// kernel; these tests check them with each kernel's detection beside them.
class DetectFlickerFrequence : public FlickerKernelTest {};

TEST_P(DetectFlickerFrequence, PeaksTiesAndIgnoredBins) {
    const FlickerKernel kernel = GetParam();
    int samples[256] = {};
    ExpectDetection(kernel, samples, 256, 1000.0f, 0, 0, "silence");
    EXPECT_TRUE(AllZero(Magnitudes(kernel, samples, 256)));

    Tone(samples, 100.0, 20000.0, 30000.0);
    ExpectDetection(kernel, samples, 256, 1000.0f, 0, 97, "bin 100: 97.66 Hz truncated");
    std::vector<float> m = Magnitudes(kernel, samples, 256);
    EXPECT_EQ(std::max_element(m.begin() + 20, m.begin() + 499) - m.begin(), 100);
    ExpectDetection(kernel, samples, 256, 2048.0f, 0, 200, "2048 Hz");
    ExpectDetection(kernel, samples, 256, -1000.0f, 0, -97, "negative rate");
    ExpectDetection(kernel, samples, 256, 0.0f, 0, 0, "zero rate");
    ExpectDetection(kernel, samples, 256, kNaN, 0, 0, "NaN rate");
    ExpectDetection(kernel, samples, 300, 1000.0f, 0, 97, "longest window");

    Tone(samples, 10.0, 30000.0);
    Tone(samples, 60.0, 10000.0, 0.0, true);
    ExpectDetection(kernel, samples, 256, 1000.0f, 0, 58, "stronger bin 10 ignored, bin 60 found");
    m = Magnitudes(kernel, samples, 256);
    EXPECT_GT(m[10], 2.0f * m[60]);

    // Window length 2: only the first windowed sample survives (0.08 * 1
    // truncates to 0), so every bin has the same magnitude and bin 20 wins.
    std::fill(std::begin(samples), std::end(samples), 0);
    samples[0] = 10000;
    samples[1] = 1;
    ExpectDetection(kernel, samples, 2, 1000.0f, 0, 19, "tie");
    m = Magnitudes(kernel, samples, 2);
    EXPECT_GT(m[0], 0.0f);
    EXPECT_TRUE(std::all_of(m.begin(), m.end(), [&](float v) { return v == m[0]; }));
}

TEST_P(DetectFlickerFrequence, WindowLengthEdges) {
    const FlickerKernel kernel = GetParam();
    int samples[256];
    Tone(samples, 150.0, 20000.0, 25000.0);
    for (int length : {0, -1, -300, 1}) {  // no terms, or one windowed by 0/0
        ExpectDetection(kernel, samples, length, 1000.0f, 0, 0, "short window");
        EXPECT_TRUE(AllZero(Magnitudes(kernel, samples, length))) << "length " << length;
    }
    ExpectDetection(kernel, samples, 301, 1000.0f, -1, 0, "window beyond the record");
    ExpectDetection(kernel, samples, 100000, 1000.0f, -1, 0, "window far beyond the record");

    // Length 3 has the coefficient 1.0 at index 1, and 1.0 * (float)INT_MAX is
    // 2^31, which converts to INT_MAX.
    int edge[256] = {0, kIntMax};
    AlgoContext record{};
    PrepareFrequenceDetectAlgo(record, edge, 3, 1000.0f);
    ASSERT_EQ(record.hammingCoef[1], 1.0f);
    BandingLpf(record.rawData, record.filteredData, 256);
    ProcessHammingWindowFilter(record);
    EXPECT_EQ(record.filteredData[1], kIntMax);
    int literal = 0;
    ref::DetectFlickerFrequence(edge, 3, literal, 1000.0f);
    ExpectDetection(kernel, edge, 3, 1000.0f, 0, literal, "saturated sample");
}

TEST_P(DetectFlickerFrequence, FailedClearingReturnsMinusOne) {
    const FlickerKernel kernel = GetParam();
    ClearFaults guard;
    int samples[256];
    Tone(samples, 100.0, 20000.0);
    int frequency = -777;
    for (errno_t code : {SECUREC_EINVAL, SECUREC_ERANGE_AND_RESET}) {
        hostcontrol::FailNextMemset(code, 100);  // every clearing fails
        ExpectDetection(kernel, samples, 256, 1000.0f, -1, 0, "clearing fails");
        hostcontrol::ClearSecurecFaults();
    }
    hostcontrol::FailNextMemset(SECUREC_EINVAL);  // used up by one detection
    EXPECT_EQ(::DetectFlickerFrequence(samples, 256, frequency, 1000.0f), -1);
    EXPECT_EQ(::DetectFlickerFrequence(samples, 256, frequency, 1000.0f), 0);
    EXPECT_EQ(frequency, 97);
}

INSTANTIATE_TEST_SUITE_P(Kernel, DetectFlickerFrequence, testing::ValuesIn(BuiltInFlickerKernels()),
                         FlickerKernelParamName);

}  // namespace
