// HIDL vendor.zentel.hardware.hwfactoryinterface@1.1::IHwFactoryInterface.
#pragma once

#include <vendor/zentel/hardware/hwfactoryinterface/1.0/IHwFactoryInterface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {
namespace V1_1 {

struct IHwFactoryInterface : public ::vendor::zentel::hardware::hwfactoryinterface::V1_0::IHwFactoryInterface {
    using getOeminfo_cb = text_cb;

    virtual ::android::hardware::Return<int32_t> getManufactureMode() = 0;
    virtual ::android::hardware::Return<int32_t> clearDeviceInfo(int32_t id) = 0;
    virtual ::android::hardware::Return<int32_t> setCommandData(int32_t commandId, int32_t length,
                                                                const ::android::hardware::hidl_string& data) = 0;
    virtual ::android::hardware::Return<void> getOeminfo(int32_t type, int32_t offset, int32_t length,
                                                         getOeminfo_cb _hidl_cb) = 0;

    ZENTEL_HIDL_INTERFACE(IHwFactoryInterface);
};

}  // namespace V1_1
}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
