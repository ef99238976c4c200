#include <sim/handset.h>

#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/IFingerprint.h>
#include <android/hardware/vibrator/IVibrator.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <utils/String8.h>
#include <vendor/zentel/hardware/camera/vaelon/IVAELONService.h>
#include <vendor/zentel/hardware/hwdisplay/IDisplay.h>
#include <vendor/zentel/hardware/light/ILight.h>
#include <vendor/zentel/hardware/power/IHWPower.h>
#include <vendor/zentel/hardware/sensors/ISensors.h>
#include <vendor/zentel/hardware/tp/ITouchscreen.h>

#include <thread>

#include "fakes.h"

namespace mmisim {

namespace {

constexpr const char* kFamilyNames[] = {"factory", "display", "touchscreen", "fingerprint", "sensors",
                                        "power",   "light",   "camera",      "vibrator"};

template <typename I>
std::string Descriptor() {
    return std::string(android::String8(I::descriptor).c_str());
}

}  // namespace

const char* FamilyName(Family family) { return kFamilyNames[static_cast<size_t>(family)]; }

std::optional<Family> FamilyFromName(const std::string& name) {
    for (Family family : kAllFamilies) {
        if (name == FamilyName(family)) return family;
    }
    return std::nullopt;
}

DeviceProfile DeviceProfile::AllAidl() {
    DeviceProfile profile;
    profile.name = "aidl";
    for (Family family : kAllFamilies) profile[family].transport = Transport::kAidl;
    return profile;
}

DeviceProfile DeviceProfile::AllHidl() {
    DeviceProfile profile;
    profile.name = "hidl";
    for (Family family : kAllFamilies) {
        const bool aidlOnly = family == Family::kVaelon || family == Family::kVibrator;
        profile[family].transport = aidlOnly ? Transport::kNone : Transport::kHidl;
    }
    return profile;
}

DeviceProfile DeviceProfile::Bare() {
    DeviceProfile profile;
    profile.name = "bare";
    return profile;
}

std::string Handset::AidlServiceName(Family family) {
    namespace hw = vendor::zentel::hardware;
    switch (family) {
        case Family::kFactory: return Descriptor<hw::hwfactoryinterface::IHwFactoryInterface>() + "/hwfactoryinterface_hal";
        case Family::kDisplay: return Descriptor<hw::hwdisplay::IDisplay>() + "/default";
        case Family::kTouchScreen: return Descriptor<hw::tp::ITouchscreen>() + "/default";
        case Family::kFingerprint:
            return std::string(aidl::vendor::zentel::hardware::biometrics::fingerprint::IFingerprint::descriptor) +
                   "/default";
        case Family::kSensors: return Descriptor<hw::sensors::ISensors>() + "/default";
        case Family::kPower: return Descriptor<hw::power::IHWPower>() + "/default";
        case Family::kLight: return Descriptor<hw::light::ILight>() + "/default";
        case Family::kVaelon: return Descriptor<hw::camera::vaelon::IVAELONService>() + "/default";
        case Family::kVibrator: return Descriptor<android::hardware::vibrator::IVibrator>() + "/default";
    }
    return {};
}

Handset& Handset::Get() {
    static Handset* handset = new Handset();  // outlives every thread that may call a fake
    return *handset;
}

Handset::Handset() = default;

void Handset::Configure(const DeviceProfile& profile) {
    std::lock_guard<std::mutex> lock(mLock);
    for (Family family : kAllFamilies) KillLocked(family);
    hostcontrol::ResetServiceManager();
    hostcontrol::ResetHidlServiceManager();
    mFactory.reset();
    mDisplay.reset();
    mTouchScreen.reset();
    mFingerprint.reset();
    mSensors.reset();
    mPower.reset();
    mLight.reset();
    mVaelon.reset();
    mVibrator.reset();
    {
        std::lock_guard<std::mutex> inboxLock(mInboxLock);
        mInbox = FactoryInbox();
    }
    mProfile = profile;
    for (Family family : kAllFamilies) {
        CancelLateStartLocked(family);
        const FamilyConfig& config = mProfile[family];
        if (config.transport == Transport::kAidl) hostcontrol::DeclareService(AidlServiceName(family));
        if (config.transport == Transport::kNone || config.declaredNotStarted) continue;
        if (config.lateStartMs > 0) {
            StartLaterLocked(family, std::chrono::milliseconds(config.lateStartMs));
        } else {
            StartLocked(family);
        }
    }
}

void Handset::Kill(Family family) {
    std::lock_guard<std::mutex> lock(mLock);
    KillLocked(family);
}

void Handset::Start(Family family) {
    std::lock_guard<std::mutex> lock(mLock);
    CancelLateStartLocked(family);
    if (mRunning[static_cast<size_t>(family)] == nullptr) StartLocked(family);
}

void Handset::StartLater(Family family, std::chrono::milliseconds delay) {
    std::lock_guard<std::mutex> lock(mLock);
    StartLaterLocked(family, delay);
}

void Handset::StartLaterLocked(Family family, std::chrono::milliseconds delay) {
    const size_t index = static_cast<size_t>(family);
    const uint64_t ticket = ++mLateStart[index];
    mLateStartChanged.notify_all();
    const bool waitedFor = mProfile[family].transport == Transport::kAidl;
    const std::string name = AidlServiceName(family);
    // A thread of the handset's (the service's init), never joined: the handset lives as
    // long as the process.
    std::thread([this, family, index, ticket, waitedFor, name, delay] {
        const auto cancelled = [&] { return mLateStart[index] != ticket; };
        if (waitedFor) {
            for (;;) {
                if (hostcontrol::WaitForWaiters(name, 1, std::chrono::milliseconds(50))) break;
                std::lock_guard<std::mutex> lock(mLock);
                if (cancelled()) return;
            }
        }
        std::unique_lock<std::mutex> lock(mLock);
        if (mLateStartChanged.wait_for(lock, delay, cancelled)) return;
        ++mLateStart[index];  // done: nothing to cancel any more
        if (mRunning[index] == nullptr) StartLocked(family);
    }).detach();
}

void Handset::CancelLateStartLocked(Family family) {
    ++mLateStart[static_cast<size_t>(family)];
    mLateStartChanged.notify_all();
}

void Handset::ForgetClients() {
    std::lock_guard<std::mutex> lock(mLock);
    for (const auto& running : mRunning) {
        if (running != nullptr && running->forgetClients) running->forgetClients();
    }
}

bool Handset::IsRunning(Family family) const {
    std::lock_guard<std::mutex> lock(mLock);
    return mRunning[static_cast<size_t>(family)] != nullptr;
}

void Handset::StartLocked(Family family) {
    const FamilyConfig& config = mProfile[family];
    std::shared_ptr<Running>& slot = mRunning[static_cast<size_t>(family)];
    if (config.transport == Transport::kAidl) slot = StartAidlFamily(*this, family, config);
    if (config.transport == Transport::kHidl) slot = StartHidlFamily(*this, family, config);
}

void Handset::KillLocked(Family family) {
    std::shared_ptr<Running> running = std::move(mRunning[static_cast<size_t>(family)]);
    if (running != nullptr && running->kill) running->kill();
}

bool Handset::NotifyVaelonEvent(int32_t serviceResult, const std::function<void()>& onThreadStart,
                                const std::function<void()>& onThreadEnd) {
    std::shared_ptr<Running> running;
    {
        std::lock_guard<std::mutex> lock(mLock);
        running = mRunning[static_cast<size_t>(Family::kVaelon)];
    }
    if (running == nullptr || !running->notifyVaelon) return false;
    return running->notifyVaelon(serviceResult, onThreadStart, onThreadEnd);
}

FactoryInbox Handset::factoryInbox() const {
    std::lock_guard<std::mutex> lock(mInboxLock);
    return mInbox;
}

void Handset::ReceiveFmd(const vendor::zentel::hardware::hwfactoryinterface::FmdCmdData& data) {
    std::lock_guard<std::mutex> lock(mInboxLock);
    mInbox.cmdData.push_back(data);
}

void Handset::ReceiveFmd(const vendor::zentel::hardware::hwfactoryinterface::FmdMsg& message) {
    std::lock_guard<std::mutex> lock(mInboxLock);
    mInbox.messages.push_back(message);
}

}  // namespace mmisim
