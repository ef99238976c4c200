// HIDL vendor.zentel.hardware.biometrics.fingerprint@2.2::IExtBiometricsFingerprint.
#pragma once

#include <vendor/zentel/hardware/biometrics/fingerprint/2.1/IExtBiometricsFingerprint.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace biometrics {
namespace fingerprint {
namespace V2_2 {

struct IExtBiometricsFingerprint
    : public ::vendor::zentel::hardware::biometrics::fingerprint::V2_1::IExtBiometricsFingerprint {
    virtual ::android::hardware::Return<int32_t> sendCmdToHal(int32_t cmd) = 0;

    ZENTEL_HIDL_INTERFACE(IExtBiometricsFingerprint);
};

}  // namespace V2_2
}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
