// HIDL vendor.zentel.hardware.power@1.0::IHWPower.
#pragma once

#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace power {
namespace V1_0 {

struct IHWPower : public ::android::hidl::base::V1_0::IBase {
    using text_cb = std::function<void(int32_t result, const ::android::hardware::hidl_string& info)>;
    using getPowerState_cb = text_cb;
    using checkUsbSpeed_cb = text_cb;

    virtual ::android::hardware::Return<int32_t> setPowerState(const ::android::hardware::hidl_string& testScene,
                                                               const ::android::hardware::hidl_string& para) = 0;
    virtual ::android::hardware::Return<void> getPowerState(const ::android::hardware::hidl_string& key,
                                                            getPowerState_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<void> checkUsbSpeed(const ::android::hardware::hidl_string& scene,
                                                            const ::android::hardware::hidl_string& testTimes,
                                                            const ::android::hardware::hidl_string& maxLimit,
                                                            const ::android::hardware::hidl_string& minLimit,
                                                            checkUsbSpeed_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(IHWPower);
};

}  // namespace V1_0
}  // namespace power
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
