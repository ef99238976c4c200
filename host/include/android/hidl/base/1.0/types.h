// HIDL runtime subset: the types of android.hidl.base@1.0 (what getDebugInfo reports).
#pragma once

#include <hidl/HidlSupport.h>

#include <cstdint>

namespace android {
namespace hidl {
namespace base {
namespace V1_0 {

struct DebugInfo final {
    enum class Architecture : int32_t {
        UNKNOWN = 0,
        IS_64BIT = 1,
        IS_32BIT = 2,
    };

    int32_t pid __attribute__((aligned(4)));
    uint64_t ptr __attribute__((aligned(8)));
    Architecture arch __attribute__((aligned(4)));
};

static_assert(sizeof(DebugInfo) == 24, "DebugInfo has the device's layout");

}  // namespace V1_0
}  // namespace base
}  // namespace hidl
}  // namespace android
