// Record-based steps of the flicker detector. DetectFlickerFrequence itself
// runs the fast path in flicker_fast.cpp, which yields the same bits.
#include "flicker_detector.h"

#include <securec.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "flicker_arith.h"
#include "flicker_fast.h"

using flicker::kBinCount;
using flicker::kFirstSearchedBin;
using flicker::kRecordCapacity;
using flicker::kSampleCount;
using flicker::kSearchedBins;
using flicker::kTransformSize;

namespace {

int Clamp(int value, int limit) { return value < limit ? value : limit; }

void FillCosineTable(AlgoContext& context, int points) {
    for (int i = 0; i < Clamp(points, kTransformSize); ++i) {
        context.cosTable[i] = flicker::CosineEntry(i, points);
    }
}

void FillWindow(AlgoContext& context, int length) {
    for (int i = 0; i < Clamp(length, kRecordCapacity); ++i) {
        context.hammingCoef[i] = flicker::HammingEntry(i, length);
    }
}

void ApplyWindow(AlgoContext& context) {
    for (int i = 0; i < Clamp(context.windowLength, kRecordCapacity); ++i) {
        context.filteredData[i] =
            flicker::TruncateToInt(context.hammingCoef[i] * static_cast<float>(context.filteredData[i]));
    }
}

}  // namespace

int DetectFlickerFrequence(int (&samples)[256], int windowLength, int& frequency, float sampleRate) {
    return FlickerDetectWithKernel(FlickerKernelSelect(), samples, windowLength, frequency, sampleRate, nullptr);
}

bool InitFrequencyDetectAlgo(AlgoContext& context) {
    return memset_s(&context, sizeof(context), 0, sizeof(context)) == EOK;
}

void PrepareFrequenceDetectAlgo(AlgoContext& context, int (&samples)[256], int windowLength, float sampleRate) {
    context.windowLength = windowLength;
    context.sampleRate = sampleRate;
    for (int i = 0; i < kSampleCount; ++i) {
        context.rawData[i] = samples[i];
    }
    context.fftSize = kTransformSize;
    FillCosineTable(context, kTransformSize);
    if (windowLength >= 1) {
        FillWindow(context, windowLength);
    }
}

int CaclueFrequency(AlgoContext context) {
    (void)BandingLpf(context.rawData, context.filteredData, kSampleCount);
    ApplyWindow(context);
    for (int i = 0; i < Clamp(context.fftSize, kTransformSize); ++i) {
        context.fftInput[i] = 0;
    }
    for (int i = 0; i < Clamp(context.windowLength, kRecordCapacity); ++i) {
        context.fftInput[i] = context.filteredData[i];
    }
    return AnalyseDataWithFft(context);
}

int BandingLpf(int (&input)[300], int (&output)[300], int count) {
    if (count > kRecordCapacity) {
        return -1;
    }
    // A count below 1 gives a size of 0 or one far too large, which memset_s rejects.
    const size_t bytes = static_cast<size_t>(count) * sizeof(int);
    if (memset_s(output, bytes, 0, bytes) != EOK) {
        return -1;
    }
    // The filter starts from the first two raw samples as its history. The
    // last two outputs stay in locals: the recursion is the critical path.
    output[0] = input[0];
    output[1] = input[1];
    int32_t older = output[0];
    int32_t last = output[1];
    for (int i = 2; i < count; ++i) {
        const int32_t next = flicker::LowPassOutput(input[i - 2], input[i - 1], input[i], last, older);
        output[i] = next;
        older = last;
        last = next;
    }
    return 0;
}

void InitFftCoef(AlgoContext& context) {
    if (context.fftSize >= 1) {
        FillCosineTable(context, context.fftSize);
    }
}

void InitHammingWindowFiltert(AlgoContext& context) {
    if (context.windowLength >= 1) {
        FillWindow(context, context.windowLength);
    }
}

void ProcessHammingWindowFilter(AlgoContext& context) { ApplyWindow(context); }

int AnalyseDataWithFft(AlgoContext& context) {
    const int points = context.fftSize;
    if (points > kTransformSize) {
        return 0;
    }
    // The sine of step m is read from the cosine table three quarters of a
    // period further on.
    const int sineShift = (3 * points) / 4;
    for (int k = 0; k < kBinCount; ++k) {
        float re = 0.0f;
        float im = 0.0f;
        context.realPart[k] = 0.0f;
        context.imagPart[k] = 0.0f;
        if (points >= 1) {
            // Table positions (n*k) mod N and (Q + n*k) mod N, advanced by k per step.
            const int step = k % points;
            int cosIndex = 0;
            int sinIndex = sineShift % points;
            for (int n = 0; n < points; ++n) {
                const float x = static_cast<float>(context.fftInput[n]);
                re = re + context.cosTable[cosIndex] * x;
                im = im - context.cosTable[sinIndex] * x;
                cosIndex += step;
                if (cosIndex >= points) cosIndex -= points;
                sinIndex += step;
                if (sinIndex >= points) sinIndex -= points;
            }
            context.realPart[k] = re;
            context.imagPart[k] = im;
        }
        context.magnitude[k] = sqrtf(im * im + re * re);
    }

    // Strictly greater wins, so ties go to the lowest bin and NaN never wins.
    float best = 0.0f;
    int bestBin = 0;
    for (int bin = kFirstSearchedBin; bin < kFirstSearchedBin + kSearchedBins; ++bin) {
        if (context.magnitude[bin] > best) {
            best = context.magnitude[bin];
            bestBin = bin;
        }
    }
    return flicker::BinToFrequency(bestBin, context.sampleRate, points);
}
