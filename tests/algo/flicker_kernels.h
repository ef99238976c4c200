// The detector's transform kernels as test parameters: every kernel built into
// the library for this processor, named as FlickerKernelName names it (test
// names end in /portable, /avx2, /neon). A kernel the processor cannot run is
// skipped, saying so; a test that runs prints the kernel it checks.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "flicker_fast.h"

inline std::vector<FlickerKernel> BuiltInFlickerKernels() {
    std::vector<FlickerKernel> kernels;
    for (FlickerKernel kernel : kFlickerKernels) {
        if (FlickerKernelBuiltIn(kernel)) kernels.push_back(kernel);
    }
    return kernels;
}

// Shown by GoogleTest as the parameter's value.
inline void PrintTo(FlickerKernel kernel, std::ostream* out) { *out << FlickerKernelName(kernel); }

inline std::string FlickerKernelParamName(const testing::TestParamInfo<FlickerKernel>& info) {
    return FlickerKernelName(info.param);
}

class FlickerKernelTest : public testing::TestWithParam<FlickerKernel> {
protected:
    void SetUp() override {
        if (!FlickerKernelAvailable(GetParam())) {
            GTEST_SKIP() << "this processor does not run the " << FlickerKernelName(GetParam()) << " kernel";
        }
        std::printf("kernel checked: %s\n", FlickerKernelName(GetParam()));
    }
};
