// Connections of the HIDL backend. One HidlUtil object is both the death recipient and the
// registration listener of every family: a death disconnects all HIDL families, and a new
// (not pre-existing) registration reconnects whatever can be got.
//
// One lock serialises connecting and disconnecting; operations never take it.
#include "mmi_hidl_manager.h"

#include <hidlutil/HidlUtil.h>
#include <mmi_log.h>

#include <mutex>

#include "hidl_handles.h"

using android::sp;
using mmi::kLogPrefix;

namespace native_hidl {

SharedHandle<sp<hw::hwfactoryinterface::V1_0::IHwFactoryInterface>> g_hwFactoryInterface;
SharedHandle<sp<hw::hwdisplay::V1_0::IDisplay>> g_hwDisplay;
SharedHandle<sp<hw::tp::V1_0::ITouchscreen>> g_hwTouchScreen;
SharedHandle<sp<hw::biometrics::fingerprint::V2_2::IExtBiometricsFingerprint>> g_hwFingerprint;
SharedHandle<sp<hw::sensors::V1_0::ISensors>> g_hwSensors;
SharedHandle<sp<hw::power::V1_0::IHWPower>> g_hwPower;
SharedHandle<sp<hw::light::V2_0::ILight>> g_hwLight;
SharedHandle<sp<hw::sensors::V2_0::ISensors>> g_zentelSensors;

namespace {

std::recursive_mutex g_connectionLock;

// Created by the first connected family and kept for the life of the process, registered
// for notices. Guarded by g_connectionLock.
sp<android::HidlUtil> g_hidlUtil;

void ProcessServiceDied(uint64_t cookie, const android::wp<android::hidl::base::V1_0::IBase>& /*who*/) {
    MMI_LOGW("%s: ProcessServiceDied, cookie is:%llu", kLogPrefix, static_cast<unsigned long long>(cookie));
    ExitMmiManager();
}

void ReinitHal(const std::string& fqName, const std::string& name, bool preexisting) {
    MMI_LOGW("%s: ReinitHal, fqName:%s, name:%s, isPreexisting:%d", kLogPrefix, fqName.c_str(), name.c_str(),
             preexisting);
    if (preexisting) return;
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    InitFactoryInterface();
    InitDisplay();
    InitTouchScreen();
    InitFingerprint();
    InitSensor();
    InitPower();
    InitLight();
    InitSensorsV20();
}

enum class LinkLine { kPrefixed, kBare };

// Connects one family: gets its service, links it to death and listens for registrations
// of `Listened` (the family's own interface, except for fingerprint). A family already
// connected is left as it is.
template <typename Interface, typename Listened = Interface>
void InitFamily(const char* startLine, const char* handleName, SharedHandle<sp<Interface>>& handle,
                const char* instance, uint64_t cookie, LinkLine linkLine = LinkLine::kPrefixed) {
    MMI_LOGI("%s", startLine);
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    if (handle.isSet()) return;
    sp<Interface> service = Interface::getService(instance, false);
    handle.set(service);
    if (service == nullptr) {
        MMI_LOGE("%s: %s is nullptr", kLogPrefix, handleName);
        return;
    }
    if (linkLine == LinkLine::kPrefixed) {
        MMI_LOGI("%s: %s linkToDeath", kLogPrefix, handleName);
    } else {
        MMI_LOGI("%s linkToDeath", handleName);
    }
    if (g_hidlUtil == nullptr) g_hidlUtil = new android::HidlUtil(ProcessServiceDied, ReinitHal);
    service->linkToDeath(g_hidlUtil, cookie).isOk();
    Listened::registerForNotifications("", g_hidlUtil);
}

template <typename Interface>
void Detach(SharedHandle<sp<Interface>>& handle) {
    sp<Interface> service = handle.take();
    if (service != nullptr) service->unlinkToDeath(g_hidlUtil).isOk();
}

}  // namespace

void InitFactoryInterface() {
    InitFamily("InitFactoryInterface by hidl", "g_hwFactoryInterface", g_hwFactoryInterface, "hwfactoryinterface_hal",
               1);
}
void InitDisplay() { InitFamily("InitDisplay by hidl", "g_hwDisplay", g_hwDisplay, "default", 2); }
void InitTouchScreen() { InitFamily("InitTouchScreen by hidl", "g_hwTouchScreen", g_hwTouchScreen, "default", 3); }
void InitFingerprint() {
    // Listens for touch-screen registrations; the fingerprint family has always done so.
    InitFamily<hw::biometrics::fingerprint::V2_2::IExtBiometricsFingerprint, hw::tp::V1_0::ITouchscreen>(
            "InitFingerprint by hidl", "g_hwFingerprint", g_hwFingerprint, "default", 3);
}
void InitSensor() { InitFamily("InitSensor by hidl", "g_hwSensors", g_hwSensors, "default", 4); }
void InitPower() { InitFamily("InitPower by hidl", "g_hwPower", g_hwPower, "default", 5); }
void InitLight() { InitFamily("InitLight by hidl", "g_hwLight", g_hwLight, "default", 6, LinkLine::kBare); }
void InitSensorsV20() { InitFamily("InitSensorsV20 by hidl", "g_zentelSensors", g_zentelSensors, "default", 8); }

void ExitMmiManager() {
    std::lock_guard<std::recursive_mutex> lock(g_connectionLock);
    MMI_LOGI("%s: ExitMmiManager by hidl", kLogPrefix);
    Detach(g_hwFactoryInterface);
    Detach(g_hwDisplay);
    Detach(g_hwTouchScreen);
    Detach(g_hwFingerprint);
    Detach(g_hwSensors);
    Detach(g_hwPower);
    Detach(g_hwLight);
    Detach(g_zentelSensors);
    ClosePanelLibrary();
}

}  // namespace native_hidl
