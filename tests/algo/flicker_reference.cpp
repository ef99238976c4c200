// Literal transcription of the flicker detector; see flicker_reference.h.
// Built with -ffp-contract=off like the library.
#include "flicker_reference.h"

#include <securec.h>

#include <cmath>
#include <cstdint>

namespace flicker_reference {
namespace {

// The device's float-to-int conversion: toward zero, NaN -> 0, saturating.
int ToInt(float v) {
    if (std::isnan(v)) return 0;
    if (v >= 2147483648.0f) return 2147483647;
    if (v < -2147483648.0f) return -2147483647 - 1;
    return static_cast<int>(v);
}

// 32-bit two's-complement wrap of an exact 64-bit sum.
int Wrap32(int64_t v) {
    int64_t low = v & 0xffffffffLL;
    if (low >= 0x80000000LL) low -= 0x100000000LL;
    return static_cast<int>(low);
}

// The transform loop exactly as written for the record; FixedN != 0 only
// lets the compiler know the modulus when the record holds the usual 1024,
// which leaves every index and every rounding as it is.
template <int FixedN>
void TransformBins(AlgoContext& c) {
    const int N = FixedN != 0 ? FixedN : c.fftSize;
    const int Q = (3 * N) / 4;
    for (int k = 0; k < 500; ++k) {
        float re = 0.0f;
        float im = 0.0f;
        c.realPart[k] = 0.0f;
        c.imagPart[k] = 0.0f;
        int m = 0;
        for (int n = 0; n < N; ++n) {
            float x = (float)c.fftInput[n];
            re = re + c.cosTable[m % N] * x;
            im = im - c.cosTable[(Q + m) % N] * x;
            c.realPart[k] = re;
            c.imagPart[k] = im;
            m += k;
        }
        c.magnitude[k] = sqrtf(im * im + re * re);
    }
}

int CaclueFrequencyOn(AlgoContext& c) {
    BandingLpf(c.rawData, c.filteredData, 256);
    for (int i = 0; i < c.windowLength; ++i) {
        c.filteredData[i] = ToInt(c.hammingCoef[i] * (float)c.filteredData[i]);
    }
    if (c.fftSize >= 1) {
        for (int i = 0; i < c.fftSize; ++i) c.fftInput[i] = 0;
    }
    for (int i = 0; i < c.windowLength; ++i) {
        c.fftInput[i] = c.filteredData[i];
    }
    return AnalyseDataWithFft(c);
}

}  // namespace

int DetectFlickerFrequence(int (&samples)[256], int windowLength, int& frequency, float sampleRate) {
    float magnitudes[500];
    return DetectWithMagnitudes(samples, windowLength, frequency, sampleRate, magnitudes);
}

int DetectWithMagnitudes(int (&samples)[256], int windowLength, int& frequency, float sampleRate,
                         float (&magnitudes)[500]) {
    AlgoContext record{};
    if (memset_s(&record, sizeof(record), 0, sizeof(record)) != 0) return -1;
    PrepareFrequenceDetectAlgo(record, samples, windowLength, sampleRate);
    AlgoContext copy = record;
    frequency = CaclueFrequencyOn(copy);
    for (int k = 0; k < 500; ++k) magnitudes[k] = copy.magnitude[k];
    return 0;
}

void PrepareFrequenceDetectAlgo(AlgoContext& c, int (&samples)[256], int windowLength, float sampleRate) {
    c.windowLength = windowLength;
    c.sampleRate = sampleRate;
    for (int i = 0; i < 256; ++i) c.rawData[i] = samples[i];
    c.fftSize = 1024;
    for (int i = 0; i < 1024; ++i) c.cosTable[i] = cosf(((float)i * 6.2832f) / 1024);
    if (windowLength >= 1) {
        for (int i = 0; i < windowLength; ++i) {
            c.hammingCoef[i] = 0.54f + cosf(((float)i * 6.2832f) / (float)(windowLength - 1)) * (-0.46f);
        }
    }
}

int CaclueFrequency(AlgoContext context) { return CaclueFrequencyOn(context); }

int BandingLpf(int (&input)[300], int (&output)[300], int count) {
    if (memset_s(output, (size_t)(count * 4), 0, (size_t)(count * 4)) != 0) return -1;
    output[0] = input[0];
    output[1] = input[1];
    if (count < 3) return 0;
    for (int i = 2; i < count; ++i) {
        int64_t sum = 20LL * input[i - 2] + 41LL * input[i - 1] + 20LL * input[i] + 1598LL * output[i - 1] -
                      657LL * output[i - 2];
        output[i] = Wrap32(sum) / 1024;
    }
    return 0;
}

void InitFftCoef(AlgoContext& c) {
    int N = c.fftSize;
    if (N < 1) return;
    for (int i = 0; i < N; ++i) c.cosTable[i] = cosf(((float)i * 6.2832f) / (float)N);
}

void InitHammingWindowFiltert(AlgoContext& c) {
    int L = c.windowLength;
    if (L < 1) return;
    for (int i = 0; i < L; ++i) c.hammingCoef[i] = 0.54f + cosf(((float)i * 6.2832f) / (float)(L - 1)) * (-0.46f);
}

void ProcessHammingWindowFilter(AlgoContext& c) {
    int L = c.windowLength;
    for (int i = 0; i < L; ++i) c.filteredData[i] = ToInt(c.hammingCoef[i] * (float)c.filteredData[i]);
}

int AnalyseDataWithFft(AlgoContext& c) {
    const int N = c.fftSize;
    if (N == 1024) {
        TransformBins<1024>(c);
    } else {
        TransformBins<0>(c);
    }
    float best = 0.0f;
    float bestBin = 0.0f;
    for (int b = 20; b < 20 + 479; ++b) {
        if (c.magnitude[b] > best) {
            best = c.magnitude[b];
            bestBin = (float)b;
        }
    }
    return ToInt(bestBin * (c.sampleRate / (float)N));
}

}  // namespace flicker_reference
