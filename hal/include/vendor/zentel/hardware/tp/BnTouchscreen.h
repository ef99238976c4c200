// AIDL vendor.zentel.hardware.tp.ITouchscreen: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/tp/ITouchscreen.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace tp {

class BnTouchscreen : public ::android::BnInterface<ITouchscreen> {};

}  // namespace tp
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
