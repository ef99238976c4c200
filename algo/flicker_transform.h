// Transform kernels of the fast detection path and the layout of the factors
// they read. Internal header: declarations and constants only, so that it can
// be included by translation units built for an instruction set extension.
//
// Every kernel computes, for bins 0..511, exactly what the plain transform
// computes: re = re + cos[(n*k) mod 1024] * x[n] and
// im = im - cos[(768 + n*k) mod 1024] * x[n] for n = 0, 1, 2, ... in that
// order, each product rounded before it is added, then sqrt(im*im + re*re).
// Bins are spread over vector lanes, one bin (or one bin's real or imaginary
// sum) per lane, so no lane's order of operations changes. Only the first 256
// inputs are ever non-zero; the kernels stop there.
//
// The bins are split in two families:
//  - "table bins": in each 128-bin chunk, bins 0..63, in groups of eight
//    consecutive bins. Their factors are precomputed per input index and read
//    as a stream (32 groups).
//  - "quad bins": in each 128-bin chunk, bins 64..127, as 64 quads of the
//    bins k0, k0+128, k0+256, k0+384 (k0 = 64..127). The eight lanes of a
//    quad hold its four real sums, then its four imaginary sums; the latter
//    add sine * (-x), the same value as subtracting sine * x. At step n all
//    eight factors of a quad lie in the 8-entry column cos[c + 128*i],
//    c = (n*k0) mod 128: lane j (j < 4) needs entry (h + n*j) mod 8 and lane
//    4 + j entry (h + n*j + 6) mod 8, where h = ((n*k0) >> 7) mod 8 (768 is
//    6 * 128). Vector kernels read the column rotated by h (an unaligned read
//    from a doubled copy) and permute it with an index vector that is the
//    same for all quads; the start of that read is precomputed per quad and
//    step. Kernels without permutations read precomputed quad factors.
// Work is cut into 16 blocks of 2 table groups and 4 quads each; the kernels
// keep a block's sums in registers while walking the inputs.
#pragma once

namespace flicker {

constexpr int kLanes = 8;
constexpr int kChunkBins = 128;
constexpr int kTableBinsPerChunk = 64;
constexpr int kChunks = 4;                    // bins 0..511
constexpr int kOutputBins = kChunks * kChunkBins;
constexpr int kTableGroups = kChunks * kTableBinsPerChunk / kLanes;   // 32
constexpr int kQuads = kChunkBins - kTableBinsPerChunk;              // 64
constexpr int kQuadBins = 4;
constexpr int kBlocks = 16;
constexpr int kGroupsPerBlock = kTableGroups / kBlocks;  // 2
constexpr int kQuadsPerBlock = kQuads / kBlocks;         // 4
constexpr int kMaxTerms = 256;

constexpr int kGroupStep = 2 * kLanes;                    // 8 cosines, then 8 sines
constexpr int kTableBlockStep = kGroupsPerBlock * kGroupStep;
constexpr int kTableBlock = kMaxTerms * kTableBlockStep;
constexpr int kTableSize = kBlocks * kTableBlock;
constexpr int kQuadStep = 2 * kQuadBins;                  // 4 cosines, then 4 sines
constexpr int kQuadBlockStep = kQuadsPerBlock * kQuadStep;
constexpr int kQuadBlock = kMaxTerms * kQuadBlockStep;
constexpr int kQuadTableSize = kBlocks * kQuadBlock;
constexpr int kColumnEntries = 8;                         // cos[c + 128 * i], i = 0..7
constexpr int kDoubledColumn = 2 * kColumnEntries;
constexpr int kDoubledColumnsSize = kChunkBins * kDoubledColumn;
constexpr int kColumnStartsSize = kBlocks * kMaxTerms * kQuadsPerBlock;

static_assert(kGroupsPerBlock * kBlocks == kTableGroups, "table groups must fill the blocks");
static_assert(kQuadsPerBlock * kBlocks == kQuads, "quads must fill the blocks");

// First bin of table group g (g = 0..31). Internal linkage, so that no copy
// compiled for an instruction set extension can be shared with other callers.
static constexpr int TableGroupFirstBin(int group) {
    return (group / (kTableBinsPerChunk / kLanes)) * kChunkBins + (group % (kTableBinsPerChunk / kLanes)) * kLanes;
}
// Lowest bin k0 of quad q (q = 0..63); its bins are k0 + 128 * j, j = 0..3.
static constexpr int QuadFirstBin(int quad) { return kTableBinsPerChunk + quad; }

// Factors shared by the kernels, computed once per process.
struct TransformTables {
    // table[((block * 256 + n) * 2 + j) * 16 + c], for bin b = first bin of
    // group 2 * block + j, plus c % 8: cos[(n*b) mod 1024] for c < 8 and
    // cos[(768 + n*b) mod 1024] for c >= 8.
    const float* table;
    // quadTable[((block * 256 + n) * 4 + q) * 8 + c], for k0 = first bin of
    // quad 4 * block + q and b = k0 + 128 * (c % 4): cos[(n*b) mod 1024] for
    // c < 4, cos[(768 + n*b) mod 1024] for c >= 4. For kernels without
    // permutations.
    const float* quadTable;
    // doubledColumns[c * 16 + i] = cos[c + 128 * (i % 8)], c = 0..127.
    const float* doubledColumns;
    // columnStarts[(block * 256 + n) * 4 + q] = c * 16 + h for m = n*k0 of
    // quad 4 * block + q, c = m mod 128, h = (m >> 7) mod 8: where the
    // rotated column starts in doubledColumns.
    const unsigned short* columnStarts;
};

// Window step of the fast path: x[i] = (float)(int)(window[i] * (float)filtered[i])
// for i < terms, with the device's conversion (toward zero, NaN -> 0,
// saturating). x is 32-byte aligned.
void WindowAvx2(const int* filtered, const float* window, int terms, float* x);
void WindowNeon(const int* filtered, const float* window, int terms, float* x);

// Magnitudes of bins 0..511 of the transform of x[0..terms-1] (terms at most
// 256) into magnitudes[bin]. x and magnitudes are 32-byte aligned.
void TransformPortable(const TransformTables& tables, const float* x, int terms, float* magnitudes);
void TransformAvx2(const TransformTables& tables, const float* x, int terms, float* magnitudes);
void TransformNeon(const TransformTables& tables, const float* x, int terms, float* magnitudes);

}  // namespace flicker
