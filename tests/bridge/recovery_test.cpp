// Service deaths and returns: the AIDL backend drops every family and reconnects them all,
// waiting for declared services; the HIDL backend drops every family and reconnects when a
// service registers anew.
#include <binder/IServiceManager.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <vendor/zentel/hardware/light/2.0/ILight.h>

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

#include "jvm.h"
#include "mmi_fixture.h"
#include "native_methods.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;

constexpr const char* kServiceDied = "ServiceDied, remote hal service died";

class AidlRecoveryTest : public MmiTest {
protected:
    // JNI_OnLoad on a thread of its own, on a handset whose `family` is declared but not up; it
    // waits there for the service, connecting nothing after it meanwhile, until `release` runs.
    jint LoadWhileWaitingFor(Family family, const std::function<void()>& release) {
        DeviceProfile profile = DeviceProfile::AllAidl();
        profile[family].declaredNotStarted = true;
        mmisim::Handset::Get().Configure(profile);
        jint loaded = 0;
        std::thread loader([&] {
            Jvm::Get().Env();  // attaches the thread
            loaded = CallOnLoad(Jvm::Get().vm());
            Jvm::Get().vm()->DetachCurrentThread();
        });
        EXPECT_TRUE(hostcontrol::WaitForWaiters(mmisim::Handset::AidlServiceName(family), 1, kNoticeTimeout));
        release();
        loader.join();
        return loaded;
    }
};

TEST_F(AidlRecoveryTest, OneDeathDropsAndReconnectsAllNineFamilies) {
    Boot(DeviceProfile::AllAidl());
    handset().Kill(Family::kLight);
    ASSERT_TRUE(WaitFor(kError, "RestartAidl"));
    // The recovery waits for the dead service; families after it in the order wait too.
    ASSERT_TRUE(WaitFor(kInfo, "InitLight"));
    EXPECT_FALSE(Has(kInfo, "InitVaelon"));
    EXPECT_EQ(Int("setLightBrightnessNative", "(II)I", 2, 100), -1);
    EXPECT_TRUE(Has(kInfo, "SetLightBrightness, Hidl Called"));

    handset().Start(Family::kLight);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlVibrator init success")));
    ASSERT_TRUE(NoticesDelivered());
    EXPECT_EQ(Count(kWarn, kServiceDied), 1);
    EXPECT_EQ(Messages(kInfo, Prefixed("Exit")),
              (std::vector<std::string>{Prefixed("ExitMmiManager"), Prefixed("ExitFactoryInterface"),
                                        Prefixed("ExitDisplay"), Prefixed("ExitTouchScreen"),
                                        Prefixed("ExitFingerprint"), Prefixed("ExitSensors"), Prefixed("ExitPower"),
                                        Prefixed("ExitLight"), Prefixed("ExitVaelon"), Prefixed("ExitVibrator")}));
    for (const char* handle : {"g_aidlFactoryInterface", "g_aidlDisplay", "g_aidlTouchScreen",
                               "g_aidlFingerprintSession", "g_aidlSensors", "g_aidlPower", "g_aidlLight",
                               "g_aidlVaelon", "g_aidlVibrator"}) {
        EXPECT_EQ(Count(kInfo, Prefixed(std::string(handle) + " init success")), 1) << handle;
    }
    // No HIDL fallback on this path.
    const std::vector<std::string> inits = Messages(kInfo, "Init");
    EXPECT_TRUE(std::none_of(inits.begin(), inits.end(),
                             [](const std::string& m) { return m.find("by hidl") != std::string::npos; }));
    Mark();
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    EXPECT_TRUE(Has(kInfo, "GetBsn, Aidl Called"));
}

// A device's binder thread pool hands a death notice to a free thread at once, also while
// another thread's recovery waits for a service.
TEST_F(AidlRecoveryTest, ASecondDeathIsDeliveredWhileARecoveryWaits) {
    Boot(DeviceProfile::AllAidl());
    handset().Kill(Family::kDisplay);
    // The recovery reconnected the factory interface and now waits for the display.
    ASSERT_TRUE(hostcontrol::WaitForWaiters(mmisim::Handset::AidlServiceName(Family::kDisplay), 1, kNoticeTimeout));
    Mark();
    handset().Kill(Family::kFactory);
    EXPECT_TRUE(WaitFor(kWarn, kServiceDied));
    handset().Start(Family::kFactory);
    handset().Start(Family::kDisplay);
    ASSERT_TRUE(NoticesDelivered());
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    EXPECT_EQ(Str("getScreenCurrentFpsNative", "()Ljava/lang/String;"), "60");
}

TEST_F(AidlRecoveryTest, FingerprintSessionDeathAlsoRecovers) {
    Boot(DeviceProfile::AllAidl());
    handset().Kill(Family::kFingerprint);
    ASSERT_TRUE(WaitFor(kInfo, "InitFingerprint"));
    handset().Start(Family::kFingerprint);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlVibrator init success")));
    ASSERT_TRUE(NoticesDelivered());
    // The service and its session died together: one notice from the session link.
    EXPECT_EQ(Count(kWarn, kServiceDied), 1);
    EXPECT_EQ(Count(kInfo, Prefixed("g_aidlFingerprintSession init success")), 1);
    EXPECT_EQ(handset().fingerprint().callsTo("createSession").size(), 2u);
}

TEST_F(AidlRecoveryTest, LoadingAgainWhileConnectedLinksNothingTwice) {
    Boot(DeviceProfile::AllAidl());
    ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    EXPECT_EQ(Count(kInfo, Prefixed("g_aidlDisplay init success")), 0);
    EXPECT_EQ(LinesWithPriority(kError), std::vector<Line>{}) << "a connected family was tried over HIDL";
    handset().Kill(Family::kDisplay);
    handset().Start(Family::kDisplay);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlVibrator init success")));
    ASSERT_TRUE(NoticesDelivered());
    EXPECT_EQ(Count(kWarn, kServiceDied), 1);
}

TEST_F(AidlRecoveryTest, LoadWaitsForADeclaredServiceThatIsLate) {
    Boot(DeviceProfile::AllAidl());
    CallOnUnload(Jvm::Get().vm());
    Mark();
    EXPECT_EQ(LoadWhileWaitingFor(Family::kDisplay,
                                  [&] {
                                      EXPECT_FALSE(Has(kInfo, "InitTouchScreen"));
                                      handset().Start(Family::kDisplay);
                                  }),
              0x10004);
    EXPECT_EQ(Count(kInfo, Prefixed("g_aidlDisplay init success")), 1);
    EXPECT_EQ(Str("getScreenCurrentFpsNative", "()Ljava/lang/String;"), "60");
    // A declared service that never comes (the wait ends without one) is reported.
    CallOnUnload(Jvm::Get().vm());
    Mark();
    EXPECT_EQ(LoadWhileWaitingFor(Family::kFingerprint, [] { hostcontrol::ResetServiceManager(); }), 0x10004);
    EXPECT_EQ(Count(kError, Prefixed("Could not connect to declared sensors AIDL HAL")), 1);
    EXPECT_TRUE(Has(kInfo, "InitFingerprint by hidl"));
}

// Every family of a handset dies and comes back twenty times in one process, and the
// library recovers every time. A family's service objects die together and leave the
// service manager before any notice goes out, so a recovery never finds a dying service
// (the vibrator's base service and its extension), and a dead binder answers nothing, not
// even getExtension.
class RepeatedDeathTest : public BackendTest {
protected:
    // The cookie each HIDL family's death link carries (the fingerprint family shares the
    // touch screen's).
    const std::map<Family, int> kCookies = {{Family::kFactory, 1}, {Family::kDisplay, 2}, {Family::kTouchScreen, 3},
                                            {Family::kFingerprint, 3}, {Family::kSensors, 4}, {Family::kPower, 5},
                                            {Family::kLight, 6}};
    // Whether every method of each served family gave its service's answer (the table's).
    std::map<Family, bool> Served(NativeCalls& calls) {
        std::map<Family, bool> served;
        for (size_t i = 0; i < NativeMethods().size(); ++i) {
            const NativeMethod& m = NativeMethods()[i];
            if (!m.family || handset().profile()[*m.family].transport != GetParam()) continue;
            const bool answered = calls.Call(i) == (!aidl() && m.hidlServed ? m.hidlServed : m.served);
            served[*m.family] = served.emplace(*m.family, true).first->second && answered;
        }
        return served;
    }

    // Kills the family and waits until the library has handled the death.
    void KillAndAwaitDeath(Family family) {
        android::sp<android::IBinder> vibratorBase;
        if (family == Family::kVibrator) {
            vibratorBase = android::defaultServiceManager()->checkService(
                    android::String16(mmisim::Handset::AidlServiceName(family).c_str()));
        }
        handset().Kill(family);
        if (vibratorBase != nullptr) {
            android::sp<android::IBinder> extension;
            EXPECT_EQ(vibratorBase->getExtension(&extension), android::DEAD_OBJECT);
            EXPECT_EQ(extension, nullptr);
        }
        // Over AIDL the recovery then waits for the service; over HIDL the handles are dropped.
        EXPECT_TRUE(aidl() ? hostcontrol::WaitForWaiters(mmisim::Handset::AidlServiceName(family), 1, kNoticeTimeout)
                           : NoticesDelivered())
                << mmisim::FamilyName(family);
    }
};

TEST_P(RepeatedDeathTest, EveryFamilyDiesAndComesBackTwentyTimes) {
    const DeviceProfile profile = EveryFamilyOver(GetParam());
    Boot(profile);
    ScriptAnswers(handset(), profile);
    NativeCalls calls(mEnv, mManager);
    bool connected = true;
    for (int round = 0; round < 20 && !HasFailure(); ++round) {
        for (Family family : mmisim::kAllFamilies) {
            if (profile[family].transport == mmisim::Transport::kNone) continue;
            Mark();
            KillAndAwaitDeath(family);
            if (!aidl() && connected) {
                // One HIDL death clears every HIDL family until a service registers anew.
                EXPECT_TRUE(Has(kWarn, Prefixed("ProcessServiceDied, cookie is:" + std::to_string(kCookies.at(family)))))
                        << mmisim::FamilyName(family);
                for (const auto& [answered, fromService] : Served(calls)) {
                    EXPECT_FALSE(fromService) << mmisim::FamilyName(family) << " died: " << mmisim::FamilyName(answered);
                }
            }
            handset().Start(family);
            ASSERT_TRUE(NoticesDelivered());
            // Over HIDL the fingerprint family listens for touch-screen registrations: a
            // fingerprint service coming back alone reconnects nothing, the next family's
            // return reconnects everything.
            connected = aidl() || family != Family::kFingerprint;
            for (const auto& [answered, fromService] : Served(calls)) {
                EXPECT_EQ(fromService, connected) << "round " << round << ", after " << mmisim::FamilyName(family)
                                                    << " came back: " << mmisim::FamilyName(answered);
            }
        }
    }
}

MMI_ON_BOTH_BACKENDS(RepeatedDeathTest);

class HidlNoticeTest : public MmiTest {};

// A listener of the test's own that keeps the thread delivering its first notice until
// released (at the latest after three notice timeouts, longer than any wait of the test).
class HeldListener : public android::hidl::manager::V1_0::IServiceNotification {
public:
    android::hardware::Return<void> onRegistration(const android::hardware::hidl_string&,
                                                   const android::hardware::hidl_string&, bool) override {
        std::unique_lock<std::mutex> lock(mLock);
        mHeld = true;
        mChanged.notify_all();
        mChanged.wait_for(lock, 3 * kNoticeTimeout, [this] { return mReleased; });
        return android::hardware::Void();
    }
    bool WaitHeld() {
        std::unique_lock<std::mutex> lock(mLock);
        return mChanged.wait_for(lock, kNoticeTimeout, [this] { return mHeld; });
    }
    void Release() {
        std::lock_guard<std::mutex> lock(mLock);
        mReleased = true;
        mChanged.notify_all();
    }

private:
    std::mutex mLock;
    std::condition_variable mChanged;
    bool mHeld = false;
    bool mReleased = false;
};

TEST_F(HidlNoticeTest, ADeathIsDeliveredWhileAnotherNoticeIsBeingHandled) {
    Boot(DeviceProfile::AllHidl());
    android::sp<HeldListener> listener = new HeldListener();
    ASSERT_TRUE(vendor::zentel::hardware::light::V2_0::ILight::registerForNotifications("", listener));
    ASSERT_TRUE(listener->WaitHeld());
    handset().Kill(Family::kPower);
    EXPECT_TRUE(WaitFor(kWarn, Prefixed("ProcessServiceDied, cookie is:5")));
    listener->Release();
    handset().Start(Family::kPower);
    ASSERT_TRUE(NoticesDelivered());
}

// Registrations already there when the library listens reconnect nothing; a new one
// reconnects every family, an initialiser each.
TEST_F(HidlNoticeTest, OnlyNewRegistrationsReconnect) {
    Boot(DeviceProfile::AllHidl());
    const std::vector<Line> boot = BootLines();
    EXPECT_GE(std::count_if(boot.begin(), boot.end(),
                            [](const Line& l) { return l.priority == kWarn && l.message.find("isPreexisting:1") != std::string::npos; }),
              8);
    for (const char* init : {"InitFactoryInterface by hidl", "InitDisplay by hidl", "InitLight by hidl",
                             "InitSensorsV20 by hidl"}) {
        EXPECT_EQ(std::count(boot.begin(), boot.end(), Line{kInfo, init}), 1) << init;
    }
    handset().Kill(Family::kLight);
    ASSERT_TRUE(WaitFor(kWarn, Prefixed("ProcessServiceDied, cookie is:6")));
    Mark();
    handset().Start(Family::kLight);
    ASSERT_TRUE(WaitFor(kWarn, Prefixed("ReinitHal, fqName:vendor.zentel.hardware.light@2.0::ILight, name:default, "
                                        "isPreexisting:0")));
    ASSERT_TRUE(WaitFor(kInfo, "InitSensorsV20 by hidl"));
    ASSERT_TRUE(NoticesDelivered());
    std::vector<std::string> inits;
    for (const Line& line : Lines()) {
        if (line.message.rfind("Init", 0) == 0) inits.push_back(line.message);
    }
    ASSERT_GE(inits.size(), 8u);
    EXPECT_EQ(std::vector<std::string>(inits.begin(), inits.begin() + 8),
              (std::vector<std::string>{"InitFactoryInterface by hidl", "InitDisplay by hidl", "InitTouchScreen by hidl",
                                        "InitFingerprint by hidl", "InitSensor by hidl", "InitPower by hidl",
                                        "InitLight by hidl", "InitSensorsV20 by hidl"}));
}

TEST_F(HidlNoticeTest, InitialiserOfAConnectedFamilyGetsAndLinksNothing) {
    Boot(DeviceProfile::AllHidl());
    ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    EXPECT_EQ(Count(kInfo, "InitLight by hidl"), 1);
    EXPECT_EQ(Count(kInfo, "g_hwLight linkToDeath"), 0);
    handset().Kill(Family::kLight);
    ASSERT_TRUE(WaitFor(kWarn, Prefixed("ProcessServiceDied, cookie is:6")));
    ASSERT_TRUE(NoticesDelivered());
    EXPECT_EQ(Count(kWarn, Prefixed("ProcessServiceDied, cookie is:6")), 1);
}

}  // namespace
}  // namespace mmitest
