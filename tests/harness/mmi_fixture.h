// Base fixture of the library's tests: a simulated handset, the real library loaded by the
// real JVM, calls of the Java native methods, and the captured log.
#pragma once

#include <gtest/gtest.h>
#include <jni.h>
#include <sim/handset.h>
#include <sim/log_capture.h>

#include <chrono>
#include <map>
#include <optional>
#include <utility>
#include <variant>
#include <string>
#include <vector>

namespace mmisim {
inline void PrintTo(Transport transport, std::ostream* out) { *out << (transport == Transport::kAidl ? "aidl" : "hidl"); }
}  // namespace mmisim

namespace mmitest {

constexpr int kInfo = 4;
constexpr int kWarn = 5;
constexpr int kError = 6;
constexpr std::chrono::milliseconds kNoticeTimeout{10000};

// "ZtMmiTest_jni: " + text, the form of most log lines.
std::string Prefixed(const std::string& text);

struct Line {
    int priority;
    std::string message;
    bool operator==(const Line& other) const { return priority == other.priority && message == other.message; }
};
std::ostream& operator<<(std::ostream& out, const Line& line);

// The calling thread's JNI environment with some functions replaced: a copy of the real
// function table whose entries a test changes, in force from Apply() until destruction
// (replaced entries reach the real functions through Real()). vm() is a Java VM whose GetEnv
// answers getEnvResult and getEnvEnv (the patched environment unless changed). One at a time;
// the VM stays valid for good, as the library may keep it.
class PatchedJni {
public:
    explicit PatchedJni(JNIEnv* env);
    ~PatchedJni();
    PatchedJni(const PatchedJni&) = delete;
    PatchedJni& operator=(const PatchedJni&) = delete;

    void Apply() { mEnv->functions = &functions; }
    JavaVM* vm();
    static const JNINativeInterface_& Real() { return *sReal; }
    // FindClass of the patched environment finds this class instead (when set).
    static inline const char* redirectClass = nullptr;
    static inline jint getEnvResult = JNI_OK;
    static inline JNIEnv* getEnvEnv = nullptr;

    JNINativeInterface_ functions;

private:
    static inline const JNINativeInterface_* sReal = nullptr;
    JNIEnv* mEnv;
};

// A Java object built field by field (no constructor runs): ints, and Strings (null for
// nullptr); a field the class lacks fails the test.
using FieldValue = std::variant<jint, const char*>;
jobject NewModel(JNIEnv* env, const char* className,
                 const std::vector<std::pair<const char*, FieldValue>>& fields = {});
constexpr const char* kOperationClass = "com/corvex/mmitest/model/BigDataOperation";
constexpr const char* kValueClass = "com/corvex/mmitest/model/BigDataValue";

class MmiTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Serves the profile and loads the library on it: the first time in the process through
    // System.loadLibrary (class initialisation of MmiNativeManager), later by unloading and
    // loading the same library again. Returns with every notice of the load delivered and
    // the log marked.
    void Boot(const mmisim::DeviceProfile& profile);

    mmisim::Handset& handset() { return mmisim::Handset::Get(); }
    mmisim::LogCapture& log() { return mmisim::LogCapture::Install(); }

    // The library's entry points, for load and unload tests.
    jint CallOnLoad(JavaVM* vm);
    void CallOnUnload(JavaVM* vm);

    template <typename... A>
    jint Int(const char* method, const char* signature, A... args) {
        return Checked(mEnv->CallIntMethod(mManager, Method(method, signature), args...));
    }
    template <typename... A>
    bool Bool(const char* method, const char* signature, A... args) {
        return Checked(mEnv->CallBooleanMethod(mManager, Method(method, signature), args...)) == JNI_TRUE;
    }
    template <typename... A>
    std::optional<std::string> Str(const char* method, const char* signature, A... args) {
        auto result = static_cast<jstring>(mEnv->CallObjectMethod(mManager, Method(method, signature), args...));
        return Text(Checked(result));
    }
    template <typename... A>
    std::optional<std::vector<int>> Ints(const char* method, const char* signature, A... args) {
        auto result = static_cast<jintArray>(mEnv->CallObjectMethod(mManager, Method(method, signature), args...));
        return IntsOf(Checked(result));
    }
    template <typename... A>
    void Void(const char* method, const char* signature, A... args) {
        mEnv->CallVoidMethod(mManager, Method(method, signature), args...);
        Checked(0);
    }

    jstring J(const std::string& text);
    void ClearCalls();
    // The calls the family's services received for the method, each as its arguments.
    std::vector<std::vector<std::string>> Received(mmisim::Family family, const std::string& method);

    // MmiNativeManager's static members the library writes or calls: sTpCapacitanceFailInfo
    // (nullopt for null) and how often RegisterSuccess has run.
    std::optional<std::string> FailInfo();
    void SetFailInfo(const char* text);
    int RegisterSuccesses();

    // The library's native functions by Java name, as JNI_OnLoad registers them, for calls
    // the JVM never makes (a null environment, a boolean byte other than 0 and 1).
    const std::map<std::string, void*>& Natives();

    std::vector<Line> Lines() const;
    // Log lines written since the last Boot began (the load's own lines and everything after).
    std::vector<Line> BootLines() const;
    void Mark() { mLogMark = log().mark(); }
    int Count(int priority, const std::string& message) const;
    bool Has(int priority, const std::string& message) const { return Count(priority, message) > 0; }
    std::vector<Line> LinesWithPriority(int priority) const;
    // The messages of those lines that start with `start`.
    std::vector<std::string> Messages(int priority, const std::string& start = "") const;
    // Waits (bounded) for a line from the mark on.
    bool WaitFor(int priority, const std::string& message,
                 std::chrono::milliseconds timeout = kNoticeTimeout) const;
    // Waits (bounded) until both notice threads have nothing left to deliver.
    static bool NoticesDelivered();
    // Whether TearDown waits for the notices and fails when some are left (a test that
    // has reported them already need not wait again).
    void SettleAtTearDown(bool settle) { mSettleAtTearDown = settle; }

    JNIEnv* mEnv = nullptr;
    jobject mManager = nullptr;

private:
    jmethodID Method(const char* name, const char* signature);
    template <typename T>
    T Checked(T value) {
        if (mEnv->ExceptionCheck()) {
            mEnv->ExceptionDescribe();
            mEnv->ExceptionClear();
            ADD_FAILURE() << "the native method threw a Java exception";
        }
        return value;
    }
    std::optional<std::string> Text(jstring text);
    std::optional<std::vector<int>> IntsOf(jintArray array);

    std::vector<Line> LinesFrom(size_t mark) const;

    size_t mLogMark = 0;
    size_t mBootMark = 0;
    size_t mVmOutputMark = 0;
    bool mSettleAtTearDown = true;
};

// The backend a parameterised case runs on, Transport::kAidl or kHidl, as the log lines and
// the recorded calls name it, and a handset that serves every family over it (the camera
// and the vibrator exist only over AIDL).
const char* NameOf(mmisim::Transport backend);
mmisim::DeviceProfile EveryFamilyOver(mmisim::Transport backend);
std::string BackendName(const ::testing::TestParamInfo<mmisim::Transport>& info);
#define MMI_ON_BOTH_BACKENDS(Suite)                                                                         \
    INSTANTIATE_TEST_SUITE_P(Backends, Suite,                                                               \
                             ::testing::Values(mmisim::Transport::kAidl, mmisim::Transport::kHidl), BackendName)

class BackendTest : public MmiTest, public ::testing::WithParamInterface<mmisim::Transport> {
protected:
    bool aidl() const { return GetParam() == mmisim::Transport::kAidl; }
    const char* name() const { return NameOf(GetParam()); }
    void BootBackend() { Boot(EveryFamilyOver(GetParam())); }
    // "ZtMmiTest_jni: <operation> by <backend><rest>"
    std::string By(const std::string& operation, const std::string& rest) const {
        return Prefixed(operation + " by " + name() + rest);
    }
};

}  // namespace mmitest
