// AIDL vendor.zentel.hardware.biometrics.fingerprint.IFingerprint: the service side (NDK backend).
#pragma once

#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/IFingerprint.h>
#include <android/binder_ibinder.h>
#include <android/binder_interface_utils.h>

namespace aidl {
namespace vendor {
namespace zentel {
namespace hardware {
namespace biometrics {
namespace fingerprint {

class BnFingerprint : public ::ndk::BnCInterface<IFingerprint> {
protected:
    ::ndk::SpAIBinder createBinder() override;
};

}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
}  // namespace aidl
