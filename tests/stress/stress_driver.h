// The Java driver of a load run (com.corvex.mmitest.stress.StressDriver, on the class path
// through MMI_TEST_CLASSPATH), seen from the native test: Java threads calling every native
// method of MmiNativeManager, paused and resumed between rounds, with a watchdog.
#pragma once

#include <jni.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mmistress {

class StressDriver {
public:
    // A driver of `threads` Java threads calling through `manager`; false from ok() when the
    // class cannot be found (a failure is reported then).
    StressDriver(JNIEnv* env, jobject manager, int threads, uint64_t seed);
    ~StressDriver();
    StressDriver(const StressDriver&) = delete;
    StressDriver& operator=(const StressDriver&) = delete;

    bool ok() const { return mDriver != nullptr; }

    // The method names the driver calls, in its order.
    std::vector<std::string> methods();

    // Starts the threads (paused) and the watchdog, which notes any call that has not
    // returned within `boundMillis`.
    void start(int64_t boundMillis);
    void resume();
    // False when a call in flight does not return within the time.
    bool pause(int64_t timeoutMillis);
    bool stop(int64_t timeoutMillis);

    int64_t calls();
    // False when the count is not reached in time or the watchdog saw a stuck call.
    bool awaitCalls(int64_t count, int64_t timeoutMillis);
    // The stuck call the watchdog saw, if any.
    std::optional<std::string> stall();
    // Java exceptions thrown by native methods.
    std::vector<std::string> failures();

    // The distinct answers of a method since the last drain, with how often each came.
    std::vector<std::pair<int64_t, std::string>> drainAnswers(int method);

    // One call (or `times` calls) of the method on this thread; its (last) answer.
    std::string callOnce(int method);
    std::string callRepeatedly(int method, int times);

private:
    std::string text(jobject string);
    std::vector<std::string> texts(jobject array);
    bool checked(const char* what);

    JNIEnv* mEnv;
    jclass mClass = nullptr;
    jobject mDriver = nullptr;
};

}  // namespace mmistress
