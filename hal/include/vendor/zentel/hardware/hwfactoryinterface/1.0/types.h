// HIDL vendor.zentel.hardware.hwfactoryinterface@1.0 types.
#pragma once

#include <hidl/HidlSupport.h>

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {
namespace V1_0 {

struct FmdCmdData {
    int32_t version;
    int32_t commandId;
    int32_t operation;
    int32_t cycle;
    ::android::hardware::hidl_string station;
    ::android::hardware::hidl_string bsn;
};

struct FmdEvent {
    int32_t errorCode;
    int32_t itemId;
    int32_t cycle;
    ::android::hardware::hidl_string result;
    ::android::hardware::hidl_string station;
    ::android::hardware::hidl_string bsn;
    ::android::hardware::hidl_string time;
    ::android::hardware::hidl_string deviceName;
    ::android::hardware::hidl_string testName;
    ::android::hardware::hidl_string value;
    ::android::hardware::hidl_string thresholdMin;
    ::android::hardware::hidl_string thresholdMax;
    ::android::hardware::hidl_string firmware;
    ::android::hardware::hidl_string description;
};

struct FmdMsg {
    int32_t version;
    int32_t dataSource;
    int32_t eventCount;
    ::android::hardware::hidl_vec<FmdEvent> events;
};

}  // namespace V1_0
}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
