// AIDL vendor.zentel.hardware.hwdisplay.IDisplay: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/hwdisplay/IDisplay.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {

class BnDisplay : public ::android::BnInterface<IDisplay> {};

}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
