// Shared pieces of the touch, power, light, vibrator, fingerprint and camera tests: the
// backend a case runs on, calls as the services received them, the Java static members the
// library writes or calls, and services dying under the calls. Local references made here
// go with the test's local frame.
#pragma once

#include <binder/Binder.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "factory_records_support.h"
#include "mmi_fixture.h"

namespace mmitest {

using Rows = std::vector<std::vector<std::string>>;

struct DeviceBackend {
    mmisim::Transport transport;
    const char* name;  // as the log lines say it
    bool aidl() const { return transport == mmisim::Transport::kAidl; }
    // Every family on this backend (the camera and the vibrator exist over AIDL only).
    mmisim::DeviceProfile profile() const {
        return aidl() ? mmisim::DeviceProfile::AllAidl() : mmisim::DeviceProfile::AllHidl();
    }
};
inline const DeviceBackend kAidlDevices{mmisim::Transport::kAidl, "aidl"};
inline const DeviceBackend kHidlDevices{mmisim::Transport::kHidl, "hidl"};
inline void PrintTo(const DeviceBackend& backend, std::ostream* out) { *out << backend.name; }
inline std::string DeviceBackendName(const ::testing::TestParamInfo<DeviceBackend>& info) { return info.param.name; }

// A case run on each backend, with every family served there.
class DeviceBackendCase : public MmiTest, public ::testing::WithParamInterface<DeviceBackend> {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        Boot(GetParam().profile());
    }
    // "ZtMmiTest_jni: <operation> by <backend><rest>"
    std::string By(const std::string& operation, const std::string& rest) const {
        return Prefixed(operation + " by " + GetParam().name + rest);
    }
};

// Error lines with these messages.
inline std::vector<Line> Errors(std::initializer_list<std::string> messages) {
    std::vector<Line> lines;
    for (const std::string& message : messages) lines.push_back({kError, message});
    return lines;
}

// Each call the family's services received for the method: its origin, then its arguments.
template <typename Answers>
Rows CallsTo(const mmisim::FamilyState<Answers>& family, const std::string& method) {
    Rows calls;
    for (const mmisim::Call& call : family.callsTo(method)) {
        calls.push_back({call.origin});
        calls.back().insert(calls.back().end(), call.args.begin(), call.args.end());
    }
    return calls;
}

constexpr const char* kNativeManagerClass = "com/corvex/mmitest/controller/MmiNativeManager";

inline jfieldID FailInfoField(JNIEnv* env) {
    return env->GetStaticFieldID(env->FindClass(kNativeManagerClass), "sTpCapacitanceFailInfo", "Ljava/lang/String;");
}

// MmiNativeManager.sTpCapacitanceFailInfo as Java sees it; nullopt for null.
inline std::optional<std::string> CapacitanceFailInfo(JNIEnv* env) {
    jclass clazz = env->FindClass(kNativeManagerClass);
    auto value = static_cast<jstring>(env->GetStaticObjectField(clazz, FailInfoField(env)));
    if (value == nullptr) return std::nullopt;
    const char* chars = env->GetStringUTFChars(value, nullptr);
    std::string text(chars);
    env->ReleaseStringUTFChars(value, chars);
    return text;
}

inline void SetCapacitanceFailInfo(JNIEnv* env, const char* text) {
    env->SetStaticObjectField(env->FindClass(kNativeManagerClass), FailInfoField(env), env->NewStringUTF(text));
}

// How many times MmiNativeManager.RegisterSuccess has run.
inline int RegisterSuccessCount(JNIEnv* env) {
    jclass clazz = env->FindClass(kNativeManagerClass);
    const int count = env->CallStaticIntMethod(clazz, env->GetStaticMethodID(clazz, "getRegisterSuccessCount", "()I"));
    EXPECT_FALSE(env->ExceptionCheck());
    return count;
}

// An environment for calling one of the library's native functions directly (see
// NativeTable): class lookups find `className` and the Java VM it reports is `vm`; the other
// functions these operations use go to the real JVM. One at a time.
class RedirectedEnv {
public:
    RedirectedEnv(JNIEnv* real, const char* className, JavaVM* vm) {
        sReal = real;
        sClassName = className;
        sVm = vm;
        mFunctions.FindClass = [](JNIEnv*, const char*) { return sReal->FindClass(sClassName); };
        mFunctions.GetJavaVM = [](JNIEnv*, JavaVM** out) {
            *out = sVm;
            return JNI_OK;
        };
        mFunctions.NewGlobalRef = [](JNIEnv*, jobject object) { return sReal->NewGlobalRef(object); };
        mFunctions.DeleteLocalRef = [](JNIEnv*, jobject object) { sReal->DeleteLocalRef(object); };
        mFunctions.ExceptionCheck = [](JNIEnv*) { return sReal->ExceptionCheck(); };
        mFunctions.ExceptionClear = [](JNIEnv*) { sReal->ExceptionClear(); };
        mFunctions.GetStaticFieldID = [](JNIEnv*, jclass clazz, const char* name, const char* signature) {
            return sReal->GetStaticFieldID(clazz, name, signature);
        };
        mFunctions.NewStringUTF = [](JNIEnv*, const char* text) { return sReal->NewStringUTF(text); };
        mFunctions.SetStaticObjectField = [](JNIEnv*, jclass clazz, jfieldID field, jobject value) {
            sReal->SetStaticObjectField(clazz, field, value);
        };
        mEnv.functions = &mFunctions;
    }
    JNIEnv* get() { return &mEnv; }

private:
    static inline JNIEnv* sReal = nullptr;
    static inline const char* sClassName = nullptr;
    static inline JavaVM* sVm = nullptr;
    JNINativeInterface_ mFunctions{};
    JNIEnv_ mEnv{};
};

// Kills the family's service while the delivery of its notices is held back, so that the
// calls meet a handle whose service is dead (they fail in transport); then lets the death
// notice through. Over AIDL the family is started again afterwards, so that the library's
// recovery, which waits for it, can finish.
inline void WithDeadService(mmisim::Family family, const std::function<void()>& calls) {
    const bool aidl = mmisim::Handset::Get().profile()[family].transport == mmisim::Transport::kAidl;
    aidl ? hostcontrol::HoldBinderNotices() : hostcontrol::HoldHidlNotices();
    mmisim::Handset::Get().Kill(family);
    calls();
    aidl ? hostcontrol::ReleaseBinderNotices() : hostcontrol::ReleaseHidlNotices();
    if (aidl) mmisim::Handset::Get().Start(family);
}

}  // namespace mmitest
