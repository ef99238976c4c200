// HIDL vendor.zentel.hardware.hwdisplay@1.2::IDisplay. Adds nothing this library uses; it
// sits in the chain between 1.1 and the newer versions.
#pragma once

#include <vendor/zentel/hardware/hwdisplay/1.1/IDisplay.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_2 {

struct IDisplay : public ::vendor::zentel::hardware::hwdisplay::V1_1::IDisplay {
    ZENTEL_HIDL_INTERFACE(IDisplay);
};

}  // namespace V1_2
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
