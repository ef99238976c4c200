// AIDL vendor.zentel.hardware.light.ILight: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/light/ILight.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace light {

class BnLight : public ::android::BnInterface<ILight> {};

}  // namespace light
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
