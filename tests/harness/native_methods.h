// The 61 native methods of MmiNativeManager in one table: how each is called, the family
// that decides its backend, and what the library answers and logs for it on a handset with
// the answers of ScriptAnswers. Table-driven tests and the load run read it.
//
// Answers are text: ints, booleans and strings as Java prints them, int arrays as [a,b,c]
// (or [n x v] when longer than 8 and all equal), null, and void.
#pragma once

#include <jni.h>
#include <sim/handset.h>

#include <optional>
#include <string>
#include <vector>

namespace mmitest {

struct NativeMethod {
    const char* java;
    const char* signature;
    const char* dispatcher;
    std::optional<mmisim::Family> family;  // whose predicate decides; none: the display processor's library
    // The sample arguments, comma-separated: ints, true, 'text', #hex (a byte array), and op
    // or value (the reports NativeCalls builds).
    const char* args;
    const char* served;    // the service's answer
    const char* fallback;  // the answer without the service
    // The answers when the service call fails in transport, over AIDL and over HIDL.
    const char* aidlFailed;
    const char* hidlFailed;
    // Over HIDL the answer comes through a result callback: a service that never calls it
    // leaves the same answer as a failed call (otherwise the call's own value answers).
    bool callback;
    // What the backend writes for the call and the calls the service receives ("> name(args)"),
    // over AIDL and over HIDL ({"="}: the AIDL lines with "by hidl" and g_hwSensors). "!" marks
    // an ERROR line.
    std::vector<std::string> aidlLines;
    std::vector<std::string> hidlLines;
    // Without the service: the HIDL backend's lines; by default its one missing-handle line.
    std::optional<std::vector<std::string>> noServiceLines = std::nullopt;
    // The AIDL backend's missing-handle line (the service died after the dispatcher chose
    // AIDL); empty: "<dispatcher> by aidl fail, <handle> is null".
    std::string aidlNull = "";
    // The Java references (texts, arrays), named as the null-argument lines name them.
    std::vector<std::string> references = {};
    const char* hidlServed = nullptr;  // the service's answer over HIDL, when it differs
    int hidlMinor = 0;                 // the HIDL minor version the operation needs
    bool keeps = false;                // every call keeps a little memory for good, by design
};

const std::vector<NativeMethod>& NativeMethods();
const NativeMethod& MethodNamed(const std::string& java);

// "ZtMmiTest_jni: " + text, the form of most log lines (after a leading "!" of an ERROR line).
std::string operator""_p(const char* text, size_t length);

// The expected lines of a call without the service, and of the AIDL backend finding no handle.
std::vector<std::string> NoServiceLines(const NativeMethod& method);
std::string AidlNullLine(const NativeMethod& method);

// Scripts answers on every family that no fallback or preset equals.
void ScriptAnswers(mmisim::Handset& handset, const mmisim::DeviceProfile& profile);

// Calls of the table's methods with their sample arguments on one thread, answered as text.
class NativeCalls {
public:
    NativeCalls(JNIEnv* env, jobject manager);
    ~NativeCalls();
    NativeCalls(const NativeCalls&) = delete;
    NativeCalls& operator=(const NativeCalls&) = delete;

    // Calls the method; `nullReference` >= 0 passes null for that Java reference instead,
    // and `everyInt` that value for every int. A Java exception is cleared and answered as
    // "threw".
    std::string Call(size_t method, int nullReference = -1, std::optional<jint> everyInt = std::nullopt);

private:
    JNIEnv* mEnv;
    jobject mManager;
    std::vector<jmethodID> mIds;
    std::vector<std::vector<jvalue>> mArgs;
    std::vector<jobject> mGlobals;
};

}  // namespace mmitest
