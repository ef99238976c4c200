// AIDL vendor.zentel.hardware.hwdisplay.IDisplay (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>
#include <string>

namespace vendor {
namespace zentel {
namespace hardware {
namespace hwdisplay {

class DisplayOutInfo {
public:
    int32_t ret = 0;
    std::string info;
};

class DISPLAY_DATA {
public:
    int32_t dataInt = 0;
    std::string dataString;
};

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

class BnDisplay : public ::android::BnInterface<IDisplay> {};

}  // namespace hwdisplay
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
