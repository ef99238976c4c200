// Portable transform kernel: plain C++ over fixed-width lane arrays, which
// compilers turn into the vector instructions of the baseline target (SSE2,
// NEON) without reordering any lane's additions. Quads read their factors
// from the precomputed quad table instead of permuting a column.
#include <cmath>

#include "flicker_transform.h"

namespace flicker {

void TransformPortable(const TransformTables& tables, const float* x, int terms, float* magnitudes) {
    for (int block = 0; block < kBlocks; ++block) {
        float re[kGroupsPerBlock][kLanes] = {};
        float im[kGroupsPerBlock][kLanes] = {};
        float quad[kQuadsPerBlock][kLanes] = {};
        const float* table = tables.table + block * kTableBlock;
        const float* quadTable = tables.quadTable + block * kQuadBlock;
        for (int n = 0; n < terms; ++n, table += kTableBlockStep, quadTable += kQuadBlockStep) {
            const float xn = x[n];
            for (int j = 0; j < kGroupsPerBlock; ++j) {
                const float* cosine = table + j * kGroupStep;
                const float* sine = cosine + kLanes;
                for (int lane = 0; lane < kLanes; ++lane) {
                    re[j][lane] = re[j][lane] + cosine[lane] * xn;
                    im[j][lane] = im[j][lane] - sine[lane] * xn;
                }
            }
            // Real sums add cosine * x, imaginary sums add sine * (-x).
            const float xq[kLanes] = {xn, xn, xn, xn, -xn, -xn, -xn, -xn};
            for (int q = 0; q < kQuadsPerBlock; ++q) {
                for (int lane = 0; lane < kLanes; ++lane) {
                    quad[q][lane] = quad[q][lane] + quadTable[q * kQuadStep + lane] * xq[lane];
                }
            }
        }
        for (int j = 0; j < kGroupsPerBlock; ++j) {
            float* out = magnitudes + TableGroupFirstBin(block * kGroupsPerBlock + j);
            for (int lane = 0; lane < kLanes; ++lane) {
                out[lane] = sqrtf(im[j][lane] * im[j][lane] + re[j][lane] * re[j][lane]);
            }
        }
        for (int q = 0; q < kQuadsPerBlock; ++q) {
            const int firstBin = QuadFirstBin(block * kQuadsPerBlock + q);
            for (int j = 0; j < kQuadBins; ++j) {
                const float real = quad[q][j];
                const float imag = quad[q][kQuadBins + j];
                magnitudes[firstBin + kChunkBins * j] = sqrtf(imag * imag + real * real);
            }
        }
    }
}

}  // namespace flicker
