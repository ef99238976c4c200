// AIDL android.hardware.vibrator.IVibrator (C++ backend), the platform vibrator service.
// Only the part this library and the simulated handset touch is declared.
#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>

namespace android {
namespace hardware {
namespace vibrator {

class IVibrator : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Vibrator)

    virtual ::android::binder::Status getCapabilities(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status off() = 0;
};

class BnVibrator : public ::android::BnInterface<IVibrator> {};

}  // namespace vibrator
}  // namespace hardware
}  // namespace android
