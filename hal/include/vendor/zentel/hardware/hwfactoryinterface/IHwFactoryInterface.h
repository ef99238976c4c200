// AIDL vendor.zentel.hardware.hwfactoryinterface.IHwFactoryInterface (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

// Status plus text, the answer of the text queries.
class IFacIntStr {
public:
    int32_t ret = 0;
    std::string value;
};

// Status plus bytes, the answer of getOeminfo.
class IFacIntByte {
public:
    int32_t ret = 0;
    std::vector<uint8_t> value;
};

// Big-data operation report.
class FmdCmdData {
public:
    int32_t version = 0;
    int32_t commandId = 0;
    int32_t operation = 0;
    int32_t cycle = 0;
    std::string station;
    std::string bsn;
    std::string spareText1;
    std::string spareText2;
    std::string spareText3;
    std::string spareText4;
    std::string spareText5;
};

// One measured item of a big-data value report.
class FmdEvent {
public:
    int32_t errorCode = 0;
    int32_t itemId = 0;
    int32_t cycle = 0;
    std::string result;
    std::string station;
    std::string bsn;
    std::string time;
    std::string deviceName;
    std::string testName;
    std::string value;
    std::string thresholdMin;
    std::string thresholdMax;
    std::string firmware;
    std::string description;
    std::string reserved1;
    std::string reserved2;
    std::string reserved3;
    std::string reserved4;
    std::string reserved5;
    std::string reserved6;
};

// Big-data value report.
class FmdMsg {
public:
    int32_t version = 0;
    int32_t dataSource = 0;
    int32_t eventCount = 0;
    std::vector<FmdEvent> events;
};

class IHwFactoryInterface : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(HwFactoryInterface)

    virtual ::android::binder::Status isFactoryVersion(bool* _aidl_return) = 0;
    virtual ::android::binder::Status getManufactureFileName(IFacIntStr* _aidl_return) = 0;
    virtual ::android::binder::Status getDeviceInfo(int32_t id, IFacIntStr* _aidl_return) = 0;
    virtual ::android::binder::Status setDeviceInfo(int32_t id, const std::string& info, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getManufactureMode(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getMmiDeviceFeaturesCheckResult(int32_t feature, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status clearDeviceInfo(int32_t id, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status releaseFactoryResource(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status setMmiTestResult(int32_t item, int32_t result, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getManufactureStationFlag(int32_t stationId, IFacIntStr* _aidl_return) = 0;
    virtual ::android::binder::Status setCommandData(int32_t commandId, int32_t length,
                                                     const std::vector<uint8_t>& data, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status sendFmdCmdData(const FmdCmdData& data, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status sendFmdMessage(const FmdMsg& message, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getOeminfo(int32_t type, int32_t offset, int32_t length,
                                                 IFacIntByte* _aidl_return) = 0;
};

class BnHwFactoryInterface : public ::android::BnInterface<IHwFactoryInterface> {};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
