// HIDL vendor.zentel.hardware.hwdisplay@1.0 types.
#pragma once

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_0 {

enum class DISPLAY_RET : int32_t {
    SUCCESS = 0,
    FAIL = 1,
};

enum class PANEL_TYPE : int32_t {
    UNKNOWN = 0,
    LCD = 1,
    OLED = 2,
};

}  // namespace V1_0
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
