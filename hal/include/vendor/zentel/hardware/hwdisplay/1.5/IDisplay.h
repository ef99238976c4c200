// HIDL vendor.zentel.hardware.hwdisplay@1.5::IDisplay: display parameters.
#pragma once

#include <vendor/zentel/hardware/hwdisplay/1.4/IDisplay.h>
#include <vendor/zentel/hardware/hwdisplay/1.5/types.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_5 {

struct IDisplay : public ::vendor::zentel::hardware::hwdisplay::V1_4::IDisplay {
    using setDisplayParameter_cb = text_cb;
    virtual ::android::hardware::Return<void> setDisplayParameter(int32_t scene, const DisplayData& data,
                                                                  setDisplayParameter_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(IDisplay);
};

}  // namespace V1_5
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
