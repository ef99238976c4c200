// AIDL vendor.zentel.hardware.biometrics.fingerprint.IFingerprint (NDK backend).
#pragma once

#include <aidl/android/hardware/biometrics/fingerprint/ISessionCallback.h>
#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/ISession.h>
#include <android/binder_interface_utils.h>

#include <cstdint>
#include <memory>

namespace aidl {
namespace vendor {
namespace zentel {
namespace hardware {
namespace biometrics {
namespace fingerprint {

class IFingerprint : public ::ndk::ICInterface {
public:
    static const char* descriptor;
    static std::shared_ptr<IFingerprint> fromBinder(const ::ndk::SpAIBinder& binder);

    virtual ::ndk::ScopedAStatus createSession(
            int32_t in_sensorId, int32_t in_userId,
            const std::shared_ptr<::aidl::android::hardware::biometrics::fingerprint::ISessionCallback>& in_cb,
            std::shared_ptr<ISession>* _aidl_return) = 0;
};

}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
}  // namespace aidl
