// AIDL vendor.zentel.hardware.vibrator.ICustVibrator (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <utils/String16.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace vibrator {

// The maker's extension of the platform vibrator service, reached through its binder
// extension.
class ICustVibrator : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(CustVibrator)

    virtual ::android::binder::Status setVibratorParameter(const ::android::String16& command) = 0;
    virtual ::android::binder::Status getVibratorResult(const ::android::String16& command,
                                                        ::android::String16* _aidl_return) = 0;
};

}  // namespace vibrator
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
