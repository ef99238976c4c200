// Shared pieces of the factory record, big-data and OEM-info tests: the backends they run
// on, Java model objects, the operations' own entry points, and the two ways a factory
// service can fail under a call that already chose it.
#pragma once

#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <jni.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "mmi_fixture.h"

namespace mmitest {

struct FactoryBackend {
    mmisim::Transport transport;
    int hidlMinor;     // HIDL: newest factory minor version served
    const char* name;  // "aidl" or "hidl", as the log lines say it
    const char* label;
};

inline const FactoryBackend kFactoryAidl{mmisim::Transport::kAidl, -1, "aidl", "Aidl"};
inline const FactoryBackend kFactoryHidl{mmisim::Transport::kHidl, 1, "hidl", "Hidl11"};
inline const FactoryBackend kFactoryHidl10{mmisim::Transport::kHidl, 0, "hidl", "Hidl10"};

inline void PrintTo(const FactoryBackend& backend, std::ostream* out) { *out << backend.label; }

inline std::string BackendLabel(const ::testing::TestParamInfo<FactoryBackend>& info) { return info.param.label; }

// A handset that serves only the factory interface, over the backend given.
inline mmisim::DeviceProfile FactoryOnly(const FactoryBackend& backend) {
    mmisim::DeviceProfile profile = mmisim::DeviceProfile::Bare();
    profile[mmisim::Family::kFactory].transport = backend.transport;
    profile[mmisim::Family::kFactory].hidlMinor = backend.hidlMinor;
    return profile;
}

inline void SetIntField(JNIEnv* env, jobject object, const char* field, jint value) {
    jclass clazz = env->GetObjectClass(object);
    jfieldID id = env->GetFieldID(clazz, field, "I");
    env->DeleteLocalRef(clazz);
    if (id == nullptr) env->ExceptionClear();
    ASSERT_NE(id, nullptr) << field;
    env->SetIntField(object, id, value);
}

// Sets a String field from UTF-8 text that holds only characters of the basic plane.
inline void SetTextField(JNIEnv* env, jobject object, const char* field, const char* text) {
    jclass clazz = env->GetObjectClass(object);
    jfieldID id = env->GetFieldID(clazz, field, "Ljava/lang/String;");
    env->DeleteLocalRef(clazz);
    if (id == nullptr) env->ExceptionClear();
    ASSERT_NE(id, nullptr) << field;
    jstring value = text != nullptr ? env->NewStringUTF(text) : nullptr;
    env->SetObjectField(object, id, value);
    if (value != nullptr) env->DeleteLocalRef(value);
}

constexpr const char* kSendOperation = "sendBigDataOperationNative";
constexpr const char* kSendOperationSig = "(Lcom/corvex/mmitest/model/BigDataOperation;)I";
constexpr const char* kSendValue = "sendBigDataValueNative";
constexpr const char* kSendValueSig = "(Lcom/corvex/mmitest/model/BigDataValue;)I";

// The library's native-method table as JNI_OnLoad registers it, captured through a
// stand-in environment (class lookups go to the real JVM), so a test can call a native
// function with arguments the JVM never passes, such as a null environment.
class NativeTable {
public:
    static std::map<std::string, void*> Capture(std::function<jint(JavaVM*)> onLoad, JNIEnv* real) {
        sReal = real;
        sMethods.clear();
        JNINativeInterface_ functions{};
        functions.FindClass = [](JNIEnv*, const char* name) { return sReal->FindClass(name); };
        functions.DeleteLocalRef = [](JNIEnv*, jobject ref) { sReal->DeleteLocalRef(ref); };
        functions.ExceptionCheck = [](JNIEnv*) { return sReal->ExceptionCheck(); };
        functions.ExceptionClear = [](JNIEnv*) { sReal->ExceptionClear(); };
        functions.RegisterNatives = [](JNIEnv*, jclass, const JNINativeMethod* methods, jint count) {
            for (jint i = 0; i < count; ++i) sMethods[methods[i].name] = methods[i].fnPtr;
            return JNI_OK;
        };
        JNIEnv_ env{};
        env.functions = &functions;
        sEnv = &env;
        JNIInvokeInterface_ invoke{};
        invoke.GetEnv = [](JavaVM*, void** out, jint) {
            *out = sEnv;
            return JNI_OK;
        };
        JavaVM_ vm{};
        vm.functions = &invoke;
        EXPECT_EQ(onLoad(&vm), 0x10004);
        sEnv = nullptr;
        return sMethods;
    }

private:
    static inline JNIEnv* sReal = nullptr;
    static inline JNIEnv* sEnv = nullptr;
    static inline std::map<std::string, void*> sMethods;
};

// Factory record tests over one backend, with a handset that serves only the factory.
class FactoryRecordTest : public MmiTest, public ::testing::WithParamInterface<FactoryBackend> {
protected:
    void BootFactory() { Boot(FactoryOnly(GetParam())); }
    bool Aidl() const { return GetParam().transport == mmisim::Transport::kAidl; }
    // "<operation> by aidl" or "<operation> by hidl".
    std::string By(const std::string& operation) const { return operation + " by " + GetParam().name; }

    // The arguments of the one call the factory service received for the method.
    std::vector<std::string> OnlyCall(const std::string& method) {
        const std::vector<mmisim::Call> calls = handset().factory().callsTo(method);
        EXPECT_EQ(calls.size(), 1u) << method;
        if (calls.size() != 1) return {};
        EXPECT_EQ(calls[0].origin, GetParam().name) << method;
        return calls[0].args;
    }

    // Runs `calls` while the factory service is dead but the library still holds it (its
    // death notice is held back), then lets the notice through, brings the service back
    // and waits until the library has reconnected.
    void WithServiceDeadUnderCalls(const std::function<void()>& calls) {
        Aidl() ? hostcontrol::HoldBinderNotices() : hostcontrol::HoldHidlNotices();
        handset().Kill(mmisim::Family::kFactory);
        calls();
        const size_t mark = log().mark();
        Aidl() ? hostcontrol::ReleaseBinderNotices() : hostcontrol::ReleaseHidlNotices();
        if (Aidl()) {
            EXPECT_TRUE(log().waitForMessage(mark, kWarn, "ServiceDied, remote hal service died", kNoticeTimeout));
            handset().Start(mmisim::Family::kFactory);
            EXPECT_TRUE(
                    log().waitForMessage(mark, kInfo, Prefixed("g_aidlFactoryInterface init success"), kNoticeTimeout));
        } else {
            EXPECT_TRUE(log().waitForMessage(mark, kWarn, Prefixed("ProcessServiceDied, cookie is:1"), kNoticeTimeout));
            EXPECT_TRUE(NoticesDelivered());
            handset().Start(mmisim::Family::kFactory);
            EXPECT_TRUE(
                    log().waitForMessage(mark, kInfo, Prefixed("g_hwFactoryInterface linkToDeath"), kNoticeTimeout));
        }
        EXPECT_TRUE(NoticesDelivered());
    }

    // Runs `call` with the AIDL factory service dying right after the dispatcher chose
    // AIDL (its line `choiceLine`) and before the operation reads the handle: the
    // operation finds no handle. The service is back and reconnected on return.
    void WithAidlHandleDroppedAfterChoice(const std::string& choiceLine, const std::function<void()>& call) {
        auto fired = std::make_shared<std::atomic<bool>>(false);
        auto dropped = std::make_shared<std::atomic<bool>>(false);
        log().setObserver([this, choiceLine, fired, dropped](const mmisim::LogEntry& entry) {
            if (entry.message != choiceLine || fired->exchange(true)) return;
            const size_t mark = log().mark();
            handset().Kill(mmisim::Family::kFactory);
            // The factory handle is dropped before the next family's exit line.
            dropped->store(log().waitForMessage(mark, kInfo, Prefixed("ExitDisplay"), kNoticeTimeout));
        });
        call();
        log().setObserver({});
        EXPECT_TRUE(dropped->load()) << choiceLine;
        const size_t mark = log().mark();
        handset().Start(mmisim::Family::kFactory);
        EXPECT_TRUE(log().waitForMessage(mark, kInfo, Prefixed("g_aidlFactoryInterface init success"), kNoticeTimeout));
        EXPECT_TRUE(NoticesDelivered());
    }
};

}  // namespace mmitest
