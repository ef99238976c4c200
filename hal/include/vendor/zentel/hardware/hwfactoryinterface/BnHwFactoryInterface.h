// AIDL vendor.zentel.hardware.hwfactoryinterface.IHwFactoryInterface: the service side (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <vendor/zentel/hardware/hwfactoryinterface/IHwFactoryInterface.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwfactoryinterface {

class BnHwFactoryInterface : public ::android::BnInterface<IHwFactoryInterface> {};

}  // namespace hwfactoryinterface
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
