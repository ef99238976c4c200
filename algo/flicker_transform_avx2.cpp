// AVX2 transform kernel. Built with -mavx2 and -ffp-contract=off and called
// only after the processor was checked for AVX2. Multiplications and additions
// stay separate instructions, so every lane rounds like the plain transform.
#include <immintrin.h>

#include "flicker_transform.h"

namespace flicker {

static_assert(kGroupsPerBlock == 2 && kQuadsPerBlock == 4, "the kernel below is written for this block shape");

namespace {

__m256 Magnitudes(__m256 re, __m256 im) {
    return _mm256_sqrt_ps(_mm256_add_ps(_mm256_mul_ps(im, im), _mm256_mul_ps(re, re)));
}

// A quad's lanes hold four real sums, then the four matching imaginary sums.
void StoreQuad(float* magnitudes, int firstBin, __m256 sums) {
    const __m256 squares = _mm256_mul_ps(sums, sums);
    const __m128 power = _mm_add_ps(_mm256_extractf128_ps(squares, 1), _mm256_castps256_ps128(squares));
    alignas(16) float values[4];
    _mm_store_ps(values, _mm_sqrt_ps(power));
    for (int j = 0; j < kQuadBins; ++j) {
        magnitudes[firstBin + kChunkBins * j] = values[j];
    }
}

}  // namespace

void WindowAvx2(const int* filtered, const float* window, int terms, float* x) {
    const __m256 limit = _mm256_set1_ps(2147483648.0f);
    const __m256i intMax = _mm256_set1_epi32(0x7fffffff);
    int i = 0;
    for (; i + kLanes <= terms; i += kLanes) {
        const __m256 value = _mm256_cvtepi32_ps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(filtered + i)));
        const __m256 product = _mm256_mul_ps(_mm256_loadu_ps(window + i), value);
        // The conversion gives INT_MIN for NaN and out-of-range values: that is
        // right below -2^31 only; NaN becomes 0 and 2^31 or more INT_MAX.
        __m256i converted = _mm256_cvttps_epi32(product);
        const __m256 tooLarge = _mm256_cmp_ps(product, limit, _CMP_GE_OQ);
        converted = _mm256_blendv_epi8(converted, intMax, _mm256_castps_si256(tooLarge));
        const __m256 isNumber = _mm256_cmp_ps(product, product, _CMP_ORD_Q);
        converted = _mm256_and_si256(converted, _mm256_castps_si256(isNumber));
        _mm256_store_ps(x + i, _mm256_cvtepi32_ps(converted));
    }
    for (; i < terms; ++i) {
        const float product = window[i] * static_cast<float>(filtered[i]);
        int converted = 0;
        if (product >= 2147483648.0f) {
            converted = 0x7fffffff;
        } else if (product < -2147483648.0f) {
            converted = -0x7fffffff - 1;
        } else if (product == product) {
            converted = static_cast<int>(product);
        }
        x[i] = static_cast<float>(converted);
    }
}

void TransformAvx2(const TransformTables& tables, const float* x, int terms, float* magnitudes) {
    // Quad lanes 4..7 multiply by -x: flipping the sign bit is exact.
    const __m256 negateHigh = _mm256_setr_ps(0.0f, 0.0f, 0.0f, 0.0f, -0.0f, -0.0f, -0.0f, -0.0f);
    const __m256i laneStep = _mm256_setr_epi32(0, 1, 2, 3, 0, 1, 2, 3);
    const float* columns = tables.doubledColumns;
    for (int block = 0; block < kBlocks; ++block) {
        __m256 re0 = _mm256_setzero_ps();
        __m256 re1 = re0, im0 = re0, im1 = re0, quad0 = re0, quad1 = re0, quad2 = re0, quad3 = re0;
        // Entry of the rotated column for each quad lane: n*j, plus 6 for sines.
        __m256i pick = _mm256_setr_epi32(0, 0, 0, 0, 6, 6, 6, 6);
        const float* table = tables.table + block * kTableBlock;
        const unsigned short* starts = tables.columnStarts + block * kMaxTerms * kQuadsPerBlock;
        for (int n = 0; n < terms; ++n, table += kTableBlockStep, starts += kQuadsPerBlock) {
            const __m256 xn = _mm256_broadcast_ss(x + n);
            re0 = _mm256_add_ps(re0, _mm256_mul_ps(_mm256_load_ps(table + 0), xn));
            im0 = _mm256_sub_ps(im0, _mm256_mul_ps(_mm256_load_ps(table + 8), xn));
            re1 = _mm256_add_ps(re1, _mm256_mul_ps(_mm256_load_ps(table + 16), xn));
            im1 = _mm256_sub_ps(im1, _mm256_mul_ps(_mm256_load_ps(table + 24), xn));

            const __m256 xq = _mm256_xor_ps(xn, negateHigh);
            const __m256 f0 = _mm256_permutevar8x32_ps(_mm256_loadu_ps(columns + starts[0]), pick);
            const __m256 f1 = _mm256_permutevar8x32_ps(_mm256_loadu_ps(columns + starts[1]), pick);
            const __m256 f2 = _mm256_permutevar8x32_ps(_mm256_loadu_ps(columns + starts[2]), pick);
            const __m256 f3 = _mm256_permutevar8x32_ps(_mm256_loadu_ps(columns + starts[3]), pick);
            quad0 = _mm256_add_ps(quad0, _mm256_mul_ps(f0, xq));
            quad1 = _mm256_add_ps(quad1, _mm256_mul_ps(f1, xq));
            quad2 = _mm256_add_ps(quad2, _mm256_mul_ps(f2, xq));
            quad3 = _mm256_add_ps(quad3, _mm256_mul_ps(f3, xq));
            pick = _mm256_add_epi32(pick, laneStep);  // only the low three bits are used
        }

        const int group = block * kGroupsPerBlock;
        _mm256_store_ps(magnitudes + TableGroupFirstBin(group), Magnitudes(re0, im0));
        _mm256_store_ps(magnitudes + TableGroupFirstBin(group + 1), Magnitudes(re1, im1));
        const int quad = block * kQuadsPerBlock;
        StoreQuad(magnitudes, QuadFirstBin(quad), quad0);
        StoreQuad(magnitudes, QuadFirstBin(quad + 1), quad1);
        StoreQuad(magnitudes, QuadFirstBin(quad + 2), quad2);
        StoreQuad(magnitudes, QuadFirstBin(quad + 3), quad3);
    }
}

}  // namespace flicker
