// Speed of the flicker detector: the literal transcription against the
// library's detector on each kernel this processor runs (x86: avx2 and
// portable; 64-bit ARM: neon and portable), the one DetectFlickerFrequence
// selects marked. The last line printed is the summary
// "flicker speedup: <B>x best, <P>x portable".
//
// Under user-mode emulation (qemu-aarch64 on an x86 machine) times say nothing
// about a handset: the program then runs each kernel once on every input,
// checks its frequencies against the literal transcription's and reports no
// timing.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "flicker_detector.h"
#include "flicker_fast.h"
#include "flicker_reference.h"

namespace {

constexpr int kInputCount = 16;
constexpr float kSampleRate = 1000.0f;
constexpr int kWindowLength = 256;

struct Samples {
    int values[256];
};

// Light from a mains-driven source seen by a sensor: a DC level, a flicker
// tone between 50 and 480 Hz with a harmonic, and sensor noise.
std::vector<Samples> MakeInputs() {
    std::vector<Samples> inputs(kInputCount);
    unsigned state = 12345u;
    auto noise = [&state] {
        state = state * 1664525u + 1013904223u;
        return static_cast<double>(state >> 8) / 16777216.0 - 0.5;
    };
    for (int s = 0; s < kInputCount; ++s) {
        const double tone = 50.0 + 27.3 * s;
        for (int n = 0; n < 256; ++n) {
            const double t = n / static_cast<double>(kSampleRate);
            const double v = 20000.0 + 8000.0 * std::sin(2.0 * M_PI * tone * t) +
                             1500.0 * std::sin(4.0 * M_PI * tone * t + 0.3) + 400.0 * noise();
            inputs[s].values[n] = static_cast<int>(std::lround(v));
        }
    }
    return inputs;
}

std::vector<Samples>& Inputs() {
    static std::vector<Samples> inputs = MakeInputs();
    return inputs;
}

void BM_LiteralTranscription(benchmark::State& state) {
    auto& inputs = Inputs();
    int i = 0;
    for (auto _ : state) {
        int frequency = 0;
        flicker_reference::DetectFlickerFrequence(inputs[i++ % kInputCount].values, kWindowLength, frequency,
                                                  kSampleRate);
        benchmark::DoNotOptimize(frequency);
    }
}

void BM_Detect(benchmark::State& state, FlickerKernel kernel) {
    auto& inputs = Inputs();
    int i = 0;
    for (auto _ : state) {
        int frequency = 0;
        FlickerDetectWithKernel(kernel, inputs[i++ % kInputCount].values, kWindowLength, frequency, kSampleRate,
                                nullptr);
        benchmark::DoNotOptimize(frequency);
    }
    state.SetLabel(kernel == FlickerKernelSelect() ? "selected" : "");
}

std::string DetectName(FlickerKernel kernel) { return std::string("BM_Detect/") + FlickerKernelName(kernel); }

// True when the program runs under user-mode emulation: the system describes a
// processor of another architecture (qemu-user hands the host's /proc/cpuinfo
// through), or the emulator command of the arm64 build said so (MMI_EMULATED).
bool Emulated() {
    if (const char* emulated = std::getenv("MMI_EMULATED"); emulated != nullptr && *emulated != '\0') return true;
    std::ifstream file("/proc/cpuinfo");
    const std::string cpuinfo((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
#if defined(__aarch64__) || defined(__arm__)
    return cpuinfo.find("CPU implementer") == std::string::npos;  // every ARM processor lists it
#elif defined(__x86_64__) || defined(__i386__)
    return cpuinfo.find("vendor_id") == std::string::npos;
#else
    return false;
#endif
}

// Under emulation: each kernel once on every input against the literal
// transcription. Returns the number of mismatches.
int CheckWithoutTiming() {
    std::printf("flicker bench: running under emulation, no timing reported (times under an emulator say "
                "nothing about a handset)\n");
    int mismatches = 0;
    for (FlickerKernel kernel : kFlickerKernels) {
        if (!FlickerKernelAvailable(kernel)) continue;
        int same = 0;
        for (Samples& input : Inputs()) {
            int literal = -1, detected = -2;
            flicker_reference::DetectFlickerFrequence(input.values, kWindowLength, literal, kSampleRate);
            FlickerDetectWithKernel(kernel, input.values, kWindowLength, detected, kSampleRate, nullptr);
            same += detected == literal;
        }
        std::printf("detector, %s kernel%s: %d of %d frequencies as the literal transcription's\n",
                    FlickerKernelName(kernel), kernel == FlickerKernelSelect() ? " (selected)" : "", same,
                    kInputCount);
        mismatches += kInputCount - same;
    }
    return mismatches;
}

// Console output as usual, plus the mean processor time per iteration of each
// benchmark for the summary (steadier than wall time when other processes
// share the machine).
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    // Colours only on a terminal, so that piped output stays plain text.
    SummaryReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_ColorTabular : OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0) continue;
            Sum& sum = sums_[run.run_name.function_name];
            sum.seconds += run.cpu_accumulated_time;
            sum.iterations += static_cast<double>(run.iterations);
        }
    }

    // Seconds per iteration, or a negative value when the benchmark did not run.
    double SecondsPerIteration(const std::string& name) const {
        auto it = sums_.find(name);
        return it == sums_.end() ? -1.0 : it->second.seconds / it->second.iterations;
    }

private:
    struct Sum {
        double seconds = 0.0;
        double iterations = 0.0;
    };
    std::map<std::string, Sum> sums_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    if (Emulated()) return CheckWithoutTiming() == 0 ? 0 : 1;

    benchmark::RegisterBenchmark("BM_LiteralTranscription", BM_LiteralTranscription)->Unit(benchmark::kMicrosecond);
    for (FlickerKernel kernel : kFlickerKernels) {
        if (!FlickerKernelAvailable(kernel)) continue;
        benchmark::RegisterBenchmark(DetectName(kernel).c_str(), BM_Detect, kernel)->Unit(benchmark::kMicrosecond);
    }
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    const double literal = reporter.SecondsPerIteration("BM_LiteralTranscription");
    const double best = reporter.SecondsPerIteration(DetectName(FlickerKernelSelect()));
    const double portable = reporter.SecondsPerIteration(DetectName(FlickerKernel::kPortable));
    std::cout.flush();
    if (literal <= 0.0 || best <= 0.0 || portable <= 0.0) {
        std::printf("flicker speedup: not measured (the literal transcription and the selected and portable "
                    "kernels must run)\n");
        return 0;
    }
    std::printf("literal transcription: %.1f us per detection\n", literal * 1e6);
    for (FlickerKernel kernel : kFlickerKernels) {
        const double seconds = reporter.SecondsPerIteration(DetectName(kernel));
        if (seconds <= 0.0) continue;
        std::printf("detector, %s kernel%s: %.2f us per detection (%.1fx)\n", FlickerKernelName(kernel),
                    kernel == FlickerKernelSelect() ? " (selected)" : "", seconds * 1e6, literal / seconds);
    }
    std::printf("flicker speedup: %.1fx best, %.1fx portable\n", literal / best, literal / portable);
    std::fflush(stdout);
    return 0;
}
