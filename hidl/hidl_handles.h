// The HIDL backend's process-wide state and call helpers, shared by its source files.
#pragma once

#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <shared_handle.h>

#include <functional>
#include <string>
#include <vendor/zentel/hardware/biometrics/fingerprint/2.2/IExtBiometricsFingerprint.h>
#include <vendor/zentel/hardware/hwdisplay/1.0/IDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/1.0/IHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/2.0/ILight.h>
#include <vendor/zentel/hardware/power/1.0/IHWPower.h>
#include <vendor/zentel/hardware/sensors/1.0/ISensors.h>
#include <vendor/zentel/hardware/sensors/2.0/ISensors.h>
#include <vendor/zentel/hardware/tp/1.0/ITouchscreen.h>

namespace native_hidl {

using mmi::SharedHandle;
namespace hw = vendor::zentel::hardware;

extern SharedHandle<android::sp<hw::hwfactoryinterface::V1_0::IHwFactoryInterface>> g_hwFactoryInterface;
extern SharedHandle<android::sp<hw::hwdisplay::V1_0::IDisplay>> g_hwDisplay;
extern SharedHandle<android::sp<hw::tp::V1_0::ITouchscreen>> g_hwTouchScreen;
extern SharedHandle<android::sp<hw::biometrics::fingerprint::V2_2::IExtBiometricsFingerprint>> g_hwFingerprint;
extern SharedHandle<android::sp<hw::sensors::V1_0::ISensors>> g_hwSensors;
extern SharedHandle<android::sp<hw::power::V1_0::IHWPower>> g_hwPower;
extern SharedHandle<android::sp<hw::light::V2_0::ILight>> g_hwLight;
extern SharedHandle<android::sp<hw::sensors::V2_0::ISensors>> g_zentelSensors;

// The value a HIDL call returned. When the call failed in transport (its service died
// under it) the operation answers as if the service had not written a result: `preset`.
template <typename T>
T ValueOr(android::hardware::Return<T>&& ret, T preset) {
    return ret.isOk() ? static_cast<T>(ret) : preset;
}

// Marks a callback call's status as seen; after a failed transport the callback has not run
// and the caller's locals keep their presets.
inline void Finish(android::hardware::Return<void>&& ret) { ret.isOk(); }

// A newer minor version of a handle's interface, cast for one call; null when the handle is
// null or its service does not implement that version.
template <typename Newer, typename Older>
android::sp<Newer> CastTo(const android::sp<Older>& handle) {
    if (handle == nullptr) return nullptr;
    android::hardware::Return<android::sp<Newer>> cast = Newer::castFrom(handle);
    return cast.isOk() ? static_cast<android::sp<Newer>>(cast) : nullptr;
}

// A (status, text) answer delivered through a result callback, copied out of it (the
// whole text, zero bytes included). The status stays -1 when the service never calls back.
struct TextResult {
    int32_t ret = -1;
    std::string text;
};

// The result callback that stores a (status, text) answer.
inline std::function<void(int32_t, const android::hardware::hidl_string&)> Into(TextResult& result) {
    return [&result](int32_t ret, const android::hardware::hidl_string& text) {
        result.ret = ret;
        result.text = text;
    };
}

// Closes the panel-processor library if it is open (part of the HIDL shutdown).
void ClosePanelLibrary();

}  // namespace native_hidl
