// AIDL android.hardware.vibrator.IVibrator: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <android/hardware/vibrator/IVibrator.h>

namespace android {
namespace hardware {
namespace vibrator {

class BnVibrator : public ::android::BnInterface<IVibrator> {};

}  // namespace vibrator
}  // namespace hardware
}  // namespace android
