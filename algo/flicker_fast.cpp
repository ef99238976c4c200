// Fast path of DetectFlickerFrequence.
//
// It produces the same bits as the record-based steps (BandingLpf, the window
// step and AnalyseDataWithFft on a freshly prepared record) while doing far
// less work:
//  - the cosine table, the 256-point window and the transform factors are
//    computed once per process (cosf gives the same values every time);
//  - transform inputs from index 256 on are always zero (only 256 samples are
//    filtered, the rest of the record stays cleared), and adding a zero
//    product can at most flip the sign of a zero sum, which the squared
//    magnitude ignores, so those terms are skipped;
//  - the table index (n*k) mod 1024 is folded into precomputed factors laid
//    out so that several bins are summed side by side, each in the order
//    n = 0, 1, 2, ... with separately rounded products (flicker_transform.h).
#include "flicker_fast.h"

#include <securec.h>

#if defined(MMI_FLICKER_NEON)
#include <asm/hwcap.h>
#include <sys/auxv.h>
#endif

#include "flicker_arith.h"
#include "flicker_detector.h"
#include "flicker_transform.h"

namespace flicker {
namespace {

// Cosine table of the 1024-point transform; cosf gives the same values on
// every call, so once per process is enough.
struct CosineTable {
    float values[kTransformSize];
};

const CosineTable& Cosines() {
    static const CosineTable table = [] {
        CosineTable t;
        for (int i = 0; i < kTransformSize; ++i) {
            t.values[i] = CosineEntry(i, kTransformSize);
        }
        return t;
    }();
    return table;
}

// Factor of bin b at step n: the real part (sine == false) or the imaginary
// part, whose factor sits three quarters of the table further on.
float Factor(int n, int bin, bool sine) {
    const int shift = sine ? (3 * kTransformSize) / 4 : 0;
    return Cosines().values[(shift + n * bin) & (kTransformSize - 1)];
}

struct GroupFactors {
    alignas(64) float values[kTableSize];
};
struct QuadFactors {
    alignas(64) float values[kQuadTableSize];
};

const GroupFactors& TableFactors() {
    static GroupFactors storage;
    static const bool built = [] {
        float* out = storage.values;
        for (int block = 0; block < kBlocks; ++block) {
            for (int n = 0; n < kMaxTerms; ++n) {
                for (int j = 0; j < kGroupsPerBlock; ++j) {
                    const int first = TableGroupFirstBin(block * kGroupsPerBlock + j);
                    for (int c = 0; c < kGroupStep; ++c) {
                        *out++ = Factor(n, first + c % kLanes, c >= kLanes);
                    }
                }
            }
        }
        return true;
    }();
    (void)built;
    return storage;
}

const QuadFactors& QuadTableFactors() {
    static QuadFactors storage;
    static const bool built = [] {
        float* out = storage.values;
        for (int block = 0; block < kBlocks; ++block) {
            for (int n = 0; n < kMaxTerms; ++n) {
                for (int q = 0; q < kQuadsPerBlock; ++q) {
                    const int first = QuadFirstBin(block * kQuadsPerBlock + q);
                    for (int c = 0; c < kQuadStep; ++c) {
                        *out++ = Factor(n, first + kChunkBins * (c % kQuadBins), c >= kQuadBins);
                    }
                }
            }
        }
        return true;
    }();
    (void)built;
    return storage;
}

#if defined(MMI_FLICKER_AVX2)
// Factors of the permuting kernels.
struct ColumnFactors {
    alignas(64) float doubled[kDoubledColumnsSize];
    unsigned short starts[kColumnStartsSize];
};

const ColumnFactors& Columns() {
    static ColumnFactors storage;
    static const bool built = [] {
        for (int c = 0; c < kChunkBins; ++c) {
            for (int i = 0; i < kDoubledColumn; ++i) {
                storage.doubled[c * kDoubledColumn + i] = Cosines().values[c + kChunkBins * (i % kColumnEntries)];
            }
        }
        unsigned short* out = storage.starts;
        for (int block = 0; block < kBlocks; ++block) {
            for (int n = 0; n < kMaxTerms; ++n) {
                for (int q = 0; q < kQuadsPerBlock; ++q) {
                    const int m = n * QuadFirstBin(block * kQuadsPerBlock + q);
                    const int column = m % kChunkBins;
                    const int rotation = (m / kChunkBins) % kColumnEntries;
                    *out++ = static_cast<unsigned short>(column * kDoubledColumn + rotation);
                }
            }
        }
        return true;
    }();
    (void)built;
    return storage;
}
#endif

// The 256-point window, the only length the system uses.
struct Window256 {
    float values[kSampleCount];
};

const Window256& StandardWindow() {
    static const Window256 window = [] {
        Window256 w;
        for (int i = 0; i < kSampleCount; ++i) {
            w.values[i] = HammingEntry(i, kSampleCount);
        }
        return w;
    }();
    return window;
}

bool ProcessorHasAvx2() {
#if defined(MMI_FLICKER_AVX2)
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2");
#else
    return false;
#endif
}

// Advanced SIMD is part of every 64-bit ARM processor Linux runs on; the
// kernel still asks the system, as it does for AVX2.
bool ProcessorHasNeon() {
#if defined(MMI_FLICKER_NEON)
    return (getauxval(AT_HWCAP) & HWCAP_ASIMD) != 0;
#else
    return false;
#endif
}

// x[i] = (float)(int)(window[i] * (float)filtered[i]) for i < terms.
void ApplyWindow(FlickerKernel kernel, const int* filtered, const float* window, int terms, float* x) {
#if defined(MMI_FLICKER_AVX2)
    if (kernel == FlickerKernel::kAvx2) {
        WindowAvx2(filtered, window, terms, x);
        return;
    }
#endif
#if defined(MMI_FLICKER_NEON)
    if (kernel == FlickerKernel::kNeon) {
        WindowNeon(filtered, window, terms, x);
        return;
    }
#endif
    (void)kernel;
    for (int i = 0; i < terms; ++i) {
        x[i] = static_cast<float>(TruncateToInt(window[i] * static_cast<float>(filtered[i])));
    }
}

// Runs the kernel's transform; false when the kernel is not built in.
bool Transform(FlickerKernel kernel, const float* x, int terms, float* magnitudes) {
    switch (kernel) {
        case FlickerKernel::kPortable: {
            static const TransformTables tables{TableFactors().values, QuadTableFactors().values, nullptr, nullptr};
            TransformPortable(tables, x, terms, magnitudes);
            return true;
        }
        case FlickerKernel::kAvx2: {
#if defined(MMI_FLICKER_AVX2)
            static const TransformTables tables{TableFactors().values, nullptr, Columns().doubled, Columns().starts};
            TransformAvx2(tables, x, terms, magnitudes);
            return true;
#else
            break;
#endif
        }
        case FlickerKernel::kNeon: {
#if defined(MMI_FLICKER_NEON)
            static const TransformTables tables{TableFactors().values, QuadTableFactors().values, nullptr, nullptr};
            TransformNeon(tables, x, terms, magnitudes);
            return true;
#else
            break;
#endif
        }
    }
    return false;
}

// First bin of the searched range holding the greatest magnitude above zero,
// or 0. Same answer as a strictly-greater scan in ascending order: the maximum
// is found first (a NaN never replaces it), then its lowest position.
int FindPeakBin(const float* magnitudes) {
    const float* searched = magnitudes + kFirstSearchedBin;
    float partial[kLanes] = {};
    int i = 0;
    for (; i + kLanes <= kSearchedBins; i += kLanes) {
        for (int lane = 0; lane < kLanes; ++lane) {
            const float value = searched[i + lane];
            partial[lane] = value > partial[lane] ? value : partial[lane];
        }
    }
    float best = 0.0f;
    for (; i < kSearchedBins; ++i) {
        best = searched[i] > best ? searched[i] : best;
    }
    for (float value : partial) {
        best = value > best ? value : best;
    }
    if (!(best > 0.0f)) {
        return 0;
    }
    for (i = 0; searched[i] != best; ++i) {
    }
    return kFirstSearchedBin + i;
}

// Working state of one detection: everything the record-based steps would
// touch that can influence the result.
struct Work {
    int raw[kRecordCapacity];
    int filtered[kRecordCapacity];
    alignas(32) float window[kMaxTerms];
    alignas(32) float x[kMaxTerms];
    alignas(32) float magnitudes[kOutputBins];
};

}  // namespace
}  // namespace flicker

bool FlickerKernelBuiltIn(FlickerKernel kernel) {
    switch (kernel) {
        case FlickerKernel::kPortable:
            return true;
        case FlickerKernel::kAvx2:
#if defined(MMI_FLICKER_AVX2)
            return true;
#else
            return false;
#endif
        case FlickerKernel::kNeon:
#if defined(MMI_FLICKER_NEON)
            return true;
#else
            return false;
#endif
    }
    return false;
}

bool FlickerKernelAvailable(FlickerKernel kernel) {
    switch (kernel) {
        case FlickerKernel::kPortable:
            return true;
        case FlickerKernel::kAvx2: {
            static const bool available = flicker::ProcessorHasAvx2();
            return available;
        }
        case FlickerKernel::kNeon: {
            static const bool available = flicker::ProcessorHasNeon();
            return available;
        }
    }
    return false;
}

FlickerKernel FlickerKernelSelect() {
    static const FlickerKernel best = FlickerKernelAvailable(FlickerKernel::kAvx2)   ? FlickerKernel::kAvx2
                                      : FlickerKernelAvailable(FlickerKernel::kNeon) ? FlickerKernel::kNeon
                                                                                     : FlickerKernel::kPortable;
    return best;
}

const char* FlickerKernelName(FlickerKernel kernel) {
    switch (kernel) {
        case FlickerKernel::kPortable:
            return "portable";
        case FlickerKernel::kAvx2:
            return "avx2";
        case FlickerKernel::kNeon:
            return "neon";
    }
    return "unknown";
}

int FlickerDetectWithKernel(FlickerKernel kernel, int (&samples)[256], int windowLength, int& frequency,
                            float sampleRate, float (*magnitudes)[500]) {
    using namespace flicker;
    if (!FlickerKernelAvailable(kernel) || windowLength > kRecordCapacity) {
        return -1;
    }

    Work work;
    if (memset_s(&work, sizeof(work), 0, sizeof(work)) != EOK) {
        return -1;
    }
    for (int i = 0; i < kSampleCount; ++i) {
        work.raw[i] = samples[i];
    }
    // As in the record-based steps, a failed clearing inside the filter leaves
    // the (already cleared) output as it is and the detection goes on.
    (void)BandingLpf(work.raw, work.filtered, kSampleCount);

    const int terms = windowLength < 1 ? 0 : (windowLength < kMaxTerms ? windowLength : kMaxTerms);
    const float* window = StandardWindow().values;
    if (windowLength != kSampleCount) {
        for (int i = 0; i < terms; ++i) {
            work.window[i] = HammingEntry(i, windowLength);
        }
        window = work.window;
    }
    ApplyWindow(kernel, work.filtered, window, terms, work.x);
    if (!Transform(kernel, work.x, terms, work.magnitudes)) {
        return -1;
    }

    const int peak = FindPeakBin(work.magnitudes);
    if (magnitudes != nullptr) {
        for (int bin = 0; bin < kBinCount; ++bin) {
            (*magnitudes)[bin] = work.magnitudes[bin];
        }
    }
    frequency = BinToFrequency(peak, sampleRate, kTransformSize);
    return 0;
}
