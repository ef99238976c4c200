// AIDL android.hardware.vibrator.IVibrator (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>

namespace android {
namespace hardware {
namespace vibrator {

// The platform vibrator service: only the part this library and the simulated handset touch.
class IVibrator : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Vibrator)

    virtual ::android::binder::Status getCapabilities(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status off() = 0;
};

}  // namespace vibrator
}  // namespace hardware
}  // namespace android
