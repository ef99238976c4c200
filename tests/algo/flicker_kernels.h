// The transform kernels built into the library as test parameters (test names end in
// /portable, /avx2, /neon); one the processor cannot run is skipped, saying so.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "flicker_fast.h"

inline std::vector<FlickerKernel> BuiltInFlickerKernels() {
    std::vector<FlickerKernel> kernels;
    std::copy_if(std::begin(kFlickerKernels), std::end(kFlickerKernels), std::back_inserter(kernels),
                 FlickerKernelBuiltIn);
    return kernels;
}

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
