// AIDL vendor.zentel.hardware.hwfactoryinterface.FmdMsg (C++ backend).
#pragma once

#include <vendor/zentel/hardware/hwfactoryinterface/FmdEvent.h>

#include <cstdint>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

// Big-data value report.
class FmdMsg {
public:
    int32_t version = int32_t(0);
    int32_t dataSource = int32_t(0);
    int32_t eventCount = int32_t(0);
    ::std::vector<FmdEvent> events;
};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
