// AIDL vendor.zentel.hardware.power.IHWPower: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/power/IHWPower.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace power {

class BnHWPower : public ::android::BnInterface<IHWPower> {};

}  // namespace power
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
