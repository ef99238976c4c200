// AIDL vendor.zentel.hardware.tp.ITouchscreen (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <vendor/zentel/hardware/tp/ITPIntString.h>

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace tp {

class ITouchscreen : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Touchscreen)

    virtual ::android::binder::Status getCapacitanceTestResult(ITPIntString* _aidl_return) = 0;
    virtual ::android::binder::Status getCapacitanceCalibrateResult(int32_t value, ITPIntString* _aidl_return) = 0;
    virtual ::android::binder::Status getRotateCrownTestResult(ITPIntString* _aidl_return) = 0;
    virtual ::android::binder::Status setTouchScreenFeatureConfig(int32_t feature, const ::std::string& config,
                                                                  int32_t* _aidl_return) = 0;
};

}  // namespace tp
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
