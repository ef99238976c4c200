// Load with service faults: Java threads (8 by default) call every native method of
// MmiNativeManager continuously while a seeded schedule kills and restarts services of the
// handset, round after round. The run passes only if
//   - every call returns within a bound (a watchdog watches each one),
//   - every answer is one the library gives in some state the service can be in (its own
//     answer, the operation's fallback, the presets after a failed transaction),
//   - after the last restart of each round every family is connected again: each of the 61
//     methods gives the service's own answer once more,
//   - no Java exception reaches the callers and the JVM prints no JNI warning,
//   - memory does not grow from round to round beyond the leaks the library keeps by
//     design, which are counted (from the library's own log lines) and priced (measured
//     per kept item).
//
// MMI_STRESS_SECONDS sets the time of the load per handset (default 4), MMI_STRESS_THREADS
// the number of Java threads (default and least 8), MMI_STRESS_SEED the schedule's seed.
// A run ends within MMI_STRESS_TIME_FACTOR times its load time (set by the build, which
// gives CTest's timeout from the same figure): every wait is cut to the time left, and a
// round that cannot close in it fails with what it was waiting for.
#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <gtest/gtest.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <malloc.h>
#include <unistd.h>
#include <vendor/zentel/hardware/hwdisplay/1.0/IDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/1.0/IHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/2.0/ILight.h>
#include <vendor/zentel/hardware/power/1.0/IHWPower.h>
#include <vendor/zentel/hardware/sensors/1.0/ISensors.h>
#include <vendor/zentel/hardware/sensors/2.0/ISensors.h>
#include <vendor/zentel/hardware/tp/1.0/ITouchscreen.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "fault_schedule.h"
#include "jvm.h"
#include "mmi_fixture.h"
#include "stress_answers.h"
#include "stress_driver.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;
using mmistress::Expectation;
using mmistress::FaultSchedule;
using mmistress::FaultStep;
using mmistress::StressDriver;
using Clock = std::chrono::steady_clock;

// A call that has not returned after this long is taken as hung.
constexpr int64_t kCallBoundMillis = 10000;
// Bound of every wait on the load (calls made, workers pausing), within the run's time.
constexpr int64_t kWaitMillis = 60000;
// Lines each thread's log keeps outside the rounds, for the waits on a line. Under the load
// the run counts the lines it needs as they are written (a log observer) and the capture
// keeps none: its memory is the same however many lines the load writes, however slow the
// process is (a sanitizer's allocator) and however many notice threads the load calls up.
constexpr size_t kKeptLinesPerThread = 256;
// Least time the Java threads get to pause (each finishes the call it is in).
constexpr int64_t kPauseMillis = 2000;
// Calls between two steps of the fault schedule.
constexpr int64_t kMinGap = 200;
constexpr int64_t kMaxGap = 3000;
// Calls each round makes after its last restart, with every service up.
constexpr int64_t kTailCalls = 2000;
// Calls per measurement of what one leaked item costs, and reconnections replayed to measure
// what the service manager keeps of the library's notification registrations.
constexpr int kPricingCalls = 10000;
constexpr int kPricingReconnections = 500;
// Growth of the process's allocations over the measured rounds that the deliberate leaks
// do not explain, above which the run fails: 64 KB plus 100 B per service death.
// The load makes about a hundred calls of each method per death, so a leak of a few bytes
// per call of any one method exceeds it; runs stay within a few kilobytes (see README).
constexpr double kUnexplainedGrowthBase = 64 * 1024;
constexpr double kUnexplainedGrowthPerDeath = 100;

// A sanitizer's allocator takes malloc's place: the process's allocations cannot be read
// then, and the run checks everything but its memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMemoryMeasured = false;
#else
constexpr bool kMemoryMeasured = true;
#endif

struct Settings {
    double seconds = 4;
    int threads = 8;
    uint32_t seed = 20240501;
    int rounds = 5;  // the first is a warm-up, not measured
};

double EnvNumber(const char* name, double fallback) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') return fallback;
    char* end = nullptr;
    const double number = std::strtod(value, &end);
    return end != value && number > 0 ? number : fallback;
}

Settings SettingsFor(uint32_t handsetIndex) {
    Settings settings;
    settings.seconds = EnvNumber("MMI_STRESS_SECONDS", settings.seconds);
    settings.threads = std::max(8, static_cast<int>(EnvNumber("MMI_STRESS_THREADS", settings.threads)));
    settings.seed = static_cast<uint32_t>(EnvNumber("MMI_STRESS_SEED", settings.seed)) + handsetIndex;
    settings.rounds = std::max(5, static_cast<int>(settings.seconds / 2));
    return settings;
}

// The library's log lines that the run counts, kept by a log observer as they are written.
struct LineCounts {
    std::atomic<int64_t> vibratorSetKept{0};    // SetVibratorPar kept the command's characters
    std::atomic<int64_t> vibratorGetKept{0};    // GetVibratorResult kept the command's characters
    std::atomic<int64_t> nmCardKept{0};         // SetNmCardTestMode without service kept the mode's characters
    std::atomic<int64_t> registerCalled{0};     // RegisterClient reached the AIDL backend
    std::atomic<int64_t> registerNoService{0};  // ... and found no service there (no reference taken)
    std::atomic<int64_t> aidlDeathNotices{0};
    std::atomic<int64_t> hidlDeathNotices{0};
    std::atomic<int64_t> hidlListenerRegistrations{0};  // one per HIDL family connected
    std::atomic<int64_t> fingerprintWithoutSession{0};  // InitFingerprint found no session

    void count(const mmisim::LogEntry& entry) {
        const std::string& m = entry.message;
        auto startsWith = [&m](const char* text) { return m.rfind(text, 0) == 0; };
        if (entry.priority == kInfo) {
            if (startsWith("ZtMmiTest_jni: SetVibratorPar by aidl, strCmd = ")) ++vibratorSetKept;
            if (startsWith("ZtMmiTest_jni: GetVibratorResult by aidl, result:")) ++vibratorGetKept;
            if (m == "RegisterClient, Aidl Called") ++registerCalled;
            if (m.size() > 12 && m.compare(m.size() - 12, 12, " linkToDeath") == 0) ++hidlListenerRegistrations;
        } else if (entry.priority == kError) {
            if (m == "ZtMmiTest_jni: SetNmCardTestMode by aidl fail, g_aidlFactoryInterface is null" ||
                m == "ZtMmiTest_jni: SetNmCardTestMode by hidl fail, g_hwFactoryInterface is null") {
                ++nmCardKept;
            }
            if (m == "ZtMmiTest_jni: RegisterClient by aidl fail, g_aidlVaelon is null") ++registerNoService;
            if (m == "ZtMmiTest_jni: g_aidlFingerprintSession is null") ++fingerprintWithoutSession;
        } else if (entry.priority == kWarn) {
            if (m == "ServiceDied, remote hal service died") ++aidlDeathNotices;
            if (startsWith("ZtMmiTest_jni: ProcessServiceDied")) ++hidlDeathNotices;
        }
    }
};

// The deliberate leaks, counted up to a moment.
struct Kept {
    int64_t vibratorSet = 0;
    int64_t vibratorGet = 0;
    int64_t nmCard = 0;
    int64_t globalRefs = 0;
    // Registrations for HIDL registration notices: one per HIDL family connected (the
    // library registers again on every connection); the service manager keeps each (on a
    // device, in its own process).
    int64_t hidlRegistrations = 0;

    static Kept Of(const LineCounts& c) {
        return {c.vibratorSetKept, c.vibratorGetKept, c.nmCardKept, c.registerCalled - c.registerNoService,
                c.hidlListenerRegistrations};
    }
    Kept operator-(const Kept& o) const {
        return {vibratorSet - o.vibratorSet, vibratorGet - o.vibratorGet, nmCard - o.nmCard, globalRefs - o.globalRefs,
                hidlRegistrations - o.hidlRegistrations};
    }
};

// What one leaked item costs in process memory, measured on this run.
struct Prices {
    double vibratorSet = 0;
    double vibratorGet = 0;
    double nmCard = 0;
    double globalRef = 0;
    double registration = 0;
    double explained(const Kept& k) const {
        return k.vibratorSet * vibratorSet + k.vibratorGet * vibratorGet + k.nmCard * nmCard +
               k.globalRefs * globalRef + k.hidlRegistrations * registration;
    }
};

struct Memory {
    int64_t mallocInUse = 0;  // bytes handed out by malloc (all arenas, mmapped chunks included)
    int64_t rss = 0;
    int64_t javaHeap = 0;           // used Java heap after a collection
    int64_t javaHeapCommitted = 0;  // Java heap the VM has taken from the system
};

// A registration listener that ignores every notice: it stands for the library's in the
// measurement of what a registration costs.
class IgnoringListener : public android::hidl::manager::V1_0::IServiceNotification {
public:
    android::hardware::Return<void> onRegistration(const android::hardware::hidl_string&,
                                                   const android::hardware::hidl_string&, bool) override {
        return android::hardware::Void();
    }
};

std::string Kilobytes(double bytes) {
    char text[32];
    std::snprintf(text, sizeof(text), "%+.1f KB", bytes / 1024.0);
    return text;
}

class StressTest : public MmiTest {
protected:
    void TearDown() override {
        log().setObserver({});
        log().keepAtMost(0);
        MmiTest::TearDown();
    }

    // Milliseconds left of the run's time, at most `bound`.
    int64_t Left(int64_t bound = kWaitMillis) const {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(mDeadline - Clock::now()).count();
        return std::max<int64_t>(0, std::min<int64_t>(bound, left));
    }

    // Why a wait ended without what it waited for: the run's time is up, or the wait's own
    // bound passed.
    std::string Expired(int64_t waitedMillis) const {
        if (Left() == 0) {
            return "the run's time is up (" + std::to_string(mRunSeconds) + " s, " +
                   std::to_string(MMI_STRESS_TIME_FACTOR) + " times its load time)";
        }
        return "nothing for " + std::to_string(waitedMillis) + " ms";
    }

    // What the handset and the library were doing, for a round that could not close: the
    // services down and those the library waits for.
    std::string Situation() {
        std::string down;
        std::string awaited;
        for (Family family : mmisim::kAllFamilies) {
            if (handset().profile()[family].transport != Transport::kNone && !handset().IsRunning(family)) {
                down += std::string(down.empty() ? "" : ", ") + mmisim::FamilyName(family);
            }
            const std::string name = mmisim::Handset::AidlServiceName(family);
            if (hostcontrol::WaitersFor(name) > 0) awaited += std::string(awaited.empty() ? "" : ", ") + name;
        }
        auto listed = [](const std::string& names) { return names.empty() ? std::string("none") : names; };
        return "services down: " + listed(down) + "; the library waits for: " + listed(awaited);
    }

    // Waits until every death and registration notice has been handled (the library's
    // recoveries have ended), within the run's time.
    bool Settled(const std::string& what) {
        // A HIDL notice may post a binder notice and the other way round: settle both twice.
        const int64_t bound = Left(kNoticeTimeout.count());
        bool idle = true;
        for (int round = 0; round < 2; ++round) {
            idle = hostcontrol::WaitForHidlNotices(std::chrono::milliseconds(Left(bound))) && idle;
            idle = hostcontrol::WaitForBinderNotices(std::chrono::milliseconds(Left(bound))) && idle;
        }
        if (!idle) {
            SettleAtTearDown(false);  // the failure says what was pending
            ADD_FAILURE() << what << ": the library's recoveries did not end (" << Expired(bound) << "); "
                          << Situation();
        }
        return idle;
    }

    static int64_t Resident() {
        long pages = 0;
        long resident = 0;
        std::ifstream("/proc/self/statm") >> pages >> resident;
        return static_cast<int64_t>(resident) * sysconf(_SC_PAGESIZE);
    }

    // The process's memory after a Java collection, with the logs of threads that have ended
    // freed.
    Memory Measure() {
        log().clear();
        auto noException = [this] {
            if (!mEnv->ExceptionCheck()) return;
            mEnv->ExceptionDescribe();
            mEnv->ExceptionClear();
            ADD_FAILURE() << "measuring the Java heap threw";
        };
        jclass system = mEnv->FindClass("java/lang/System");
        jmethodID gc = mEnv->GetStaticMethodID(system, "gc", "()V");
        for (int i = 0; i < 2; ++i) {
            mEnv->CallStaticVoidMethod(system, gc);
            noException();
        }
        mEnv->DeleteLocalRef(system);
        jclass runtimeClass = mEnv->FindClass("java/lang/Runtime");
        jobject runtime = mEnv->CallStaticObjectMethod(
                runtimeClass, mEnv->GetStaticMethodID(runtimeClass, "getRuntime", "()Ljava/lang/Runtime;"));
        noException();
        const jlong total = mEnv->CallLongMethod(runtime, mEnv->GetMethodID(runtimeClass, "totalMemory", "()J"));
        noException();
        const jlong free = mEnv->CallLongMethod(runtime, mEnv->GetMethodID(runtimeClass, "freeMemory", "()J"));
        noException();
        mEnv->DeleteLocalRef(runtime);
        mEnv->DeleteLocalRef(runtimeClass);
        Memory memory;
        // Free memory goes back to the system first, so that the resident size counts what
        // is in use rather than what the allocator keeps for later.
        malloc_trim(0);
        const struct mallinfo2 info = mallinfo2();
        memory.mallocInUse = static_cast<int64_t>(info.uordblks + info.hblkhd);
        memory.rss = Resident();
        memory.javaHeap = total - free;
        memory.javaHeapCommitted = total;
        return memory;
    }

    // What one item kept by `method` costs: `kPricingCalls` calls on this thread, measured.
    double Price(StressDriver& driver, int method) {
        const Memory before = Measure();
        driver.callRepeatedly(method, kPricingCalls);
        const Memory after = Measure();
        return static_cast<double>(after.mallocInUse - before.mallocInUse) / kPricingCalls;
    }

    // Waits until the load has made `gap` more calls, within the run's time; a failure
    // (hung call, load stopped, time up) is reported with what the wait was for.
    bool Await(StressDriver& driver, int64_t gap, const std::string& what) {
        const int64_t from = driver.calls();
        const int64_t bound = Left();
        if (driver.awaitCalls(from + gap, bound)) return true;
        const std::optional<std::string> stall = driver.stall();
        if (stall) {
            ADD_FAILURE() << what << ": a call did not return: " << *stall;
        } else {
            ADD_FAILURE() << what << ": " << driver.calls() - from << " of " << gap << " calls made, "
                          << Expired(bound) << "; " << Situation();
        }
        return false;
    }

    bool Apply(StressDriver& driver, const FaultStep& step, int round) {
        const std::string what = "round " + std::to_string(round) + ", waiting for calls before " +
                                 (step.action == FaultStep::Action::kKill ? "killing " : "starting ") +
                                 mmisim::FamilyName(step.family);
        if (!Await(driver, step.afterCalls, what)) return false;
        if (step.action == FaultStep::Action::kKill) {
            handset().Kill(step.family);
        } else {
            handset().Start(step.family);
        }
        return true;
    }

    // Checks every answer of the round against what the library may answer; counts the calls and
    // those that met a service that was down or dying.
    void CheckAnswers(StressDriver& driver, const std::vector<Expectation>& expected, int round, int64_t& calls,
                      int64_t& faultAnswers) {
        for (size_t method = 0; method < expected.size(); ++method) {
            for (const auto& [count, answer] : driver.drainAnswers(static_cast<int>(method))) {
                calls += count;
                if (answer != expected[method].served) faultAnswers += count;
                if (!expected[method].allows(answer)) {
                    std::string allowed = expected[method].served;
                    for (const std::string& other : expected[method].others) allowed += " | " + other;
                    ADD_FAILURE() << "round " << round << ": " << mmistress::kMethodNames[method] << " answered "
                                  << answer << " (" << count << " times); allowed: " << allowed;
                }
            }
        }
    }

    // Every method once, with every service up: each must give its service's own answer.
    // Two states are kept by design: the panel library stays closed after the first HIDL
    // death, and a fingerprint family whose session could not be created keeps its
    // IFingerprint handle without a session for good, so its command
    // takes the HIDL path's fallback from then on.
    void ExpectEveryFamilyConnected(StressDriver& driver, const std::vector<Expectation>& expected, bool panelOpen,
                                    bool fingerprintWithoutSession, const std::string& when) {
        for (size_t method = 0; method < expected.size(); ++method) {
            const int index = static_cast<int>(method);
            std::string want = mmistress::IsPanelMethod(index) && !panelOpen ? mmistress::PanelFallback(index)
                                                                             : expected[method].served;
            if (index == mmistress::kSendCmdToFingerprintHal && fingerprintWithoutSession) want = "-1";
            EXPECT_EQ(driver.callOnce(index), want) << when << ": " << mmistress::kMethodNames[method];
        }
        EXPECT_EQ(CapacitanceFailInfo(), mmistress::kCapacitanceFailInfo) << when;
    }

    std::string CapacitanceFailInfo() {
        jclass clazz = mEnv->FindClass("com/corvex/mmitest/controller/MmiNativeManager");
        jfieldID field = mEnv->GetStaticFieldID(clazz, "sTpCapacitanceFailInfo", "Ljava/lang/String;");
        auto value = static_cast<jstring>(mEnv->GetStaticObjectField(clazz, field));
        mEnv->DeleteLocalRef(clazz);
        if (value == nullptr) return "null";
        const char* chars = mEnv->GetStringUTFChars(value, nullptr);
        std::string text(chars);
        mEnv->ReleaseStringUTFChars(value, chars);
        mEnv->DeleteLocalRef(value);
        return text;
    }

    // What the service manager keeps per registration the library makes when its HIDL
    // families connect: the same registrations (one per family served over HIDL, the
    // fingerprint family's for the touch screen) made again by a listener of the test's.
    double PriceRegistrations(const DeviceProfile& profile) {
        namespace hw = vendor::zentel::hardware;
        auto hidl = [&profile](Family family) { return profile[family].transport == Transport::kHidl; };
        android::sp<IgnoringListener> listener = new IgnoringListener();
        const Memory before = Measure();
        int64_t registrations = 0;
        for (int i = 0; i < kPricingReconnections; ++i) {
            auto add = [&registrations](bool ok) { registrations += ok ? 1 : 0; };
            if (hidl(Family::kFactory)) {
                add(hw::hwfactoryinterface::V1_0::IHwFactoryInterface::registerForNotifications("", listener));
            }
            if (hidl(Family::kDisplay)) add(hw::hwdisplay::V1_0::IDisplay::registerForNotifications("", listener));
            if (hidl(Family::kTouchScreen)) add(hw::tp::V1_0::ITouchscreen::registerForNotifications("", listener));
            if (hidl(Family::kFingerprint)) add(hw::tp::V1_0::ITouchscreen::registerForNotifications("", listener));
            if (hidl(Family::kSensors) && profile[Family::kSensors].sensorsV1) {
                add(hw::sensors::V1_0::ISensors::registerForNotifications("", listener));
            }
            if (hidl(Family::kPower)) add(hw::power::V1_0::IHWPower::registerForNotifications("", listener));
            if (hidl(Family::kLight)) add(hw::light::V2_0::ILight::registerForNotifications("", listener));
            if (hidl(Family::kSensors) && profile[Family::kSensors].sensorsV2) {
                add(hw::sensors::V2_0::ISensors::registerForNotifications("", listener));
            }
        }
        EXPECT_TRUE(NoticesDelivered());
        const Memory after = Measure();
        return registrations == 0 ? 0 : static_cast<double>(after.mallocInUse - before.mallocInUse) / registrations;
    }

    // Kills the factory service, prices what SetNmCardTestMode keeps without it, and brings
    // it back.
    double PriceNmCard(StressDriver& driver, const DeviceProfile& profile) {
        const bool aidl = profile[Family::kFactory].transport == Transport::kAidl;
        Mark();
        handset().Kill(Family::kFactory);
        // Every handle of the generation is cleared once its exit routine has run.
        EXPECT_TRUE(aidl ? WaitFor(kInfo, Prefixed("ExitVibrator"))
                         : WaitFor(kInfo, Prefixed("ExitMmiManager by hidl")));
        const double price = Price(driver, mmistress::kSetMockCardTestMode);
        handset().Start(Family::kFactory);
        EXPECT_TRUE(NoticesDelivered());
        return price;
    }

    void Run(const DeviceProfile& profile, uint32_t handsetIndex) {
        const Settings settings = SettingsFor(handsetIndex);
        mRunSeconds = static_cast<int64_t>(settings.seconds * MMI_STRESS_TIME_FACTOR);
        mDeadline = Clock::now() + std::chrono::seconds(mRunSeconds);
        log().keepAtMost(kKeptLinesPerThread);
        Boot(profile);
        mmistress::ScriptAnswers(handset(), profile);

        StressDriver driver(mEnv, mManager, settings.threads, settings.seed);
        ASSERT_TRUE(driver.ok());
        ASSERT_EQ(driver.methods(), mmistress::kMethodNames) << "the driver and the test list other methods";

        // What the library's detector makes of the scripted light, asked once before the load.
        int hidlFlicker = 0;
        if (profile[Family::kSensors].transport == Transport::kHidl) {
            hidlFlicker = Int("getFlickerFrequencyNative", "(I)I", mmistress::kFlickerSensorId);
            EXPECT_NEAR(hidlFlicker, mmistress::kFlickerLightHz, 1);
        }
        const std::vector<Expectation> expected = mmistress::ExpectedAnswers(profile, hidlFlicker);
        // The panel library is on the loader's path when the test runs under CTest.
        const bool panelPresent = driver.callOnce(mmistress::kGetVideoInterpolationDefaultModel) != "-1";
        if (!panelPresent) std::printf("[stress] the panel library is not on the loader's path\n");
        ExpectEveryFamilyConnected(driver, expected, panelPresent, false, "before the load");

        LineCounts counts;
        log().setObserver([&counts](const mmisim::LogEntry& entry) { counts.count(entry); });
        log().keepNone();
        FaultSchedule schedule(profile, settings.seed, kMinGap, kMaxGap);
        const auto roundTime = std::chrono::duration_cast<Clock::duration>(
                std::chrono::duration<double>(settings.seconds / settings.rounds));

        std::vector<Memory> memory;
        std::vector<Kept> kept;
        std::vector<int> deathsSoFar;
        int64_t calls = 0;
        int64_t faultAnswers = 0;
        const Clock::time_point started = Clock::now();
        driver.start(kCallBoundMillis);
        for (int round = 0; round < settings.rounds && !HasFailure(); ++round) {
            driver.resume();
            const Clock::time_point roundEnd = Clock::now() + roundTime;
            bool running = true;
            const std::string name = "round " + std::to_string(round);
            while (running && Clock::now() < roundEnd) running = Apply(driver, schedule.next(), round);
            for (const FaultStep& step : schedule.windDown()) running = running && Apply(driver, step, round);
            // Every service is up: the library finishes its recoveries under the load, and
            // the round closes with every service dying and coming back at once.
            running = running && Await(driver, kTailCalls, name + ", waiting for calls with every service up");
            running = running && Settled(name + ", every service up");
            for (const FaultStep& step : schedule.closing()) running = running && Apply(driver, step, round);
            running = running && Await(driver, kTailCalls, name + ", waiting for calls after the closing restarts");
            // Pausing gets a little time even when the run's is up, so that the failure
            // reported is the one that used it up.
            if (!driver.pause(std::max<int64_t>(Left(), kPauseMillis))) {
                const std::optional<std::string> stall = driver.stall();
                FAIL() << name << ": the Java threads did not pause: " << (stall ? *stall : "a call is still running");
            }
            if (!running) break;
            if (!Settled(name + ", load paused")) break;
            CheckAnswers(driver, expected, round, calls, faultAnswers);
            ExpectEveryFamilyConnected(driver, expected, panelPresent && counts.hidlDeathNotices == 0,
                                       counts.fingerprintWithoutSession > 0, "after " + name);
            if (kMemoryMeasured) {
                memory.push_back(Measure());
            } else {
                memory.push_back(Memory{0, Resident(), 0, 0});
            }
            kept.push_back(Kept::Of(counts));
            deathsSoFar.push_back(schedule.aidlDeaths() + schedule.hidlDeaths());
        }
        const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
        // The Java threads stay (paused) until the end: a thread that ends frees its log of
        // lines, which the pricing below must not count.
        struct StopAtEnd {
            StressDriver& driver;
            int64_t millis;
            ~StopAtEnd() { EXPECT_TRUE(driver.stop(millis)); }
        } stopAtEnd{driver, std::max<int64_t>(Left(), kPauseMillis)};
        for (const std::string& failure : driver.failures()) ADD_FAILURE() << failure;
        if (HasFailure()) return;

        const int deaths = schedule.aidlDeaths() + schedule.hidlDeaths();
        std::printf("[stress] %s handset: %d Java threads, %d rounds, %.1f s (the run may take %lld s), %lld calls, %d "
                    "service deaths (%d AIDL, %d HIDL; the library saw %lld AIDL and %lld HIDL death notices), %lld "
                    "calls met a service that was down or dying\n",
                    profile.name.c_str(), settings.threads, static_cast<int>(kept.size()), seconds,
                    static_cast<long long>(mRunSeconds),
                    static_cast<long long>(calls), deaths, schedule.aidlDeaths(), schedule.hidlDeaths(),
                    static_cast<long long>(counts.aidlDeathNotices.load()),
                    static_cast<long long>(counts.hidlDeathNotices.load()), static_cast<long long>(faultAnswers));
        if (counts.fingerprintWithoutSession > 0) {
            std::printf("[stress] %s handset: %lld times the fingerprint service died between its lookup and the "
                        "session's creation; the family has kept its IFingerprint handle without a session since "
                        "(kept so by design)\n",
                        profile.name.c_str(), static_cast<long long>(counts.fingerprintWithoutSession.load()));
        }
        std::fflush(stdout);
        EXPECT_GT(deaths, 0);
        EXPECT_GT(faultAnswers, 0) << "no call met a service that was down or dying";
        EXPECT_FALSE(HasJniWarning(Jvm::Get().Output())) << Jvm::Get().Output();
        if (!kMemoryMeasured) {
            std::string resident;
            for (const Memory& m : memory) resident += " " + std::to_string(m.rss >> 20);
            std::printf("[stress] %s handset: resident size after each round (MB):%s; allocations not measured (a "
                        "sanitizer's allocator replaces malloc)\n",
                        profile.name.c_str(), resident.c_str());
            return;
        }

        // What each kept item costs, measured with the load stopped (and lines kept again, for
        // the waits on a line).
        log().keepAtMost(kKeptLinesPerThread);
        const bool camera = profile[Family::kVaelon].transport == Transport::kAidl;
        const bool vibrator = profile[Family::kVibrator].transport == Transport::kAidl;
        Prices prices;
        if (vibrator) prices.vibratorSet = Price(driver, mmistress::kSetVibratorParameter);
        if (vibrator) prices.vibratorGet = Price(driver, mmistress::kGetVibratorCalibrateResult);
        if (camera) prices.globalRef = Price(driver, mmistress::kRegisterClient);
        prices.nmCard = PriceNmCard(driver, profile);
        prices.registration = PriceRegistrations(profile);

        const Kept measured = kept.back() - kept.front();
        const double growth = static_cast<double>(memory.back().mallocInUse - memory.front().mallocInUse);
        const double deliberate = prices.explained(measured);
        const double unexplained = growth - deliberate;
        const double limit = kUnexplainedGrowthBase +
                             kUnexplainedGrowthPerDeath * static_cast<double>(deathsSoFar.back() - deathsSoFar.front());
        auto kilobytes = [](int64_t bytes) { return Kilobytes(static_cast<double>(bytes)); };
        std::printf("[stress] %s handset: memory over rounds 2-%d: malloc %s, RSS %s (Java heap committed %s), Java "
                    "heap used %s; deliberate leaks %s (vibrator commands kept %lld x %.0f B + %lld x %.0f B, "
                    "NM-card modes kept %lld x %.0f B, RegisterClient global references %lld x %.1f B, notification "
                    "registrations kept by the service manager %lld x %.0f B); unexplained %s (limit %s)\n",
                    profile.name.c_str(), static_cast<int>(memory.size()), Kilobytes(growth).c_str(),
                    kilobytes(memory.back().rss - memory.front().rss).c_str(),
                    kilobytes(memory.back().javaHeapCommitted - memory.front().javaHeapCommitted).c_str(),
                    kilobytes(memory.back().javaHeap - memory.front().javaHeap).c_str(), Kilobytes(deliberate).c_str(),
                    static_cast<long long>(measured.vibratorSet), prices.vibratorSet,
                    static_cast<long long>(measured.vibratorGet), prices.vibratorGet,
                    static_cast<long long>(measured.nmCard), prices.nmCard, static_cast<long long>(measured.globalRefs),
                    prices.globalRef, static_cast<long long>(measured.hidlRegistrations), prices.registration,
                    Kilobytes(unexplained).c_str(), Kilobytes(limit).c_str());
        for (size_t i = 0; i < memory.size(); ++i) {
            const double roundGrowth =
                    i == 0 ? 0.0 : static_cast<double>(memory[i].mallocInUse - memory[i - 1].mallocInUse);
            const double roundUnexplained = i == 0 ? 0.0 : roundGrowth - prices.explained(kept[i] - kept[i - 1]);
            std::printf("[stress]   after round %zu: malloc %lld B, RSS %lld B, Java heap %lld B, kept so far: %lld "
                        "vibrator, %lld NM-card, %lld global references, %lld registrations; unexplained this round "
                        "%s\n",
                        i + 1, static_cast<long long>(memory[i].mallocInUse), static_cast<long long>(memory[i].rss),
                        static_cast<long long>(memory[i].javaHeap),
                        static_cast<long long>(kept[i].vibratorSet + kept[i].vibratorGet),
                        static_cast<long long>(kept[i].nmCard), static_cast<long long>(kept[i].globalRefs),
                        static_cast<long long>(kept[i].hidlRegistrations), Kilobytes(roundUnexplained).c_str());
        }
        std::fflush(stdout);
        EXPECT_LE(unexplained, limit) << "memory grew beyond the deliberate leaks";
    }

    Clock::time_point mDeadline;
    int64_t mRunSeconds = 0;
};

TEST_F(StressTest, AidlHandset) { Run(DeviceProfile::AllAidl(), 0); }

TEST_F(StressTest, HidlHandset) { Run(DeviceProfile::AllHidl(), 1); }

TEST_F(StressTest, MixedHandset) { Run(mmistress::MixedProfile(), 2); }

}  // namespace
}  // namespace mmitest
