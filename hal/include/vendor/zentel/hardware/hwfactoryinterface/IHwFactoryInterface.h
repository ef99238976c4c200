// AIDL vendor.zentel.hardware.hwfactoryinterface.IHwFactoryInterface (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <vendor/zentel/hardware/hwfactoryinterface/FmdCmdData.h>
#include <vendor/zentel/hardware/hwfactoryinterface/FmdMsg.h>
#include <vendor/zentel/hardware/hwfactoryinterface/IFacIntByte.h>
#include <vendor/zentel/hardware/hwfactoryinterface/IFacIntStr.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

class IHwFactoryInterface : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(HwFactoryInterface)

    virtual ::android::binder::Status isFactoryVersion(bool* _aidl_return) = 0;
    virtual ::android::binder::Status getManufactureFileName(IFacIntStr* _aidl_return) = 0;
    virtual ::android::binder::Status getDeviceInfo(int32_t id, IFacIntStr* _aidl_return) = 0;
    virtual ::android::binder::Status setDeviceInfo(int32_t id, const ::std::string& info, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getManufactureMode(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getMmiDeviceFeaturesCheckResult(int32_t feature, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status clearDeviceInfo(int32_t id, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status releaseFactoryResource(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status setMmiTestResult(int32_t item, int32_t result, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getManufactureStationFlag(int32_t stationId, IFacIntStr* _aidl_return) = 0;
    virtual ::android::binder::Status setCommandData(int32_t commandId, int32_t length,
                                                     const ::std::vector<uint8_t>& data, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status sendFmdCmdData(const FmdCmdData& data, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status sendFmdMessage(const FmdMsg& message, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getOeminfo(int32_t type, int32_t offset, int32_t length,
                                                 IFacIntByte* _aidl_return) = 0;
};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
