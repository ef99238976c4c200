// AIDL vendor.zentel.hardware.hwfactoryinterface.IFacIntStr (C++ backend).
#pragma once

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

// Status plus text, the answer of the text queries.
class IFacIntStr {
public:
    int32_t ret = int32_t(0);
    ::std::string value;
};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
