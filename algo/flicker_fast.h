// Fast flicker detection and the choice of its transform kernel. Internal
// header for the library, its tests and its benchmark.
#pragma once

// Transform kernels. Each gives exactly the same bits; they differ in speed.
enum class FlickerKernel {
    kPortable,  // plain C++, for any processor
    kAvx2,      // x86 AVX2, only where the processor supports it
    kNeon,      // 64-bit ARM NEON (Advanced SIMD), four float lanes
};

// Every kernel, for tests and benchmarks that go through them all.
constexpr FlickerKernel kFlickerKernels[] = {FlickerKernel::kPortable, FlickerKernel::kAvx2, FlickerKernel::kNeon};

// True when the kernel is compiled into the library for this target
// processor (whether the processor runs it is FlickerKernelAvailable's answer).
bool FlickerKernelBuiltIn(FlickerKernel kernel);

// True when the kernel is built into the library and the processor runs it.
bool FlickerKernelAvailable(FlickerKernel kernel);

// The fastest available kernel; the one DetectFlickerFrequence uses.
FlickerKernel FlickerKernelSelect();

// Short name of a kernel for logs and benchmark labels.
const char* FlickerKernelName(FlickerKernel kernel);

// DetectFlickerFrequence with the given kernel. When `magnitudes` is not null
// it receives the magnitudes of bins 0..499 of the transform. Returns -1, and
// writes nothing, when the kernel is not available, the working record could
// not be cleared or windowLength exceeds 300.
int FlickerDetectWithKernel(FlickerKernel kernel, int (&samples)[256], int windowLength, int& frequency,
                            float sampleRate, float (*magnitudes)[500]);
