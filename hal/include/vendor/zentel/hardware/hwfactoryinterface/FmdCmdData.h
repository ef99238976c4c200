// AIDL vendor.zentel.hardware.hwfactoryinterface.FmdCmdData (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

// Big-data operation report.
class FmdCmdData {
public:
    int32_t version = int32_t(0);
    int32_t commandId = int32_t(0);
    int32_t operation = int32_t(0);
    int32_t cycle = int32_t(0);
    ::std::string station;
    ::std::string bsn;
    ::std::string spareText1;
    ::std::string spareText2;
    ::std::string spareText3;
    ::std::string spareText4;
    ::std::string spareText5;
};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
