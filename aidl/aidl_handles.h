// The AIDL backend's process-wide state, shared by its source files.
#pragma once

#include <aidl/android/hardware/biometrics/fingerprint/ISessionCallback.h>
#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/IFingerprint.h>
#include <android/binder_auto_utils.h>
#include <jni.h>
#include <shared_handle.h>
#include <vendor/zentel/hardware/camera/vaelon/IVAELONService.h>
#include <vendor/zentel/hardware/hwdisplay/IDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/IHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/ILight.h>
#include <vendor/zentel/hardware/power/IHWPower.h>
#include <vendor/zentel/hardware/sensors/ISensors.h>
#include <vendor/zentel/hardware/tp/ITouchscreen.h>
#include <vendor/zentel/hardware/vibrator/ICustVibrator.h>

#include <memory>
#include <mutex>

// NDK death recipient of the fingerprint session (one of the library's exported symbols).
extern ndk::ScopedAIBinder_DeathRecipient g_deathRecipient;

namespace native_aidl {

using mmi::SharedHandle;
namespace fingerprint = aidl::vendor::zentel::hardware::biometrics::fingerprint;

extern SharedHandle<android::sp<vendor::zentel::hardware::hwfactoryinterface::IHwFactoryInterface>>
        g_aidlFactoryInterface;
extern SharedHandle<android::sp<vendor::zentel::hardware::hwdisplay::IDisplay>> g_aidlDisplay;
extern SharedHandle<android::sp<vendor::zentel::hardware::tp::ITouchscreen>> g_aidlTouchScreen;
extern SharedHandle<std::shared_ptr<fingerprint::IFingerprint>> g_aidlFingerprint;
extern SharedHandle<std::shared_ptr<fingerprint::ISession>> g_aidlFingerprintSession;
extern SharedHandle<android::sp<vendor::zentel::hardware::sensors::ISensors>> g_aidlSensors;
extern SharedHandle<android::sp<vendor::zentel::hardware::power::IHWPower>> g_aidlPower;
extern SharedHandle<android::sp<vendor::zentel::hardware::light::ILight>> g_aidlLight;
extern SharedHandle<android::sp<vendor::zentel::hardware::camera::vaelon::IVAELONService>> g_aidlVaelon;
extern SharedHandle<android::sp<vendor::zentel::hardware::vibrator::ICustVibrator>> g_aidlVibrator;

// The camera client's callback object, held while a client is registered.
extern SharedHandle<android::sp<vendor::zentel::hardware::camera::vaelon::IVAELONServiceCallBack>>
        g_aidlVaelonNotifier;

// The way back into Java for camera events: the Java VM and a global reference to the
// native-method class, written when a client registers and read on binder threads.
struct JavaCallbackTarget {
    JavaVM* vm = nullptr;
    jclass nativeClass = nullptr;
};
// Stores a new target and returns the previous one.
JavaCallbackTarget ExchangeJavaCallbackTarget(JavaCallbackTarget target);

// The target as an event sees it while it calls into Java. The library's unload waits for
// uses in progress before it deletes the class reference.
class JavaCallbackUse {
public:
    JavaCallbackUse();
    ~JavaCallbackUse();
    JavaCallbackUse(const JavaCallbackUse&) = delete;
    JavaCallbackUse& operator=(const JavaCallbackUse&) = delete;
    const JavaCallbackTarget& target() const { return mTarget; }

private:
    JavaCallbackTarget mTarget;
};

}  // namespace native_aidl
