// AIDL vendor.zentel.hardware.biometrics.fingerprint.ISession (NDK backend).
#pragma once

#include <android/binder_interface_utils.h>

#include <cstdint>
#include <memory>

namespace aidl {
namespace vendor {
namespace zentel {
namespace hardware {
namespace biometrics {
namespace fingerprint {

class ISession : public ::ndk::ICInterface {
public:
    static const char* descriptor;
    static std::shared_ptr<ISession> fromBinder(const ::ndk::SpAIBinder& binder);

    virtual ::ndk::ScopedAStatus sendCmdToHal(int32_t in_cmd, int32_t* _aidl_return) = 0;
};

}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
}  // namespace aidl
