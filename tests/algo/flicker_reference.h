// Literal, unoptimised transcription of the flicker detector: the yardstick for the library's
// results (bit for bit) and speed. It shares no code with the library, on purpose.
#pragma once

namespace flicker_reference {

struct AlgoContext {
    float sampleRate;
    int fftSize;
    int windowLength;
    int rawData[300];
    int filteredData[300];
    float hammingCoef[300];
    int fftInput[1024];
    float cosTable[1024];
    float magnitude[500];
    float realPart[500];
    float imagPart[500];
};

int DetectFlickerFrequence(int (&samples)[256], int windowLength, int& frequency, float sampleRate);
void PrepareFrequenceDetectAlgo(AlgoContext& context, int (&samples)[256], int windowLength, float sampleRate);
int CaclueFrequency(AlgoContext context);
int BandingLpf(int (&input)[300], int (&output)[300], int count);
void InitFftCoef(AlgoContext& context);
void InitHammingWindowFiltert(AlgoContext& context);
void ProcessHammingWindowFilter(AlgoContext& context);
int AnalyseDataWithFft(AlgoContext& context);

// DetectFlickerFrequence, also handing out the magnitudes CaclueFrequency's record computed.
int DetectWithMagnitudes(int (&samples)[256], int windowLength, int& frequency, float sampleRate,
                         float (&magnitudes)[500]);

}  // namespace flicker_reference
