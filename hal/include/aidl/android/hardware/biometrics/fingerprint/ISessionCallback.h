// AIDL android.hardware.biometrics.fingerprint.ISessionCallback (NDK backend). The library
// only passes an empty reference of this type, so none of its methods are declared.
#pragma once

#include <android/binder_interface_utils.h>

namespace aidl {
namespace android {
namespace hardware {
namespace biometrics {
namespace fingerprint {

class ISessionCallback : public ::ndk::ICInterface {
public:
    static const char* descriptor;
};

}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace android
}  // namespace aidl
