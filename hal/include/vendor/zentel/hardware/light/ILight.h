// AIDL vendor.zentel.hardware.light.ILight (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace light {

class ILight : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Light)

    virtual ::android::binder::Status setLightBrightness(int32_t id, int32_t brightness, int32_t* _aidl_return) = 0;
};

}  // namespace light
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
