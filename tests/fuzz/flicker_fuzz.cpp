// libFuzzer target: the flicker detector gives exactly the literal transcription's bits for
// any 256 samples, on every kernel the processor runs and through the public entry, without
// undefined behaviour (the build traps on any sanitizer report).
// Input: 1024 bytes of samples (little-endian int32; a shorter input is repeated), then
// optionally a uint16 picking the window length in -4..300 (else 256) and the sample rate's
// float bits (else 1000.0).
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "flicker_detector.h"
#include "flicker_fast.h"
#include "flicker_reference.h"

namespace {

constexpr size_t kSampleBytes = 256 * sizeof(int32_t);
constexpr int kWindowLengths = 305;  // -4..300

[[noreturn]] void Mismatch(const char* kernel, const char* what, double expected, double actual) {
    std::fprintf(stderr, "flicker_fuzz: %s: %s: literal transcription %.9g, library %.9g\n", kernel, what, expected,
                 actual);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    uint8_t bytes[kSampleBytes];
    for (size_t i = 0; i < kSampleBytes; ++i) bytes[i] = data[i % size];
    int samples[256];
    std::memcpy(samples, bytes, sizeof(samples));
    int windowLength = 256;
    float rate = 1000.0f;
    if (size >= kSampleBytes + 2) {
        uint16_t pick;
        std::memcpy(&pick, data + kSampleBytes, sizeof(pick));
        windowLength = static_cast<int>(pick % kWindowLengths) - 4;
    }
    if (size >= kSampleBytes + 6) std::memcpy(&rate, data + kSampleBytes + 2, sizeof(rate));

    float expected[500];
    int expectedFrequency = -12345;
    int copy[256];
    std::memcpy(copy, samples, sizeof(copy));
    const int expectedRc =
            flicker_reference::DetectWithMagnitudes(copy, windowLength, expectedFrequency, rate, expected);

    for (FlickerKernel kernel : kFlickerKernels) {
        if (!FlickerKernelAvailable(kernel)) continue;
        std::memcpy(copy, samples, sizeof(copy));
        float magnitudes[500];
        int frequency = -12345;
        const int rc = FlickerDetectWithKernel(kernel, copy, windowLength, frequency, rate, &magnitudes);
        const char* name = FlickerKernelName(kernel);
        if (rc != expectedRc) Mismatch(name, "result", expectedRc, rc);
        if (frequency != expectedFrequency) Mismatch(name, "frequency", expectedFrequency, frequency);
        for (int bin = 0; bin < 500; ++bin) {
            if (std::memcmp(&magnitudes[bin], &expected[bin], sizeof(float)) != 0) {
                Mismatch(name, ("magnitude of bin " + std::to_string(bin)).c_str(), expected[bin], magnitudes[bin]);
            }
        }
    }
    std::memcpy(copy, samples, sizeof(copy));
    int frequency = -12345;
    const int rc = DetectFlickerFrequence(copy, windowLength, frequency, rate);
    if (rc != expectedRc) Mismatch("public entry", "result", expectedRc, rc);
    if (frequency != expectedFrequency) Mismatch("public entry", "frequency", expectedFrequency, frequency);
    return 0;
}
