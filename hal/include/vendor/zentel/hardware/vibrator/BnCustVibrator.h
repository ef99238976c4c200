// AIDL vendor.zentel.hardware.vibrator.ICustVibrator: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/vibrator/ICustVibrator.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace vibrator {

class BnCustVibrator : public ::android::BnInterface<ICustVibrator> {};

}  // namespace vibrator
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
