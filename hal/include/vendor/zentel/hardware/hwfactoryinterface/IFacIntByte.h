// AIDL vendor.zentel.hardware.hwfactoryinterface.IFacIntByte (C++ backend).
#pragma once

#include <cstdint>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

// Status plus bytes, the answer of getOeminfo.
class IFacIntByte {
public:
    int32_t ret = int32_t(0);
    ::std::vector<uint8_t> value;
};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
