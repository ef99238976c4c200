// HIDL vendor.zentel.hardware.hwdisplay@1.4::IDisplay: self-adaptive minimum frame rate.
#pragma once

#include <vendor/zentel/hardware/hwdisplay/1.3/IDisplay.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_4 {

struct IDisplay : public ::vendor::zentel::hardware::hwdisplay::V1_3::IDisplay {
    virtual ::android::hardware::Return<int32_t> setDisplaySelfAdaptMinFps(int32_t dataInt) = 0;

    ZENTEL_HIDL_INTERFACE(IDisplay);
};

}  // namespace V1_4
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
