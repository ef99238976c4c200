// HIDL vendor.zentel.hardware.hwdisplay@1.0::IDisplay.
#pragma once

#include <vendor/zentel/hardware/hwdisplay/1.0/types.h>
#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_0 {

struct IDisplay : public ::android::hidl::base::V1_0::IBase {
    using getDisplayPanelType_cb = std::function<void(DISPLAY_RET ret, PANEL_TYPE type)>;
    virtual ::android::hardware::Return<void> getDisplayPanelType(getDisplayPanelType_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(IDisplay);
};

}  // namespace V1_0
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
