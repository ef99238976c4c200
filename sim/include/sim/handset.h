// The simulated handset: fake hardware services of both generations behind the in-process
// service managers, with scripted answers, recorded calls, deaths and restarts.
#pragma once

#include <sim/answers.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <vendor/zentel/hardware/hwfactoryinterface/IHwFactoryInterface.h>

namespace mmisim {

enum class Family { kFactory, kDisplay, kTouchScreen, kFingerprint, kSensors, kPower, kLight, kVaelon, kVibrator };
constexpr std::array<Family, 9> kAllFamilies = {Family::kFactory, Family::kDisplay, Family::kTouchScreen,
                                                Family::kFingerprint, Family::kSensors, Family::kPower,
                                                Family::kLight, Family::kVaelon, Family::kVibrator};

const char* FamilyName(Family family);
std::optional<Family> FamilyFromName(const std::string& name);

enum class Transport { kNone, kAidl, kHidl };

// What the vibrator service's binder extension is.
enum class VibratorExtension { kCustVibrator, kNone, kOtherInterface };

struct FamilyConfig {
    Transport transport = Transport::kNone;
    // HIDL: the newest minor version served (factory 0-1, display 0-5, sensors 0-2,
    // fingerprint 1-2); -1 serves the newest one.
    int hidlMinor = -1;
    // AIDL: declared in the manifest but not running until Start().
    bool declaredNotStarted = false;
    // Started only this long after someone begins to wait for the service (over AIDL, a
    // lookup blocked in waitForService; HIDL services are not waited for, so: this long
    // after the handset was configured). 0: at once.
    int32_t lateStartMs = 0;
    // HIDL sensors: the 1.x service and the 2.0 service run separately.
    bool sensorsV1 = true;
    bool sensorsV2 = true;
    // AIDL fingerprint: createSession hands back no session.
    bool fingerprintNoSession = false;
    VibratorExtension vibratorExtension = VibratorExtension::kCustVibrator;
};

struct DeviceProfile {
    std::string name;
    std::array<FamilyConfig, kAllFamilies.size()> families{};

    FamilyConfig& operator[](Family family) { return families[static_cast<size_t>(family)]; }
    const FamilyConfig& operator[](Family family) const { return families[static_cast<size_t>(family)]; }

    // Every family over AIDL (the camera and the vibrator exist only there).
    static DeviceProfile AllAidl();
    // Every family over HIDL with its newest minor versions; camera and vibrator absent.
    static DeviceProfile AllHidl();
    // No service at all.
    static DeviceProfile Bare();
};

// Big-data records the factory service received, in the AIDL record form (HIDL records
// are copied into it field by field; the AIDL-only spare fields stay empty for them).
struct FactoryInbox {
    std::vector<vendor::zentel::hardware::hwfactoryinterface::FmdCmdData> cmdData;
    std::vector<vendor::zentel::hardware::hwfactoryinterface::FmdMsg> messages;
};

class Handset {
public:
    static Handset& Get();

    // Forgets every service, answer and record, then starts the profile's services. Script
    // answers after this: it resets them to their defaults.
    void Configure(const DeviceProfile& profile);
    const DeviceProfile& profile() const { return mProfile; }

    // Kills the family's service processes: calls fail and death notices go out.
    void Kill(Family family);
    // Starts the family's services as the profile says (also one declared but not started).
    void Start(Family family);
    bool IsRunning(Family family) const;
    // Starts the family's services `delay` after someone begins to wait for them (see
    // FamilyConfig::lateStartMs) and returns at once. Configure or Start of the family
    // cancels it.
    void StartLater(Family family, std::chrono::milliseconds delay);
    // The application's process ended: the services drop the client binders they hold.
    void ForgetClients();

    FamilyState<FactoryAnswers>& factory() { return mFactory; }
    FamilyState<DisplayAnswers>& display() { return mDisplay; }
    FamilyState<TouchScreenAnswers>& touchScreen() { return mTouchScreen; }
    FamilyState<FingerprintAnswers>& fingerprint() { return mFingerprint; }
    FamilyState<SensorAnswers>& sensors() { return mSensors; }
    FamilyState<PowerAnswers>& power() { return mPower; }
    FamilyState<LightAnswers>& light() { return mLight; }
    FamilyState<VaelonAnswers>& vaelon() { return mVaelon; }
    FamilyState<VibratorAnswers>& vibrator() { return mVibrator; }

    // Runs function(state) on the family's FamilyState and returns what it returns.
    template <typename Function>
    decltype(auto) visit(Family family, Function&& function) {
        switch (family) {
            case Family::kFactory: return function(mFactory);
            case Family::kDisplay: return function(mDisplay);
            case Family::kTouchScreen: return function(mTouchScreen);
            case Family::kFingerprint: return function(mFingerprint);
            case Family::kSensors: return function(mSensors);
            case Family::kPower: return function(mPower);
            case Family::kLight: return function(mLight);
            case Family::kVaelon: return function(mVaelon);
            case Family::kVibrator: break;
        }
        return function(mVibrator);
    }

    // The faults of a family's services, as FamilyState::faults/setFaults.
    ServiceFaults faults(Family family) { return visit(family, [](auto& state) { return state.faults(); }); }
    void setFaults(Family family, const ServiceFaults& faults) {
        visit(family, [&faults](auto& state) { state.setFaults(faults); });
    }
    // The calls a family's services received, in order.
    std::vector<Call> calls(Family family) { return visit(family, [](auto& state) { return state.calls(); }); }

    // Makes the camera service report an event to its registered client, from a thread the
    // service owns; onThreadStart and onThreadEnd run on that thread around the call (to
    // attach it to a Java VM, for example). Returns once the event was handled; false when
    // the service is not running or no client is registered.
    bool NotifyVaelonEvent(int32_t serviceResult, const std::function<void()>& onThreadStart = {},
                           const std::function<void()>& onThreadEnd = {});

    FactoryInbox factoryInbox() const;
    void ReceiveFmd(const vendor::zentel::hardware::hwfactoryinterface::FmdCmdData& data);
    void ReceiveFmd(const vendor::zentel::hardware::hwfactoryinterface::FmdMsg& message);

    // The AIDL service name a family is looked up under.
    static std::string AidlServiceName(Family family);

    struct Running;  // the live service objects of one family

private:
    Handset();
    void StartLocked(Family family);
    void KillLocked(Family family);

    void StartLaterLocked(Family family, std::chrono::milliseconds delay);
    void CancelLateStartLocked(Family family);

    mutable std::mutex mLock;
    DeviceProfile mProfile;
    std::array<std::shared_ptr<Running>, kAllFamilies.size()> mRunning{};
    // Per family, the ticket of the late start in force; a new ticket cancels the others.
    std::array<uint64_t, kAllFamilies.size()> mLateStart{};
    std::condition_variable mLateStartChanged;

    FamilyState<FactoryAnswers> mFactory;
    FamilyState<DisplayAnswers> mDisplay;
    FamilyState<TouchScreenAnswers> mTouchScreen;
    FamilyState<FingerprintAnswers> mFingerprint;
    FamilyState<SensorAnswers> mSensors;
    FamilyState<PowerAnswers> mPower;
    FamilyState<LightAnswers> mLight;
    FamilyState<VaelonAnswers> mVaelon;
    FamilyState<VibratorAnswers> mVibrator;

    mutable std::mutex mInboxLock;
    FactoryInbox mInbox;
};

}  // namespace mmisim
