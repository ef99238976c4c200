// HIDL vendor.zentel.hardware.light@2.0::ILight.
#pragma once

#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace light {
namespace V2_0 {

struct ILight : public ::android::hidl::base::V1_0::IBase {
    virtual ::android::hardware::Return<int32_t> setLightBrightness(int32_t id, int32_t brightness) = 0;

    ZENTEL_HIDL_INTERFACE(ILight);
};

}  // namespace V2_0
}  // namespace light
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
