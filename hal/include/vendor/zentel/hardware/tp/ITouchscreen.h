// AIDL vendor.zentel.hardware.tp.ITouchscreen (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace tp {

class ITPIntString {
public:
    int32_t ret = 0;
    std::string info;
};

class ITouchscreen : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Touchscreen)

    virtual ::android::binder::Status getCapacitanceTestResult(ITPIntString* _aidl_return) = 0;
    virtual ::android::binder::Status getCapacitanceCalibrateResult(int32_t value, ITPIntString* _aidl_return) = 0;
    virtual ::android::binder::Status getRotateCrownTestResult(ITPIntString* _aidl_return) = 0;
    virtual ::android::binder::Status setTouchScreenFeatureConfig(int32_t feature, const std::string& config,
                                                                  int32_t* _aidl_return) = 0;
};

class BnTouchscreen : public ::android::BnInterface<ITouchscreen> {};

}  // namespace tp
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
