// AIDL vendor.zentel.hardware.hwdisplay.IDisplay (C++ backend).
#pragma once

#include <binder/IBinder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>
#include <vendor/zentel/hardware/hwdisplay/DISPLAY_DATA.h>
#include <vendor/zentel/hardware/hwdisplay/DisplayOutInfo.h>

#include <cstdint>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {

class IDisplay : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(Display)

    virtual ::android::binder::Status getScreenCurrentFps(int32_t value, DisplayOutInfo* _aidl_return) = 0;
    virtual ::android::binder::Status getScreenConfig(int32_t station, DisplayOutInfo* _aidl_return) = 0;
    virtual ::android::binder::Status setDisplayParameter(int32_t scene, const DISPLAY_DATA& data,
                                                          DisplayOutInfo* _aidl_return) = 0;
    virtual ::android::binder::Status setBackLightBrightness(int32_t brightness, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status getDisplayPanelType(int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status setDisplaySelfAdaptMinFps(int32_t dataInt, int32_t* _aidl_return) = 0;
};

}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
