// HIDL vendor.zentel.hardware.hwdisplay@1.1::IDisplay: frame rate and configuration.
#pragma once

#include <hidl/HidlSupport.h>
#include <vendor/zentel/hardware/hwdisplay/1.0/IDisplay.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_1 {

struct IDisplay : public ::vendor::zentel::hardware::hwdisplay::V1_0::IDisplay {
    using DISPLAY_RET = ::vendor::zentel::hardware::hwdisplay::V1_0::DISPLAY_RET;
    using text_cb = std::function<void(DISPLAY_RET ret, const ::android::hardware::hidl_string& text)>;
    using getScreenCurrentFps_cb = text_cb;
    using getScreenConfig_cb = text_cb;

    virtual ::android::hardware::Return<void> getScreenCurrentFps(int32_t value, getScreenCurrentFps_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<DISPLAY_RET> selectScreenConfigStation(int32_t station) = 0;
    virtual ::android::hardware::Return<void> getScreenConfig(getScreenConfig_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(IDisplay);
};

}  // namespace V1_1
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
