// AIDL vendor.zentel.hardware.power.IHWPower (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <vendor/zentel/hardware/power/PowerOutInfo.h>

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace power {

// caller is the tag of the calling module.
class IHWPower : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(HWPower)

    virtual ::android::binder::Status setPowerState(const ::std::string& caller, const ::std::string& testScene,
                                                    const ::std::string& para, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getPowerState(const ::std::string& caller, const ::std::string& key,
                                                    PowerOutInfo* info, int32_t* _aidl_return) = 0;
};

}  // namespace power
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
