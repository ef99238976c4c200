// Calls per second through the whole stack: Java threads call getBsnNative() on the
// simulated all-AIDL handset, through the JVM, the library's dispatcher and AIDL backend
// and the fake factory service, with every log line going to the log capture. Measured
// with one and with two Java threads; a call path without a global lock delivers clearly
// more with two.
//
//   throughput_bench [--seconds S] [--rounds N]
//
// Each round runs one thread for S seconds (default 2), then two threads for S seconds;
// the figures printed are the medians over the N rounds (default 3). Every answer is
// checked in Java, and after each run the service's received calls and the captured log
// lines are counted against the calls made. Each run also shows how many cores the process
// kept busy (below the thread count when other processes share the machine) and how often
// its threads blocked (waits: what a lock every call takes shows as). The capture keeps
// only the newest lines (it still counts them all). The last line is the
// summary
// "throughput: <one> calls/s with 1 thread, <two> calls/s with 2 threads, <ratio>x".
#include <hostcontrol/binder_control.h>
#include <jni.h>
#include <sim/handset.h>
#include <sim/log_capture.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr const char* kManagerClass = "com/corvex/mmitest/controller/MmiNativeManager";
constexpr const char* kDriverClass = "com/corvex/mmitest/bench/ThroughputDriver";
constexpr int kDeviceInfoBsn = 0;
// Lines one getBsnNative() call writes: the version check (two), the dispatcher's choice
// and the backend's result.
constexpr size_t kLinesPerCall = 4;
constexpr size_t kKeptLines = 4096;

struct Options {
    double seconds = 2.0;
    int rounds = 3;
};

[[noreturn]] void Fail(const std::string& why) {
    std::fprintf(stderr, "throughput_bench: %s\n", why.c_str());
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(1);
}

Options ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--seconds" && i + 1 < argc) {
            options.seconds = std::atof(argv[++i]);
        } else if (arg == "--rounds" && i + 1 < argc) {
            options.rounds = std::atoi(argv[++i]);
        } else {
            Fail("usage: throughput_bench [--seconds S] [--rounds N]");
        }
    }
    if (!(options.seconds > 0.0) || options.rounds < 1) Fail("--seconds must be above 0 and --rounds at least 1");
    return options;
}

// The process's Java VM, without -Xcheck:jni (it checks every JNI call and would be
// measured too), created on a thread of its own.
JavaVM* CreateJvm() {
    JavaVM* vm = nullptr;
    std::thread creator([&vm] {
        std::string classPath = "-Djava.class.path=" MMI_JAVA_DIR "/mmi_app.jar:" MMI_JAVA_DIR
                                "/mmi_sim.jar:" MMI_JAVA_DIR "/mmi_bench_driver.jar";
        std::string libraryPath = "-Djava.library.path=" MMI_LIB_DIR;
        JavaVMOption options[2];
        options[0].optionString = classPath.data();
        options[1].optionString = libraryPath.data();
        JavaVMInitArgs args{JNI_VERSION_1_8, 2, options, JNI_FALSE};
        JNIEnv* env = nullptr;
        if (JNI_CreateJavaVM(&vm, reinterpret_cast<void**>(&env), &args) != JNI_OK) Fail("cannot create the Java VM");
        vm->DetachCurrentThread();
    });
    creator.join();
    return vm;
}

struct Run {
    long long calls = 0;
    double seconds = 0.0;
    double cpuSeconds = 0.0;  // of the whole process (JVM threads included) during the run
    long waits = 0;           // times a thread of the process went to sleep (blocked on a lock, ...)
    double perSecond() const { return static_cast<double>(calls) / seconds; }
    // Cores the process kept busy: about the thread count unless the machine is shared.
    double cores() const { return cpuSeconds / seconds; }
    // Calls per second of the process's CPU time: what a thread count makes of the cores it
    // gets, whatever other processes take (time spent spinning for a lock counts too).
    double perCpuSecond() const { return static_cast<double>(calls) / cpuSeconds; }
};

// Voluntary context switches of the whole process so far: a thread that blocks (on a
// contended lock, for example) counts one; a thread preempted by other processes does not.
long ProcessWaits() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_nvcsw;
}

double ProcessCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

class Driver {
public:
    Driver(JNIEnv* env, std::string expected) : mEnv(env), mExpected(std::move(expected)) {
        jclass clazz = env->FindClass(kDriverClass);
        if (clazz == nullptr) Fail(std::string("class not found: ") + kDriverClass);
        mClass = static_cast<jclass>(env->NewGlobalRef(clazz));
        env->DeleteLocalRef(clazz);
        mRun = env->GetStaticMethodID(mClass, "run", "(IJLjava/lang/String;)[J");
        if (mRun == nullptr) Fail("ThroughputDriver.run not found");
    }

    // One run of `threads` Java threads, checked against the service's calls and the log.
    Run Measure(int threads, double seconds) {
        const size_t servedBefore = mmisim::Handset::Get().factory().received();
        mmisim::LogCapture& capture = mmisim::LogCapture::Install();
        const size_t mark = capture.mark();

        jstring expected = mEnv->NewStringUTF(mExpected.c_str());
        const double cpuBefore = ProcessCpuSeconds();
        const long waitsBefore = ProcessWaits();
        auto result = static_cast<jlongArray>(mEnv->CallStaticObjectMethod(
                mClass, mRun, static_cast<jint>(threads), static_cast<jlong>(seconds * 1000.0), expected));
        const double cpuAfter = ProcessCpuSeconds();
        const long waitsAfter = ProcessWaits();
        mEnv->DeleteLocalRef(expected);
        if (mEnv->ExceptionCheck()) {
            mEnv->ExceptionDescribe();
            Fail("the Java driver threw");
        }
        jlong values[2] = {0, 0};
        mEnv->GetLongArrayRegion(result, 0, 2, values);
        mEnv->DeleteLocalRef(result);
        if (values[0] < 0) Fail("a call answered something other than the service's serial number");
        if (values[0] == 0 || values[1] <= 0) Fail("no call was made");

        Run run{values[0], static_cast<double>(values[1]) / 1e9, cpuAfter - cpuBefore, waitsAfter - waitsBefore};
        const size_t served = mmisim::Handset::Get().factory().received() - servedBefore;
        if (served != static_cast<size_t>(run.calls)) {
            Fail("the factory service received " + std::to_string(served) + " calls, not " +
                 std::to_string(run.calls));
        }
        const size_t lines = capture.mark() - mark;
        if (lines != kLinesPerCall * static_cast<size_t>(run.calls)) {
            Fail("the log capture holds " + std::to_string(lines) + " lines for " + std::to_string(run.calls) +
                 " calls, not " + std::to_string(kLinesPerCall) + " per call");
        }
        return run;
    }

private:
    JNIEnv* mEnv;
    std::string mExpected;
    jclass mClass = nullptr;
    jmethodID mRun = nullptr;
};

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2.0;
}

}  // namespace

int main(int argc, char** argv) {
    const Options options = ParseOptions(argc, argv);

    // Millions of lines and calls per run: the capture keeps only the newest lines and the
    // service only counts its calls, so that the memory stays the same from run to run and
    // the figures measure calls, not the kernel handing out fresh pages.
    mmisim::LogCapture::Install().keepAtMost(kKeptLines);
    mmisim::Handset::Get().Configure(mmisim::DeviceProfile::AllAidl());
    mmisim::Handset::Get().factory().setRecordCalls(false);
    const auto answers = mmisim::Handset::Get().factory().answers();
    const auto bsn = answers.deviceInfo.find(kDeviceInfoBsn);
    if (bsn == answers.deviceInfo.end() || bsn->second.text.empty()) Fail("the handset has no serial number");

    JavaVM* vm = CreateJvm();
    JNIEnv* env = nullptr;
    if (vm->AttachCurrentThread(reinterpret_cast<void**>(&env), nullptr) != JNI_OK) Fail("cannot attach");
    // The first MmiNativeManager loads the library; its load settles before any run.
    jclass manager = env->FindClass(kManagerClass);
    if (manager == nullptr || env->NewObject(manager, env->GetMethodID(manager, "<init>", "()V")) == nullptr ||
        env->ExceptionCheck()) {
        env->ExceptionDescribe();
        Fail("cannot load libZtMmi_jni");
    }
    if (!hostcontrol::WaitForBinderNotices(std::chrono::seconds(10))) Fail("binder notices still pending");
    Driver driver(env, bsn->second.text);

    // Lets the JIT compile the driver's loop.
    driver.Measure(1, std::min(0.5, options.seconds));
    driver.Measure(2, std::min(0.5, options.seconds));

    std::vector<double> one, two, oneCpu, twoCpu;
    for (int round = 1; round <= options.rounds; ++round) {
        const Run single = driver.Measure(1, options.seconds);
        const Run pair = driver.Measure(2, options.seconds);
        one.push_back(single.perSecond());
        two.push_back(pair.perSecond());
        oneCpu.push_back(single.perCpuSecond());
        twoCpu.push_back(pair.perCpuSecond());
        for (const Run* run : {&single, &pair}) {
            std::printf("round %d, %d thread%s: %lld calls in %.3f s = %.0f calls/s; %.2f cores busy, %.0f calls "
                        "per CPU-second; %ld waits (%.2f per 1000 calls)\n",
                        round, run == &single ? 1 : 2, run == &single ? "" : "s", run->calls, run->seconds,
                        run->perSecond(), run->cores(), run->perCpuSecond(), run->waits,
                        1000.0 * static_cast<double>(run->waits) / static_cast<double>(run->calls));
        }
        std::fflush(stdout);
    }
    const double oneMedian = Median(one), twoMedian = Median(two);
    std::printf("getBsnNative on the simulated AIDL handset, %zu log lines per call captured, median of %d rounds "
                "of %.1f s\n",
                kLinesPerCall, options.rounds, options.seconds);
    std::printf("per CPU-second: %.0f calls with 1 thread, %.0f calls with 2 threads\n", Median(oneCpu),
                Median(twoCpu));
    std::printf("throughput: %.0f calls/s with 1 thread, %.0f calls/s with 2 threads, %.2fx\n", oneMedian, twoMedian,
                twoMedian / oneMedian);
    std::fflush(stdout);
    std::fflush(stderr);
    // Service threads may still wait in the simulated service managers: no static destructors.
    _exit(0);
}
