// HIDL vendor.zentel.hardware.tp@1.0::ITouchscreen.
#pragma once

#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace tp {
namespace V1_0 {

struct ITouchscreen : public ::android::hidl::base::V1_0::IBase {
    using text_cb = std::function<void(int32_t ret, const ::android::hardware::hidl_string& info)>;
    using getCapacitanceTestResult_cb = text_cb;
    using getCapacitanceCalibrateResult_cb = text_cb;
    using getRotateCrownTestResult_cb = std::function<void(bool success, const ::android::hardware::hidl_string& info)>;

    virtual ::android::hardware::Return<void> getCapacitanceTestResult(getCapacitanceTestResult_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<void> getCapacitanceCalibrateResult(
            int32_t value, getCapacitanceCalibrateResult_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<void> getRotateCrownTestResult(getRotateCrownTestResult_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<int32_t> setTouchScreenFeatureConfig(
            int32_t feature, const ::android::hardware::hidl_string& config) = 0;

    ZENTEL_HIDL_INTERFACE(ITouchscreen);
};

}  // namespace V1_0
}  // namespace tp
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
