// HIDL vendor.zentel.hardware.hwfactoryinterface@1.0::IHwFactoryInterface.
#pragma once

#include <vendor/zentel/hardware/hwfactoryinterface/1.0/types.h>
#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {
namespace V1_0 {

struct IHwFactoryInterface : public ::android::hidl::base::V1_0::IBase {
    using text_cb = std::function<void(int32_t ret, const ::android::hardware::hidl_string& text)>;
    using getManufactureFileName_cb = text_cb;
    using getDeviceInfo_cb = text_cb;
    using getManufactureStationFlag_cb = text_cb;

    virtual ::android::hardware::Return<bool> isFactoryVersion() = 0;
    virtual ::android::hardware::Return<void> getManufactureFileName(getManufactureFileName_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<void> getDeviceInfo(int32_t id, getDeviceInfo_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<int32_t> setDeviceInfo(int32_t id,
                                                               const ::android::hardware::hidl_string& info) = 0;
    virtual ::android::hardware::Return<int32_t> getMmiDeviceFeaturesCheckResult(int32_t feature) = 0;
    virtual ::android::hardware::Return<int32_t> releaseFactoryResource() = 0;
    virtual ::android::hardware::Return<int32_t> setMmiTestResult(int32_t item, int32_t result) = 0;
    virtual ::android::hardware::Return<void> getManufactureStationFlag(int32_t stationId,
                                                                        getManufactureStationFlag_cb _hidl_cb) = 0;
    virtual ::android::hardware::Return<int32_t> sendFmdCmdData(const FmdCmdData& data) = 0;
    virtual ::android::hardware::Return<int32_t> sendFmdMessage(const FmdMsg& message) = 0;

    ZENTEL_HIDL_INTERFACE(IHwFactoryInterface);
};

}  // namespace V1_0
}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
