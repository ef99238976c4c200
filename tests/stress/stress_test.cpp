// Load with service faults (docs/stress.md): threads attached to the Java VM call every
// native method while a seeded schedule kills and restarts the handset's services. Every
// call returns within a bound and gives an answer the method table allows in some state of
// its service; after each round every family is connected again; no Java exception and no
// JNI warning; the process's allocations do not grow from round to round. The two methods
// that keep a little memory by design (`keeps`) are called in the unmeasured first round only.
// MMI_STRESS_SECONDS (load per handset, default 4), MMI_STRESS_THREADS (at least 8) and
// MMI_STRESS_SEED; a run ends within MMI_STRESS_TIME_FACTOR times its load time or fails
// with what it was waiting for.
#include <gtest/gtest.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <utility>

#include "jvm.h"
#include "mmi_fixture.h"
#include "native_methods.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;
using Clock = std::chrono::steady_clock;

// A call that has not returned after this long is taken as hung.
constexpr int64_t kCallBoundMillis = 10000;
// Bound of every wait on the load (calls made, threads pausing), within the run's time.
constexpr int64_t kWaitMillis = 60000;
// Least time the threads get to pause (each finishes the call it is in).
constexpr int64_t kPauseMillis = 2000;
// Lines each thread's log keeps outside the rounds; under the load the run counts the lines
// it needs as they come (a log observer) and the capture keeps none, whatever the load.
constexpr size_t kKeptLinesPerThread = 256;
// Calls between two steps of the fault schedule, and after the last restart of a round.
constexpr int64_t kMinGap = 200;
constexpr int64_t kMaxGap = 3000;
constexpr int64_t kTailCalls = 2000;
// Growth of the process's allocations over the measured rounds above which the run fails:
// 64 KB plus 100 B per service death. The load makes about a hundred calls of each method
// per death, so a leak of a few bytes per call of any one method exceeds it.
constexpr double kGrowthBase = 64 * 1024;
constexpr double kGrowthPerDeath = 100;

// Under a sanitizer's allocator the allocations cannot be read; the resident size is printed.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kMemoryMeasured = false;
#else
constexpr bool kMemoryMeasured = true;
#endif

double EnvNumber(const char* name, double fallback) {
    const char* value = std::getenv(name);
    char* end = nullptr;
    const double number = value != nullptr ? std::strtod(value, &end) : 0;
    return value != nullptr && end != value && number > 0 ? number : fallback;
}

// What a method may answer during the load: the service's answer, and what else the library
// gives while the service dies and returns.
struct Expectation {
    std::string served;
    std::set<std::string> others;
};

Expectation Expected(const NativeMethod& m, const DeviceProfile& profile) {
    if (!m.family) return {m.served, {m.fallback}};  // the panel library, closed after a HIDL death
    const mmisim::FamilyConfig& family = profile[*m.family];
    if (family.transport == Transport::kNone) return {m.fallback, {}};
    Expectation e{m.served, {m.aidlFailed, m.fallback}};
    if (family.transport == Transport::kHidl) {
        const int minor = family.hidlMinor >= 0 ? family.hidlMinor : 5;
        e = {minor < m.hidlMinor ? m.fallback : m.hidlServed ? m.hidlServed : m.served, {m.hidlFailed, m.fallback}};
    }
    e.others.erase(e.served);
    return e;
}

// A seeded schedule of service deaths and restarts, spaced by calls made. While a round runs,
// each step kills a running family (up to three are down at once) or restarts one that is
// down, so deaths also land while the library is still recovering from earlier ones. The
// round closes by restarting what is down, then, once every notice is handled, killing every
// family at once and starting them all again, fingerprint first: the recovery connects every
// family afresh (clearing a handle whose service died between its lookup and its death link)
// and over HIDL every family is reconnected by a registration it listens for (the fingerprint
// family listens for the touch screen's).
struct FaultStep {
    bool kill;
    Family family;
    int64_t afterCalls;
};

class FaultSchedule {
public:
    FaultSchedule(const DeviceProfile& profile, uint32_t seed) : mRandom(seed) {
        for (Family family : mmisim::kAllFamilies) {
            if (profile[family].transport != Transport::kNone) mServed.push_back(family);
        }
    }
    FaultStep Next() {
        const bool restart = !mDown.empty() && (mDown.size() >= 3 || mDown.size() == mServed.size() ||
                                                std::bernoulli_distribution(0.5)(mRandom));
        std::vector<Family> pool;
        for (Family family : mServed) {
            if ((mDown.count(family) != 0) == restart) pool.push_back(family);
        }
        return Step(!restart, pool[std::uniform_int_distribution<size_t>(0, pool.size() - 1)(mRandom)], Gap());
    }
    std::vector<FaultStep> WindDown() {
        std::vector<FaultStep> steps;
        while (!mDown.empty()) steps.push_back(Step(false, *mDown.begin(), Gap()));
        return steps;
    }
    std::vector<FaultStep> Closing() {
        std::vector<FaultStep> steps;
        for (Family family : mServed) steps.push_back(Step(true, family, 0));
        std::vector<Family> order = mServed;
        std::stable_partition(order.begin(), order.end(), [](Family f) { return f == Family::kFingerprint; });
        for (Family family : order) steps.push_back(Step(false, family, Gap()));
        return steps;
    }
    int deaths = 0;

private:
    FaultStep Step(bool kill, Family family, int64_t gap) {
        if (kill) {
            mDown.insert(family);
            ++deaths;
        } else {
            mDown.erase(family);
        }
        return {kill, family, gap};
    }
    int64_t Gap() { return std::uniform_int_distribution<int64_t>(kMinGap, kMaxGap)(mRandom); }

    std::mt19937 mRandom;
    std::vector<Family> mServed;
    std::set<Family> mDown;
};

// Threads attached to the Java VM calling every native method continuously, each thread in
// its own seeded order, while the gate is open, and checking each answer against what the
// method may answer; a watchdog notes a call that has not returned within its bound.
class Load {
public:
    Load(jobject manager, const std::vector<Expectation>& expected, int threads, uint32_t seed)
        : mManager(manager), mExpected(expected), mStartedAt(static_cast<size_t>(threads)),
          mInFlight(static_cast<size_t>(threads)) {
        for (int i = 0; i < threads; ++i) mThreads.emplace_back([this, i, seed] { Work(i, seed); });
        mThreads.emplace_back([this] { Watch(); });
    }
    ~Load() {
        {
            std::lock_guard<std::mutex> lock(mLock);
            mStopped = true;
        }
        mChanged.notify_all();
        for (std::thread& thread : mThreads) thread.join();
    }
    // Opens the gate; the methods that keep memory by design are called only with `keepers`.
    void Resume(bool keepers) {
        std::lock_guard<std::mutex> lock(mLock);
        mOpen = true;
        mKeepers = keepers;
        mChanged.notify_all();
    }
    // Shuts the gate and waits until every thread has finished its call in flight.
    bool Pause(int64_t millis) {
        std::unique_lock<std::mutex> lock(mLock);
        mOpen = false;
        return mChanged.wait_for(lock, std::chrono::milliseconds(millis),
                                 [this] { return mWaiting == static_cast<int>(mStartedAt.size()); });
    }
    int64_t Calls() const { return mCalls; }
    // False when the count is not reached in time or a call hangs.
    bool AwaitCalls(int64_t count, int64_t millis) {
        std::unique_lock<std::mutex> lock(mLock);
        return mChanged.wait_for(lock, std::chrono::milliseconds(millis),
                                 [&] { return mCalls >= count || !mStall.empty(); }) &&
               mStall.empty();
    }
    std::string Stall() {
        std::lock_guard<std::mutex> lock(mLock);
        return mStall;
    }
    int64_t FaultAnswers() const { return mFaultAnswers; }
    // Answers no state of the service explains, since the last call: method and answer, how often.
    std::map<std::pair<size_t, std::string>, int64_t> Unexpected() {
        std::lock_guard<std::mutex> lock(mLock);
        return std::exchange(mUnexpected, {});
    }

private:
    static int64_t Nanoseconds() {
        return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
    }
    void Work(int index, uint32_t seed) {
        JNIEnv* env = nullptr;
        Jvm::Get().vm()->AttachCurrentThread(reinterpret_cast<void**>(&env), nullptr);
        {
            NativeCalls calls(env, mManager);
            std::mt19937 random(seed * 1000003u + static_cast<uint32_t>(index));
            std::vector<size_t> order(NativeMethods().size());
            for (size_t i = 0; i < order.size(); ++i) order[i] = i;
            bool keepers = false;
            while (WaitForGate(keepers)) {
                std::shuffle(order.begin(), order.end(), random);
                for (size_t method : order) {
                    if (!mOpen) break;
                    if (NativeMethods()[method].keeps && !keepers) continue;
                    mInFlight[index] = method;
                    mStartedAt[index] = Nanoseconds() | 1;
                    const std::string answer = calls.Call(method);
                    mStartedAt[index] = 0;
                    if (answer != mExpected[method].served) {
                        ++mFaultAnswers;
                        if (mExpected[method].others.count(answer) == 0) {
                            std::lock_guard<std::mutex> lock(mLock);
                            ++mUnexpected[{method, answer}];
                        }
                    }
                    if (++mCalls % 64 == 0) mChanged.notify_all();
                }
            }
        }
        Jvm::Get().vm()->DetachCurrentThread();
    }
    // Waits while the gate is shut; false once the load stops.
    bool WaitForGate(bool& keepers) {
        std::unique_lock<std::mutex> lock(mLock);
        ++mWaiting;
        mChanged.notify_all();
        mChanged.wait(lock, [this] { return mOpen || mStopped; });
        --mWaiting;
        keepers = mKeepers;
        return !mStopped;
    }
    void Watch() {
        std::unique_lock<std::mutex> lock(mLock);
        while (!mChanged.wait_for(lock, std::chrono::milliseconds(100), [this] { return mStopped; })) {
            const int64_t now = Nanoseconds();
            for (size_t i = 0; i < mStartedAt.size() && mStall.empty(); ++i) {
                const int64_t started = mStartedAt[i];
                const int64_t ms = (now - started) / 1000000;
                if (started != 0 && ms > kCallBoundMillis) {
                    mStall = std::string(NativeMethods()[mInFlight[i]].java) + " on thread " + std::to_string(i) +
                             " has not returned for " + std::to_string(ms) + " ms";
                    mChanged.notify_all();
                }
            }
        }
    }

    jobject mManager;
    const std::vector<Expectation>& mExpected;
    std::vector<std::atomic<int64_t>> mStartedAt;  // per thread: when its call in flight began (0: none)
    std::vector<std::atomic<size_t>> mInFlight;
    std::atomic<int64_t> mFaultAnswers{0};
    std::map<std::pair<size_t, std::string>, int64_t> mUnexpected;
    std::atomic<int64_t> mCalls{0};
    std::mutex mLock;
    std::condition_variable mChanged;
    std::atomic<bool> mOpen{false};  // read by the threads between calls
    bool mKeepers = false;
    bool mStopped = false;
    int mWaiting = 0;
    std::string mStall;
    std::vector<std::thread> mThreads;
};

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

    // Why a wait ended without what it waited for: the run's time is up, or its own bound.
    std::string Expired(int64_t waitedMillis) const {
        if (Left() == 0) {
            return "the run's time is up (" + std::to_string(mRunSeconds) + " s, " +
                   std::to_string(MMI_STRESS_TIME_FACTOR) + " times its load time)";
        }
        return "nothing for " + std::to_string(waitedMillis) + " ms";
    }

    // The services down and those the library waits for, for a round that could not close.
    std::string Situation() {
        std::string down = "none";
        std::string awaited = "none";
        for (Family family : mmisim::kAllFamilies) {
            if (handset().profile()[family].transport != Transport::kNone && !handset().IsRunning(family)) {
                down = (down == "none" ? "" : down + ", ") + mmisim::FamilyName(family);
            }
            const std::string name = mmisim::Handset::AidlServiceName(family);
            if (hostcontrol::WaitersFor(name) > 0) awaited = (awaited == "none" ? "" : awaited + ", ") + name;
        }
        return "services down: " + down + "; the library waits for: " + awaited;
    }

    // Waits until every death and registration notice has been handled (the library's
    // recoveries have ended), within the run's time.
    bool Settled(const std::string& what) {
        const int64_t bound = Left(kNoticeTimeout.count());
        bool idle = true;
        for (int round = 0; round < 2; ++round) {  // a notice of one kind may post one of the other
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

    // Waits until the load has made `gap` more calls, within the run's time.
    bool Await(Load& load, int64_t gap, const std::string& what) {
        const int64_t from = load.Calls();
        const int64_t bound = Left();
        if (load.AwaitCalls(from + gap, bound)) return true;
        const std::string stall = load.Stall();
        if (!stall.empty()) {
            ADD_FAILURE() << what << ": a call did not return: " << stall;
        } else {
            ADD_FAILURE() << what << ": " << load.Calls() - from << " of " << gap << " calls made, " << Expired(bound)
                          << "; " << Situation();
        }
        return false;
    }

    bool Apply(Load& load, const FaultStep& step, const std::string& round) {
        const std::string what = round + ", waiting for calls before " + (step.kill ? "killing " : "starting ") +
                                 mmisim::FamilyName(step.family);
        if (!Await(load, step.afterCalls, what)) return false;
        step.kill ? handset().Kill(step.family) : handset().Start(step.family);
        return true;
    }

    // The process's allocations after a Java collection, with the logs of ended threads freed.
    int64_t Allocated() {
        log().clear();
        jclass system = mEnv->FindClass("java/lang/System");
        for (int i = 0; i < 2; ++i) {
            mEnv->CallStaticVoidMethod(system, mEnv->GetStaticMethodID(system, "gc", "()V"));
            EXPECT_FALSE(mEnv->ExceptionCheck()) << "System.gc() threw";
        }
        mEnv->DeleteLocalRef(system);
        malloc_trim(0);
        const struct mallinfo2 info = mallinfo2();
        return static_cast<int64_t>(info.uordblks + info.hblkhd);
    }

    static int64_t ResidentMegabytes() {
        long pages = 0;
        long resident = 0;
        std::ifstream("/proc/self/statm") >> pages >> resident;
        return static_cast<int64_t>(resident) * sysconf(_SC_PAGESIZE) >> 20;
    }

    // The application restarts, as its process dying and starting again: the library
    // unloads, the service managers drop what it registered (they keep every HIDL
    // registration otherwise: one per HIDL family connected, again after each death) and it
    // loads again.
    void RestartApplication() {
        CallOnUnload(Jvm::Get().vm());
        Settled("unloading");
        hostcontrol::DropClientLinks();
        hostcontrol::DropHidlClientRegistrations();
        handset().ForgetClients();
        EXPECT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
        Settled("loading");
    }

    // Every method once on this thread, with every service up: each gives its service's own
    // answer. Two states are kept by design: the panel library stays closed once the HIDL
    // backend has shut down, and a fingerprint family whose session could not be created
    // keeps its service without a session for good (its command takes the HIDL fallback).
    void ExpectEveryFamilyConnected(NativeCalls& calls, bool panelOpen, bool fingerprintWithoutSession,
                                    const std::string& when) {
        for (size_t i = 0; i < NativeMethods().size(); ++i) {
            const NativeMethod& m = NativeMethods()[i];
            std::string want = Expected(m, handset().profile()).served;
            if ((!m.family && !panelOpen) || (m.family == Family::kFingerprint && fingerprintWithoutSession)) {
                want = m.fallback;
            }
            EXPECT_EQ(calls.Call(i), want) << when << ": " << m.java;
        }
        EXPECT_EQ(FailInfo(), "cap-info") << when;
    }

    void Run(const DeviceProfile& profile, uint32_t handsetIndex) {
        const double seconds = EnvNumber("MMI_STRESS_SECONDS", 4);
        const int threads = std::max(8, static_cast<int>(EnvNumber("MMI_STRESS_THREADS", 8)));
        const uint32_t seed = static_cast<uint32_t>(EnvNumber("MMI_STRESS_SEED", 20240501)) + handsetIndex;
        const int rounds = std::max(5, static_cast<int>(seconds / 2));  // the first is not measured
        mRunSeconds = static_cast<int64_t>(seconds * MMI_STRESS_TIME_FACTOR);
        mDeadline = Clock::now() + std::chrono::seconds(mRunSeconds);
        log().keepAtMost(kKeptLinesPerThread);
        Boot(profile);
        ScriptAnswers(handset(), profile);
        handset().factory().update([](mmisim::FactoryAnswers& a) { a.keepReceivedRecords = false; });
        for (Family family : mmisim::kAllFamilies) handset().visit(family, [](auto& state) { state.setRecordCalls(false); });
        const bool hidlFamilies = std::any_of(profile.families.begin(), profile.families.end(),
                                              [](const mmisim::FamilyConfig& f) { return f.transport == Transport::kHidl; });
        NativeCalls calls(mEnv, mManager);
        // The panel library is on the loader's path when the test runs under CTest.
        const bool panelPresent = calls.Call(static_cast<size_t>(&MethodNamed("getVideoInterpolationDefaultModelNative") -
                                                                 NativeMethods().data())) != "-1";
        ExpectEveryFamilyConnected(calls, panelPresent, false, "before the load");

        std::atomic<int64_t> aidlDeaths{0}, hidlDeaths{0}, fingerprintWithoutSession{0};
        log().setObserver([&](const mmisim::LogEntry& entry) {
            aidlDeaths += entry.message == "ServiceDied, remote hal service died";
            hidlDeaths += entry.message.rfind("ZtMmiTest_jni: ProcessServiceDied", 0) == 0;
            fingerprintWithoutSession += entry.message == "ZtMmiTest_jni: g_aidlFingerprintSession is null";
        });
        log().keepNone();
        FaultSchedule schedule(profile, seed);
        const auto roundTime = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds / rounds));
        std::vector<Expectation> expected;
        for (const NativeMethod& m : NativeMethods()) expected.push_back(Expected(m, profile));

        std::vector<int64_t> allocated;
        std::vector<int> deaths;
        int64_t callsMade = 0;
        int64_t faultAnswers = 0;
        {
            Load load(mManager, expected, threads, seed);
            for (int round = 0; round < rounds && !HasFailure(); ++round) {
                const std::string name = "round " + std::to_string(round);
                load.Resume(round == 0);
                const Clock::time_point roundEnd = Clock::now() + roundTime;
                bool running = true;
                while (running && Clock::now() < roundEnd) running = Apply(load, schedule.Next(), name);
                for (const FaultStep& step : schedule.WindDown()) running = running && Apply(load, step, name);
                // Every service is up: the recoveries finish under the load, then the round
                // closes with every service dying and coming back at once.
                running = running && Await(load, kTailCalls, name + ", waiting for calls with every service up");
                running = running && Settled(name + ", every service up");
                for (const FaultStep& step : schedule.Closing()) running = running && Apply(load, step, name);
                running = running && Await(load, kTailCalls, name + ", waiting for calls after the closing restarts");
                // Pausing gets a little time even when the run's is up, so that the failure
                // reported is the one that used it up.
                if (!load.Pause(std::max<int64_t>(Left(), kPauseMillis))) {
                    const std::string stall = load.Stall();
                    FAIL() << name << ": the threads did not pause: " << (stall.empty() ? "a call is still running" : stall);
                }
                if (!running || !Settled(name + ", load paused")) break;
                for (const auto& [call, count] : load.Unexpected()) {
                    const Expectation& e = expected[call.first];
                    std::string allowed = e.served;
                    for (const std::string& other : e.others) allowed += " | " + other;
                    ADD_FAILURE() << name << ": " << NativeMethods()[call.first].java << " answered " << call.second
                                  << " (" << count << " times); allowed: " << allowed;
                }
                if (hidlFamilies) RestartApplication();
                ExpectEveryFamilyConnected(calls, panelPresent && hidlDeaths == 0 && !hidlFamilies,
                                           fingerprintWithoutSession > 0 && !hidlFamilies, "after " + name);
                allocated.push_back(kMemoryMeasured ? Allocated() : ResidentMegabytes());
                deaths.push_back(schedule.deaths);
            }
            callsMade = load.Calls();
            faultAnswers = load.FaultAnswers();
        }  // the threads end here, after the measurements: an ended thread frees its log
        if (HasFailure()) return;
        std::printf("[stress] %s handset: %d threads, %zu rounds, %lld calls, %d service deaths (the library saw %lld "
                    "AIDL and %lld HIDL death notices), %lld calls met a service that was down or dying\n",
                    profile.name.c_str(), threads, allocated.size(), static_cast<long long>(callsMade), schedule.deaths,
                    static_cast<long long>(aidlDeaths.load()), static_cast<long long>(hidlDeaths.load()),
                    static_cast<long long>(faultAnswers));
        EXPECT_GT(schedule.deaths, 0);
        EXPECT_GT(faultAnswers, 0) << "no call met a service that was down or dying";
        EXPECT_FALSE(HasJniWarning(Jvm::Get().Output())) << Jvm::Get().Output();
        std::string perRound;
        for (int64_t value : allocated) perRound += " " + std::to_string(value);
        if (!kMemoryMeasured) {
            std::printf("[stress] %s handset: resident size after each round (MB):%s; allocations not measured (a "
                        "sanitizer's allocator replaces malloc)\n", profile.name.c_str(), perRound.c_str());
            return;
        }
        const double growth = static_cast<double>(allocated.back() - allocated.front());
        const double limit = kGrowthBase + kGrowthPerDeath * (deaths.back() - deaths.front());
        std::printf("[stress] %s handset: allocations after each round (B):%s; growth over rounds 2-%zu %+.1f KB "
                    "(limit %.1f KB)\n", profile.name.c_str(), perRound.c_str(), allocated.size(), growth / 1024,
                    limit / 1024);
        EXPECT_LE(growth, limit) << "memory grew from round to round";
        std::fflush(stdout);
    }

    Clock::time_point mDeadline;
    int64_t mRunSeconds = 0;
};

TEST_F(StressTest, AidlHandset) { Run(DeviceProfile::AllAidl(), 0); }

TEST_F(StressTest, HidlHandset) { Run(DeviceProfile::AllHidl(), 1); }

// A handset in transition: factory, fingerprint, power, camera and vibrator over AIDL;
// display (1.4), touch screen, sensors (1.1 and 2.0) and light over HIDL.
TEST_F(StressTest, MixedHandset) {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile.name = "mixed";
    for (Family family : {Family::kDisplay, Family::kTouchScreen, Family::kSensors, Family::kLight}) {
        profile[family].transport = Transport::kHidl;
    }
    profile[Family::kDisplay].hidlMinor = 4;
    profile[Family::kSensors].hidlMinor = 1;
    Run(profile, 2);
}

}  // namespace
}  // namespace mmitest
