// Flicker frequency detection over a block of raw light-sensor samples.
//
// The detector low-pass filters 256 raw samples, applies a symmetric Hamming
// window to the first `windowLength` filtered samples, zero-pads them to 1024
// points, evaluates a direct Fourier transform of bins 0..499 and reports the
// strongest bin in 20..498 as an integer frequency in the units of the sampling
// rate. Everything works on the stack; there is no state between calls.
//
// All floating-point work is single precision, products are rounded before
// they are added (never fused), and every float-to-int conversion truncates
// toward zero, gives 0 for NaN and saturates outside the int range (the
// behaviour of the 32-bit ARM devices the results must match).
#pragma once

// State record of one detection. Always cleared to all-zero bytes before use.
// fftSize must not exceed 1024 and windowLength not 300; the functions below
// never read or write past the arrays when a record breaks that rule.
struct AlgoContext {
    float sampleRate;          // Hz; the system passes 1000.0
    int fftSize;               // number of transform points; always 1024
    int windowLength;          // filtered samples that are windowed and transformed
    int rawData[300];          // raw samples; the first 256 are filled
    int filteredData[300];     // low-pass output, then windowed in place
    float hammingCoef[300];    // window coefficients, first windowLength used
    int fftInput[1024];        // windowed samples followed by zeros
    float cosTable[1024];      // cos(6.2832 * i / fftSize)
    float magnitude[500];      // magnitude of bins 0..499
    float realPart[500];       // real part of bins 0..499
    float imagPart[500];       // imaginary part of bins 0..499
};

// Detects the dominant flicker frequency of 256 samples. Returns 0 and writes
// `frequency`, or returns -1 without writing it when the working record could
// not be cleared or `windowLength` exceeds the record's capacity of 300.
// Runs on the fastest transform kernel the processor supports; every kernel
// gives the same bits as the record-based functions below.
int DetectFlickerFrequence(int (&samples)[256], int windowLength, int& frequency, float sampleRate);

// Clears the whole record; true when the clearing succeeded.
bool InitFrequencyDetectAlgo(AlgoContext& context);

// Fills the record for one detection: parameters, the 256 raw samples, the
// 1024-point cosine table and the window coefficients.
void PrepareFrequenceDetectAlgo(AlgoContext& context, int (&samples)[256], int windowLength,
                                float sampleRate);

// Filters, windows and transforms a prepared record (on its own copy; the
// caller's record is not modified) and returns the detected frequency.
int CaclueFrequency(AlgoContext context);

// Second-order integer low-pass filter over the first `count` inputs. Returns
// 0, or -1 when the output could not be cleared (count below 1 or above 300
// included); then the output is left as it was.
int BandingLpf(int (&input)[300], int (&output)[300], int count);

// Fills cosTable[0..fftSize-1] for the record's fftSize (nothing when below 1).
void InitFftCoef(AlgoContext& context);

// Fills hammingCoef[0..windowLength-1] (nothing when windowLength is below 1).
void InitHammingWindowFiltert(AlgoContext& context);

// Multiplies filteredData[0..windowLength-1] by the window coefficients in place.
void ProcessHammingWindowFilter(AlgoContext& context);

// Transforms fftInput into bins 0..499 (magnitude, realPart, imagPart) and
// returns the frequency of the strongest bin in 20..498 (0 if none is above
// zero). A record whose fftSize exceeds 1024 is left untouched and yields 0.
int AnalyseDataWithFft(AlgoContext& context);
