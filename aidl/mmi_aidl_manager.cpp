// Connections of the AIDL backend: lookup at load, death links, recovery after a service
// death, and shutdown.
//
// One lock serialises everything that connects or disconnects (load, recovery, unload), so
// each of those runs as a whole; it may be held while waiting for a declared service to
// come up. Operations never take it: they only read the handles (see SharedHandle).
#include "mmi_aidl_manager.h"

#include <android/binder_manager.h>
#include <android/hardware/vibrator/IVibrator.h>
#include <binder/IServiceManager.h>
#include <mmi_log.h>

#include <chrono>
#include <condition_variable>

#include "aidl_handles.h"

using android::IBinder;
using android::IInterface;
using android::sp;
using android::String16;
using android::wp;
using mmi::kLogPrefix;

namespace native_aidl {
namespace {

void ServiceDied(void* cookie);

}  // namespace
}  // namespace native_aidl

__attribute__((visibility("default"))) ndk::ScopedAIBinder_DeathRecipient g_deathRecipient(
        AIBinder_DeathRecipient_new(native_aidl::ServiceDied));

namespace native_aidl {

SharedHandle<sp<vendor::zentel::hardware::hwfactoryinterface::IHwFactoryInterface>> g_aidlFactoryInterface;
SharedHandle<sp<vendor::zentel::hardware::hwdisplay::IDisplay>> g_aidlDisplay;
SharedHandle<sp<vendor::zentel::hardware::tp::ITouchscreen>> g_aidlTouchScreen;
SharedHandle<std::shared_ptr<fingerprint::IFingerprint>> g_aidlFingerprint;
SharedHandle<std::shared_ptr<fingerprint::ISession>> g_aidlFingerprintSession;
SharedHandle<sp<vendor::zentel::hardware::sensors::ISensors>> g_aidlSensors;
SharedHandle<sp<vendor::zentel::hardware::power::IHWPower>> g_aidlPower;
SharedHandle<sp<vendor::zentel::hardware::light::ILight>> g_aidlLight;
SharedHandle<sp<vendor::zentel::hardware::camera::vaelon::IVAELONService>> g_aidlVaelon;
SharedHandle<sp<vendor::zentel::hardware::vibrator::ICustVibrator>> g_aidlVibrator;
SharedHandle<sp<vendor::zentel::hardware::camera::vaelon::IVAELONServiceCallBack>> g_aidlVaelonNotifier;

namespace {

// The session callback handed to createSession; this client never sets one.
const std::shared_ptr<aidl::android::hardware::biometrics::fingerprint::ISessionCallback> g_aidlFingerprintCallback;

std::recursive_mutex g_connectionLock;

// Shared by every libbinder family; created by the first successful link. Guarded by
// g_connectionLock.
sp<IBinder::DeathRecipient> g_deathNotifier;

std::mutex g_callbackTargetLock;
JavaCallbackTarget g_callbackTarget;
int g_callbackUses = 0;  // events using a copy of the target right now
std::condition_variable g_callbackUsesDone;
constexpr std::chrono::seconds kCallbackDrainTimeout{5};

void RestartAidl();

// Any AIDL service died: drop every AIDL connection and connect again, waiting for the
// declared services to come back. There is no fallback to HIDL on this path.
void OnServiceDeath() {
    MMI_LOGW("ServiceDied, remote hal service died");
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    ExitMmiManager();
    RestartAidl();
}

class DeathNotifier : public IBinder::DeathRecipient {
public:
    void binderDied(const wp<IBinder>& /*who*/) override { OnServiceDeath(); }
};

void ServiceDied(void* /*cookie*/) { OnServiceDeath(); }

void LinkToDeath(const sp<IBinder>& binder) {
    if (g_deathNotifier == nullptr) g_deathNotifier = new DeathNotifier();
    binder->linkToDeath(g_deathNotifier, nullptr, 0);
}

bool ReportAidlVersion(const char* name, bool isSet) {
    MMI_LOGI("%s", name);
    if (isSet) MMI_LOGI("%s, true", name);
    return isSet;
}

// Connects one libbinder family: waits for its declared service, publishes the handle and
// links it to death. A family already connected is left as it is.
template <typename Interface>
bool InitFamily(const char* initName, const char* handleName, SharedHandle<sp<Interface>>& handle,
                const char* instance) {
    MMI_LOGI("%s", initName);
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    if (handle.isSet()) return true;
    sp<Interface> service =
            android::waitForDeclaredService<Interface>(Interface::descriptor + String16("/") + String16(instance));
    handle.set(service);
    if (service == nullptr) {
        MMI_LOGE("%s: %s is null", kLogPrefix, handleName);
        return false;
    }
    MMI_LOGI("%s: %s init success", kLogPrefix, handleName);
    LinkToDeath(IInterface::asBinder(service));
    return true;
}

template <typename Interface>
void Detach(SharedHandle<sp<Interface>>& handle) {
    sp<Interface> service = handle.take();
    if (service == nullptr) return;
    IInterface::asBinder(service)->unlinkToDeath(g_deathNotifier, nullptr, 0);
}

void DetachFingerprint() {
    std::shared_ptr<fingerprint::ISession> session = g_aidlFingerprintSession.take();
    if (session == nullptr) return;  // the IFingerprint handle stays as it is
    AIBinder_unlinkToDeath(session->asBinder().get(), g_deathRecipient.get(), session.get());
    g_aidlFingerprint.set(nullptr);
}

void RestartAidl() {
    MMI_LOGE("RestartAidl");
    InitFactoryInterface();
    InitDisplay();
    InitTouchScreen();
    InitFingerprint();
    InitSensor();
    InitPower();
    InitLight();
    InitVaelon();
    InitVibrator();
}

}  // namespace

bool InitFactoryInterface() {
    return InitFamily("InitFactoryInterface", "g_aidlFactoryInterface", g_aidlFactoryInterface,
                      "hwfactoryinterface_hal");
}
bool InitDisplay() { return InitFamily("InitDisplay", "g_aidlDisplay", g_aidlDisplay, "default"); }
bool InitTouchScreen() { return InitFamily("InitTouchScreen", "g_aidlTouchScreen", g_aidlTouchScreen, "default"); }
bool InitSensor() { return InitFamily("InitSensor", "g_aidlSensors", g_aidlSensors, "default"); }
bool InitPower() { return InitFamily("InitPower", "g_aidlPower", g_aidlPower, "default"); }
bool InitLight() { return InitFamily("InitLight", "g_aidlLight", g_aidlLight, "default"); }
void InitVaelon() { InitFamily("InitVaelon", "g_aidlVaelon", g_aidlVaelon, "default"); }

bool InitFingerprint() {
    MMI_LOGI("InitFingerprint");
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    if (g_aidlFingerprint.isSet()) return true;
    const std::string name = std::string(fingerprint::IFingerprint::descriptor) + "/default";
    if (!AServiceManager_isDeclared(name.c_str())) {
        MMI_LOGE("%s is not Declared\n", name.c_str());
        return false;
    }
    ndk::SpAIBinder binder(AServiceManager_waitForService(name.c_str()));
    if (binder.get() == nullptr) {
        MMI_LOGE("%s: Could not connect to declared sensors AIDL HAL", kLogPrefix);
        return false;
    }
    std::shared_ptr<fingerprint::IFingerprint> service = fingerprint::IFingerprint::fromBinder(binder);
    g_aidlFingerprint.set(service);
    std::shared_ptr<fingerprint::ISession> session;
    if (service != nullptr) service->createSession(-1, -1000, g_aidlFingerprintCallback, &session);
    g_aidlFingerprintSession.set(session);
    if (!IsFingerprintAidlVersion()) {
        MMI_LOGE("%s: g_aidlFingerprintSession is null", kLogPrefix);
        return false;
    }
    MMI_LOGI("%s: g_aidlFingerprintSession init success", kLogPrefix);
    AIBinder_linkToDeath(session->asBinder().get(), g_deathRecipient.get(), session.get());
    return true;
}

void InitVibrator() {
    MMI_LOGI("InitVibrator");
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    if (g_aidlVibrator.isSet()) return;
    using android::hardware::vibrator::IVibrator;
    sp<IVibrator> vibrator = android::waitForDeclaredService<IVibrator>(IVibrator::descriptor + String16("/default"));
    if (vibrator == nullptr) {
        MMI_LOGE("InitVibrator failed to get IVibrator");
        return;
    }
    sp<IBinder> extension;
    if (IInterface::asBinder(vibrator)->getExtension(&extension) != android::OK || extension == nullptr) {
        MMI_LOGE("InitVibrator failed to get IBinder");
        return;
    }
    auto service = android::checked_interface_cast<vendor::zentel::hardware::vibrator::ICustVibrator>(extension);
    g_aidlVibrator.set(service);
    if (service == nullptr) {
        MMI_LOGE("%s: g_aidlVibrator is null", kLogPrefix);
        return;
    }
    MMI_LOGI("%s: g_aidlVibrator init success", kLogPrefix);
    LinkToDeath(IInterface::asBinder(service));
}

bool IsFactoryInterfaceAidlVersion() {
    return ReportAidlVersion("isFactoryInterfaceAidlVersion", g_aidlFactoryInterface.isSet());
}
bool IsDisplayAidlVersion() { return ReportAidlVersion("IsDisplayAidlVersion", g_aidlDisplay.isSet()); }
bool IsTouchScreenAidlVersion() { return ReportAidlVersion("IsTouchScreenAidlVersion", g_aidlTouchScreen.isSet()); }
bool IsFingerprintAidlVersion() {
    return ReportAidlVersion("IsFingerprintAidlVersion", g_aidlFingerprintSession.isSet());
}
bool IsSensorAidlVersion() { return ReportAidlVersion("IsSensorAidlVersion", g_aidlSensors.isSet()); }
bool IsPowerAidlVersion() { return ReportAidlVersion("IsPowerAidlVersion", g_aidlPower.isSet()); }
bool IsLightAidlVersion() { return ReportAidlVersion("IsLightAidlVersion", g_aidlLight.isSet()); }
bool IsVaelonAidlVersion() { return ReportAidlVersion("IsVaelonAidlVersion", g_aidlVaelon.isSet()); }
bool IsVibratorAidlVersion() { return ReportAidlVersion("IsVibratorAidlVersion", g_aidlVibrator.isSet()); }

void ExitMmiManager() {
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    MMI_LOGI("%s: ExitMmiManager", kLogPrefix);
    MMI_LOGI("%s: ExitFactoryInterface", kLogPrefix);
    Detach(g_aidlFactoryInterface);
    MMI_LOGI("%s: ExitDisplay", kLogPrefix);
    Detach(g_aidlDisplay);
    MMI_LOGI("%s: ExitTouchScreen", kLogPrefix);
    Detach(g_aidlTouchScreen);
    MMI_LOGI("%s: ExitFingerprint", kLogPrefix);
    DetachFingerprint();
    MMI_LOGI("%s: ExitSensors", kLogPrefix);
    Detach(g_aidlSensors);
    MMI_LOGI("%s: ExitPower", kLogPrefix);
    Detach(g_aidlPower);
    MMI_LOGI("%s: ExitLight", kLogPrefix);
    Detach(g_aidlLight);
    MMI_LOGI("%s: ExitVaelon", kLogPrefix);
    Detach(g_aidlVaelon);
    MMI_LOGI("%s: ExitVibrator", kLogPrefix);
    Detach(g_aidlVibrator);
}

JavaCallbackUse::JavaCallbackUse() {
    std::lock_guard<std::mutex> lock(g_callbackTargetLock);
    mTarget = g_callbackTarget;
    ++g_callbackUses;
}

JavaCallbackUse::~JavaCallbackUse() {
    std::lock_guard<std::mutex> lock(g_callbackTargetLock);
    --g_callbackUses;
    g_callbackUsesDone.notify_all();
}

JavaCallbackTarget ExchangeJavaCallbackTarget(JavaCallbackTarget target) {
    std::lock_guard<std::mutex> lock(g_callbackTargetLock);
    std::swap(g_callbackTarget, target);
    return target;
}

void ReleaseGlobalValue(JNIEnv* env) {
    MMI_LOGI("%s: ReleaseGlobalValue", kLogPrefix);
    g_aidlVaelonNotifier.set(nullptr);
    JavaCallbackTarget previous;
    bool unused = false;
    {
        std::unique_lock<std::mutex> lock(g_callbackTargetLock);
        std::swap(previous, g_callbackTarget);
        // An event still in Java keeps using the class; it is deleted only once none is.
        unused = g_callbackUsesDone.wait_for(lock, kCallbackDrainTimeout, [] { return g_callbackUses == 0; });
    }
    if (previous.nativeClass == nullptr) return;
    if (unused) {
        env->DeleteGlobalRef(previous.nativeClass);
    } else {
        MMI_LOGE("%s: ReleaseGlobalValue, a camera event is still in Java, its class reference is kept", kLogPrefix);
    }
}

}  // namespace native_aidl
