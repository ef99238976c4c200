// AIDL vendor.zentel.hardware.hwfactoryinterface.FmdEvent (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

// One measured item of a big-data value report.
class FmdEvent {
public:
    int32_t errorCode = int32_t(0);
    int32_t itemId = int32_t(0);
    int32_t cycle = int32_t(0);
    ::std::string result;
    ::std::string station;
    ::std::string bsn;
    ::std::string time;
    ::std::string deviceName;
    ::std::string testName;
    ::std::string value;
    ::std::string thresholdMin;
    ::std::string thresholdMax;
    ::std::string firmware;
    ::std::string description;
    ::std::string reserved1;
    ::std::string reserved2;
    ::std::string reserved3;
    ::std::string reserved4;
    ::std::string reserved5;
    ::std::string reserved6;
};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
