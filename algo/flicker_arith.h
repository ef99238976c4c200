// Arithmetic shared by the record-based detector functions and the fast
// detection path, so that both produce the same bits. Internal header.
//
// Not to be included by translation units compiled for an instruction set
// extension: its inline functions would be emitted there with those
// instructions and could be picked by the linker for every other caller.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace flicker {

constexpr int kSampleCount = 256;        // raw samples per detection
constexpr int kRecordCapacity = 300;     // size of the per-sample arrays of the record
constexpr int kTransformSize = 1024;     // transform points (fftSize)
constexpr int kBinCount = 500;           // bins 0..499 are computed
constexpr int kFirstSearchedBin = 20;    // lowest peak candidate
constexpr int kSearchedBins = 479;       // candidates 20..498
constexpr float kTwoPiApprox = 6.2832f;  // stands for 2*pi in the table and the window
constexpr float kHammingOffset = 0.54f;
constexpr float kHammingWeight = -0.46f;

// Float to int as the 32-bit ARM target converts: truncation toward zero,
// NaN gives 0, values outside the int range saturate. x86's conversion gives
// INT_MIN for all three, so they are handled explicitly.
inline int32_t TruncateToInt(float value) {
    if (value != value) return 0;
    if (value >= 2147483648.0f) return std::numeric_limits<int32_t>::max();
    if (value < -2147483648.0f) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(value);
}

// Two's-complement reinterpretation of a 32-bit pattern, without relying on
// implementation-defined narrowing.
inline int32_t WrapToInt(uint32_t bits) {
    return bits <= 0x7fffffffu ? static_cast<int32_t>(bits)
                               : static_cast<int32_t>(bits - 0x80000000u) + std::numeric_limits<int32_t>::min();
}

// One output of the low-pass section. The weighted sum wraps modulo 2^32 like
// the device's 32-bit arithmetic (inputs above ~860000 overflow it); the
// division by 1024 truncates toward zero (-1023 gives 0, not -1).
inline int32_t LowPassOutput(int32_t in2, int32_t in1, int32_t in0, int32_t out1, int32_t out2) {
    const uint32_t sum = 20u * static_cast<uint32_t>(in2) + 41u * static_cast<uint32_t>(in1) +
                         20u * static_cast<uint32_t>(in0) + 1598u * static_cast<uint32_t>(out1) -
                         657u * static_cast<uint32_t>(out2);
    return WrapToInt(sum) / 1024;
}

// Entry i of the cosine table of an n-point transform.
inline float CosineEntry(int i, int n) {
    return cosf((static_cast<float>(i) * kTwoPiApprox) / static_cast<float>(n));
}

// Coefficient i of the symmetric Hamming window of the given length. For a
// length of 1 the divisor is 0 and the coefficient is NaN.
inline float HammingEntry(int i, int length) {
    return kHammingOffset + cosf((static_cast<float>(i) * kTwoPiApprox) / static_cast<float>(length - 1)) *
                                kHammingWeight;
}

// Frequency of a peak bin: the bin spacing is computed first, then scaled.
inline int32_t BinToFrequency(int bin, float sampleRate, int transformSize) {
    return TruncateToInt(static_cast<float>(bin) * (sampleRate / static_cast<float>(transformSize)));
}

}  // namespace flicker
