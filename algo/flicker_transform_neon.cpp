// NEON transform kernel for 64-bit ARM: four float lanes per register, one bin
// (or one bin's real or imaginary sum) per lane. Built with -ffp-contract=off,
// so every multiplication (FMUL) and addition (FADD, FSUB) stays a separate,
// separately rounded instruction: ARM compilers otherwise fuse them into FMLA
// or FMADD, which round once and change the bits. Quads read their factors
// from the precomputed quad table.
//
// Only for AArch64: 32-bit ARM NEON flushes subnormal numbers to zero, which
// the plain transform does not.
#include <arm_neon.h>

#include "flicker_transform.h"

namespace flicker {

static_assert(kGroupsPerBlock == 2 && kQuadsPerBlock == 4 && kLanes == 8 && kQuadBins == 4,
              "the kernel below is written for this block shape");

namespace {

float32x4_t Magnitudes(float32x4_t re, float32x4_t im) {
    return vsqrtq_f32(vaddq_f32(vmulq_f32(im, im), vmulq_f32(re, re)));
}

// sum + factors * x, and sum - factors * x, with the product rounded first.
float32x4_t Add(float32x4_t sum, const float* factors, float32x4_t x) {
    return vaddq_f32(sum, vmulq_f32(vld1q_f32(factors), x));
}
float32x4_t Subtract(float32x4_t sum, const float* factors, float32x4_t x) {
    return vsubq_f32(sum, vmulq_f32(vld1q_f32(factors), x));
}

}  // namespace

void WindowNeon(const int* filtered, const float* window, int terms, float* x) {
    // FCVTZS converts toward zero, saturates outside the int range and gives 0
    // for NaN: the device's conversion, with no special cases.
    int i = 0;
    for (; i + 4 <= terms; i += 4) {
        const float32x4_t product = vmulq_f32(vld1q_f32(window + i), vcvtq_f32_s32(vld1q_s32(filtered + i)));
        vst1q_f32(x + i, vcvtq_f32_s32(vcvtq_s32_f32(product)));
    }
    for (; i < terms; ++i) {
        x[i] = static_cast<float>(vcvts_s32_f32(window[i] * static_cast<float>(filtered[i])));
    }
}

void TransformNeon(const TransformTables& tables, const float* x, int terms, float* magnitudes) {
    for (int block = 0; block < kBlocks; ++block) {
        // Two table groups of eight bins: real and imaginary sums, two registers each.
        float32x4_t re0 = vdupq_n_f32(0.0f);
        float32x4_t re0b = re0, im0 = re0, im0b = re0, re1 = re0, re1b = re0, im1 = re0, im1b = re0;
        // Four quads: the real sums of the bins k0 + 128 * j, and their imaginary sums.
        float32x4_t quadRe[kQuadsPerBlock] = {re0, re0, re0, re0};
        float32x4_t quadIm[kQuadsPerBlock] = {re0, re0, re0, re0};
        const float* table = tables.table + block * kTableBlock;
        const float* quadTable = tables.quadTable + block * kQuadBlock;
        for (int n = 0; n < terms; ++n, table += kTableBlockStep, quadTable += kQuadBlockStep) {
            const float32x4_t xn = vdupq_n_f32(x[n]);
            re0 = Add(re0, table + 0, xn);
            re0b = Add(re0b, table + 4, xn);
            im0 = Subtract(im0, table + 8, xn);
            im0b = Subtract(im0b, table + 12, xn);
            re1 = Add(re1, table + 16, xn);
            re1b = Add(re1b, table + 20, xn);
            im1 = Subtract(im1, table + 24, xn);
            im1b = Subtract(im1b, table + 28, xn);
            for (int q = 0; q < kQuadsPerBlock; ++q) {
                quadRe[q] = Add(quadRe[q], quadTable + q * kQuadStep, xn);
                quadIm[q] = Subtract(quadIm[q], quadTable + q * kQuadStep + kQuadBins, xn);
            }
        }

        const int group = block * kGroupsPerBlock;
        float* out = magnitudes + TableGroupFirstBin(group);
        vst1q_f32(out, Magnitudes(re0, im0));
        vst1q_f32(out + 4, Magnitudes(re0b, im0b));
        out = magnitudes + TableGroupFirstBin(group + 1);
        vst1q_f32(out, Magnitudes(re1, im1));
        vst1q_f32(out + 4, Magnitudes(re1b, im1b));
        for (int q = 0; q < kQuadsPerBlock; ++q) {
            const int firstBin = QuadFirstBin(block * kQuadsPerBlock + q);
            const float32x4_t quad = Magnitudes(quadRe[q], quadIm[q]);
            magnitudes[firstBin] = vgetq_lane_f32(quad, 0);
            magnitudes[firstBin + kChunkBins] = vgetq_lane_f32(quad, 1);
            magnitudes[firstBin + 2 * kChunkBins] = vgetq_lane_f32(quad, 2);
            magnitudes[firstBin + 3 * kChunkBins] = vgetq_lane_f32(quad, 3);
        }
    }
}

}  // namespace flicker
