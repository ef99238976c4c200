// HIDL vendor.zentel.hardware.hwdisplay@1.5 types.
#pragma once

#include <hidl/HidlSupport.h>

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_5 {

struct DisplayData {
    int32_t dataInt;
    ::android::hardware::hidl_string dataString;
};

}  // namespace V1_5
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
