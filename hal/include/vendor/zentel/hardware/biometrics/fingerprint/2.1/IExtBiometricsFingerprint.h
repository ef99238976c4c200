// HIDL vendor.zentel.hardware.biometrics.fingerprint@2.1::IExtBiometricsFingerprint. Its own
// methods are not used here; 2.2 adds the factory command.
#pragma once

#include <zentel_hidl_interface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace biometrics {
namespace fingerprint {
namespace V2_1 {

struct IExtBiometricsFingerprint : public ::android::hidl::base::V1_0::IBase {
    ZENTEL_HIDL_INTERFACE(IExtBiometricsFingerprint);
};

}  // namespace V2_1
}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
