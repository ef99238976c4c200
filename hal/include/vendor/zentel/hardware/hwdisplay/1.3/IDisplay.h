// HIDL vendor.zentel.hardware.hwdisplay@1.3::IDisplay. Adds nothing this library uses; it
// sits in the chain between 1.2 and the newer versions.
#pragma once

#include <vendor/zentel/hardware/hwdisplay/1.2/IDisplay.h>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {
namespace V1_3 {

struct IDisplay : public ::vendor::zentel::hardware::hwdisplay::V1_2::IDisplay {
    ZENTEL_HIDL_INTERFACE(IDisplay);
};

}  // namespace V1_3
}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
