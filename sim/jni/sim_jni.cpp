// libmmi_sim_jni.so: the simulated handset seen from Java (com.corvex.mmitest.sim.SimulatedHandset).
#include <dlfcn.h>
#include <flicker_detector.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <jni.h>
#include <sim/handset.h>
#include <sim/light_source.h>
#include <sim/log_capture.h>
#include <sim/profile.h>

#include <chrono>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using mmisim::Family;
using mmisim::Handset;
using mmisim::LogCapture;
using mmisim::Profile;

constexpr const char* kHandsetClass = "com/corvex/mmitest/sim/SimulatedHandset";
constexpr const char* kLibrary = "libZtMmi_jni.so";
constexpr std::chrono::milliseconds kSettleTimeout{10000};
constexpr int kFlickerSamples = 256;
constexpr float kFlickerSampleRate = 1000.0f;
constexpr int kSpectrumBins = 500;

// The profile in force (with the answers changed since), the profile as it was loaded, and
// the lock that orders every change of the handset.
std::mutex g_lock;
std::optional<Profile> g_profile;
std::optional<Profile> g_loaded;

// A Java exception to throw from a native method, carried out of C++ code as a C++ one.
struct JavaThrow {
    const char* className;
    std::string message;
};

void Throw(JNIEnv* env, const char* className, const std::string& message) {
    if (env->ExceptionCheck()) return;  // the first exception wins
    jclass clazz = env->FindClass(className);
    if (clazz != nullptr) {
        env->ThrowNew(clazz, message.c_str());
        env->DeleteLocalRef(clazz);
    }
}

// Runs the body of a native method; C++ exceptions become Java exceptions.
template <typename R>
R Guarded(JNIEnv* env, R fallback, const std::function<R()>& body) {
    try {
        return body();
    } catch (const JavaThrow& error) {
        Throw(env, error.className, error.message);
    } catch (const mmisim::ProfileError& error) {
        Throw(env, "java/lang/IllegalArgumentException", error.what());
    } catch (const std::exception& error) {
        Throw(env, "java/lang/IllegalStateException", std::string("simulated handset: ") + error.what());
    }
    return fallback;
}

void GuardedVoid(JNIEnv* env, const std::function<void()>& body) {
    Guarded<int>(env, 0, [&] {
        body();
        return 0;
    });
}

std::string ReadString(JNIEnv* env, jstring text, const char* what) {
    if (text == nullptr) throw JavaThrow{"java/lang/NullPointerException", std::string(what) + " is null"};
    const char* chars = env->GetStringUTFChars(text, nullptr);
    if (chars == nullptr) throw JavaThrow{"java/lang/OutOfMemoryError", "reading a string"};
    std::string copy = chars;
    env->ReleaseStringUTFChars(text, chars);
    return copy;
}

Family FamilyOf(JNIEnv* env, jstring name) {
    const std::string text = ReadString(env, name, "family");
    std::optional<Family> found = mmisim::FamilyFromName(text);
    if (!found) {
        std::string known;
        for (Family family : mmisim::kAllFamilies) known += std::string(known.empty() ? "" : ", ") + mmisim::FamilyName(family);
        throw JavaThrow{"java/lang/IllegalArgumentException",
                        "unknown service family \"" + text + "\" (known: " + known + ")"};
    }
    return *found;
}

Profile& CurrentProfile() {
    if (!g_profile) {
        throw JavaThrow{"java/lang/IllegalStateException",
                        "no device profile is served yet: call SimulatedHandset.useProfile first"};
    }
    return *g_profile;
}

jobjectArray StringArray(JNIEnv* env, const std::vector<std::string>& texts) {
    jclass stringClass = env->FindClass("java/lang/String");
    if (stringClass == nullptr) return nullptr;
    jobjectArray array = env->NewObjectArray(static_cast<jsize>(texts.size()), stringClass, nullptr);
    env->DeleteLocalRef(stringClass);
    for (size_t i = 0; array != nullptr && i < texts.size(); ++i) {
        jstring text = env->NewStringUTF(texts[i].c_str());
        if (text == nullptr) return nullptr;
        env->SetObjectArrayElement(array, static_cast<jsize>(i), text);
        env->DeleteLocalRef(text);
    }
    return array;
}

bool NoticesDelivered(std::chrono::milliseconds timeout) {
    // A HIDL notice may post a binder notice and the other way round: settle both twice.
    bool idle = true;
    for (int round = 0; round < 2; ++round) {
        idle = hostcontrol::WaitForHidlNotices(timeout) && idle;
        idle = hostcontrol::WaitForBinderNotices(timeout) && idle;
    }
    return idle;
}

// Changes the handset under the MMI library as a restart of the application would see it:
// when the library is loaded, it is unloaded first (releasing every service) and loaded
// again afterwards (connecting to the services as they are then).
void AroundLibrary(JNIEnv* env, const std::function<void()>& change) {
    void* library = dlopen(kLibrary, RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) {
        change();
        return;
    }
    std::unique_ptr<void, int (*)(void*)> closer(library, dlclose);
    auto onLoad = reinterpret_cast<jint (*)(JavaVM*, void*)>(dlsym(library, "JNI_OnLoad"));
    auto onUnload = reinterpret_cast<void (*)(JavaVM*, void*)>(dlsym(library, "JNI_OnUnload"));
    JavaVM* vm = nullptr;
    if (onLoad == nullptr || onUnload == nullptr || env->GetJavaVM(&vm) != JNI_OK) {
        throw JavaThrow{"java/lang/IllegalStateException", "libZtMmi_jni.so is loaded but its entry points are missing"};
    }
    // A killed AIDL service holds the library's recovery until it is back: start every
    // killed service first, so that the library releases everything it holds.
    for (Family family : mmisim::kAllFamilies) Handset::Get().Start(family);
    NoticesDelivered(kSettleTimeout);
    onUnload(vm, nullptr);
    NoticesDelivered(kSettleTimeout);
    change();
    const jint version = onLoad(vm, nullptr);
    NoticesDelivered(kSettleTimeout);
    if (version < 0) {
        throw JavaThrow{"java/lang/IllegalStateException", "libZtMmi_jni.so failed to load again (JNI_OnLoad returned " +
                                                                   std::to_string(version) + "); see the log"};
    }
}

// --- profiles and answers --------------------------------------------------------------

void UseProfile(JNIEnv* env, jclass, jstring nameOrPath) {
    GuardedVoid(env, [&] {
        Profile profile = mmisim::LoadProfile(ReadString(env, nameOrPath, "profile"));
        std::lock_guard<std::mutex> lock(g_lock);
        AroundLibrary(env, [&] { mmisim::ServeProfile(profile); });
        g_profile = profile;
        g_loaded = std::move(profile);
    });
}

jstring ProfileName(JNIEnv* env, jclass) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        std::lock_guard<std::mutex> lock(g_lock);
        return g_profile ? env->NewStringUTF(g_profile->name.c_str()) : nullptr;
    });
}

jstring ProfileSource(JNIEnv* env, jclass) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        std::lock_guard<std::mutex> lock(g_lock);
        return g_profile ? env->NewStringUTF(g_profile->source.c_str()) : nullptr;
    });
}

jstring ProfileDescription(JNIEnv* env, jclass) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        std::lock_guard<std::mutex> lock(g_lock);
        return g_profile ? env->NewStringUTF(g_profile->description.c_str()) : nullptr;
    });
}

jstring ServiceOf(JNIEnv* env, jclass, jstring family) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        const Family which = FamilyOf(env, family);
        std::lock_guard<std::mutex> lock(g_lock);
        const mmisim::FamilyConfig& config = CurrentProfile().device[which];
        switch (config.transport) {
            case mmisim::Transport::kAidl: return env->NewStringUTF("aidl");
            case mmisim::Transport::kHidl: return env->NewStringUTF("hidl");
            case mmisim::Transport::kNone: break;
        }
        return env->NewStringUTF("none");
    });
}

jobjectArray ShippedProfiles(JNIEnv* env, jclass) {
    return Guarded<jobjectArray>(env, nullptr, [&] { return StringArray(env, mmisim::ShippedProfileNames()); });
}

void SetAnswerJson(JNIEnv* env, jclass, jstring family, jstring key, jstring json) {
    GuardedVoid(env, [&] {
        const Family which = FamilyOf(env, family);
        const std::string keyText = ReadString(env, key, "key");
        const std::string jsonText = ReadString(env, json, "value");
        std::lock_guard<std::mutex> lock(g_lock);
        Profile& profile = CurrentProfile();
        mmisim::SetAnswer(profile, mmisim::FamilyName(which), keyText, jsonText);
        mmisim::ApplyAnswers(profile, which);
    });
}

jstring AnswerJson(JNIEnv* env, jclass, jstring family, jstring key) {
    return Guarded<jstring>(env, nullptr, [&] {
        const Family which = FamilyOf(env, family);
        const std::string keyText = ReadString(env, key, "key");
        std::lock_guard<std::mutex> lock(g_lock);
        return env->NewStringUTF(mmisim::GetAnswer(CurrentProfile(), mmisim::FamilyName(which), keyText).c_str());
    });
}

void Reset(JNIEnv* env, jclass) {
    GuardedVoid(env, [&] {
        std::lock_guard<std::mutex> lock(g_lock);
        CurrentProfile();
        // The answers as loaded, not the ones changed since.
        AroundLibrary(env, [&] { mmisim::ServeProfile(*g_loaded); });
        g_profile = g_loaded;
        LogCapture::Install().clear();
    });
}

// --- services --------------------------------------------------------------------------

void Kill(JNIEnv* env, jclass, jstring name) {
    GuardedVoid(env, [&] {
        const Family family = FamilyOf(env, name);
        std::lock_guard<std::mutex> lock(g_lock);
        Handset::Get().Kill(family);
    });
}

void Start(JNIEnv* env, jclass, jstring name) {
    GuardedVoid(env, [&] {
        const Family family = FamilyOf(env, name);
        std::lock_guard<std::mutex> lock(g_lock);
        Handset::Get().Start(family);
    });
}

jboolean IsRunning(JNIEnv* env, jclass, jstring name) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] {
        return Handset::Get().IsRunning(FamilyOf(env, name)) ? JNI_TRUE : JNI_FALSE;
    });
}

jboolean AwaitDeathHandled(JNIEnv* env, jclass, jstring name, jlong timeoutMillis) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] {
        const Family family = FamilyOf(env, name);
        const std::chrono::milliseconds timeout(timeoutMillis < 0 ? 0 : timeoutMillis);
        switch (Handset::Get().profile()[family].transport) {
            case mmisim::Transport::kNone: return JNI_TRUE;
            case mmisim::Transport::kHidl: return hostcontrol::WaitForHidlNotices(timeout) ? JNI_TRUE : JNI_FALSE;
            case mmisim::Transport::kAidl: break;
        }
        // The library's AIDL recovery drops every family and then waits for the dead service
        // to come back: it has handled the death once it waits for that service.
        return hostcontrol::WaitForWaiters(Handset::AidlServiceName(family), 1, timeout) ? JNI_TRUE : JNI_FALSE;
    });
}

jboolean AwaitNoticesDelivered(JNIEnv* env, jclass, jlong timeoutMillis) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] {
        return NoticesDelivered(std::chrono::milliseconds(timeoutMillis < 0 ? 0 : timeoutMillis)) ? JNI_TRUE
                                                                                                 : JNI_FALSE;
    });
}

jboolean NotifyCameraEvent(JNIEnv* env, jclass, jint serviceResult) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] {
        JavaVM* vm = nullptr;
        if (env->GetJavaVM(&vm) != JNI_OK) return JNI_FALSE;
        // The camera service's thread is attached to the VM while it calls the client.
        const bool delivered = Handset::Get().NotifyVaelonEvent(
                serviceResult,
                [vm] {
                    JNIEnv* threadEnv = nullptr;
                    vm->AttachCurrentThread(reinterpret_cast<void**>(&threadEnv), nullptr);
                },
                [vm] { vm->DetachCurrentThread(); });
        return delivered ? JNI_TRUE : JNI_FALSE;
    });
}

// --- log -------------------------------------------------------------------------------

std::vector<std::string> BriefLines(const std::vector<mmisim::LogEntry>& entries) {
    std::vector<std::string> lines;
    lines.reserve(entries.size());
    for (const mmisim::LogEntry& entry : entries) lines.push_back(LogCapture::Brief(entry));
    return lines;
}

jobjectArray LogLines(JNIEnv* env, jclass) {
    return Guarded<jobjectArray>(env, nullptr, [&] { return StringArray(env, BriefLines(LogCapture::Install().entries())); });
}

jlong LogMark(JNIEnv* env, jclass) {
    return Guarded<jlong>(env, 0, [&] { return static_cast<jlong>(LogCapture::Install().mark()); });
}

jobjectArray LogLinesSince(JNIEnv* env, jclass, jlong mark) {
    return Guarded<jobjectArray>(env, nullptr, [&] {
        return StringArray(env, BriefLines(LogCapture::Install().since(static_cast<size_t>(mark < 0 ? 0 : mark))));
    });
}

jboolean AwaitLogLine(JNIEnv* env, jclass, jlong mark, jstring text, jlong timeoutMillis) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] {
        const std::string wanted = ReadString(env, text, "text");
        const bool found = LogCapture::Install().waitFor(
                static_cast<size_t>(mark < 0 ? 0 : mark),
                [&](const mmisim::LogEntry& entry) { return LogCapture::Brief(entry).find(wanted) != std::string::npos; },
                std::chrono::milliseconds(timeoutMillis < 0 ? 0 : timeoutMillis));
        return found ? JNI_TRUE : JNI_FALSE;
    });
}

void ClearLog(JNIEnv*, jclass) { LogCapture::Install().clear(); }

// --- flicker ---------------------------------------------------------------------------

jintArray LightSamples(JNIEnv* env, jclass) {
    return Guarded<jintArray>(env, nullptr, [&]() -> jintArray {
        std::vector<int32_t> samples;
        {
            std::lock_guard<std::mutex> lock(g_lock);
            const Profile& profile = CurrentProfile();
            if (!profile.flicker) return nullptr;
            samples = mmisim::LightSourceSamples(profile.flicker->light, kFlickerSamples, kFlickerSampleRate);
        }
        jintArray array = env->NewIntArray(static_cast<jsize>(samples.size()));
        if (array != nullptr) env->SetIntArrayRegion(array, 0, static_cast<jsize>(samples.size()), samples.data());
        return array;
    });
}

void ReadSamples(JNIEnv* env, jintArray samples, int (&into)[kFlickerSamples]) {
    if (samples == nullptr) throw JavaThrow{"java/lang/NullPointerException", "samples is null"};
    const jsize length = env->GetArrayLength(samples);
    if (length < kFlickerSamples) {
        throw JavaThrow{"java/lang/IllegalArgumentException",
                        "the detector needs 256 samples, not " + std::to_string(length)};
    }
    static_assert(sizeof(jint) == sizeof(int), "jint is int");
    env->GetIntArrayRegion(samples, 0, kFlickerSamples, reinterpret_cast<jint*>(into));
}

jfloatArray FlickerSpectrum(JNIEnv* env, jclass, jintArray samples) {
    return Guarded<jfloatArray>(env, nullptr, [&]() -> jfloatArray {
        int raw[kFlickerSamples];
        ReadSamples(env, samples, raw);
        // The detector's own steps, kept apart so that the magnitudes can be read: filter,
        // window, zero padding and the transform, as one detection runs them.
        auto context = std::make_unique<AlgoContext>();
        if (!InitFrequencyDetectAlgo(*context)) throw JavaThrow{"java/lang/IllegalStateException", "clearing failed"};
        PrepareFrequenceDetectAlgo(*context, raw, kFlickerSamples, kFlickerSampleRate);
        BandingLpf(context->rawData, context->filteredData, kFlickerSamples);
        ProcessHammingWindowFilter(*context);
        std::memset(context->fftInput, 0, sizeof(context->fftInput));
        for (int i = 0; i < context->windowLength; ++i) context->fftInput[i] = context->filteredData[i];
        AnalyseDataWithFft(*context);
        jfloatArray array = env->NewFloatArray(kSpectrumBins);
        if (array != nullptr) env->SetFloatArrayRegion(array, 0, kSpectrumBins, context->magnitude);
        return array;
    });
}

jint DetectFlickerFrequency(JNIEnv* env, jclass, jintArray samples) {
    return Guarded<jint>(env, -1, [&]() -> jint {
        int raw[kFlickerSamples];
        ReadSamples(env, samples, raw);
        int frequency = -1;
        if (DetectFlickerFrequence(raw, kFlickerSamples, frequency, kFlickerSampleRate) != 0) {
            throw JavaThrow{"java/lang/IllegalStateException", "the detector could not clear its working record"};
        }
        return frequency;
    });
}

#define NATIVE(name, signature, function) \
    { const_cast<char*>(name), const_cast<char*>(signature), reinterpret_cast<void*>(function) }

const JNINativeMethod kMethods[] = {
        NATIVE("useProfile", "(Ljava/lang/String;)V", UseProfile),
        NATIVE("profileName", "()Ljava/lang/String;", ProfileName),
        NATIVE("profileSource", "()Ljava/lang/String;", ProfileSource),
        NATIVE("profileDescription", "()Ljava/lang/String;", ProfileDescription),
        NATIVE("serviceOf", "(Ljava/lang/String;)Ljava/lang/String;", ServiceOf),
        NATIVE("shippedProfiles", "()[Ljava/lang/String;", ShippedProfiles),
        NATIVE("setAnswerJson", "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)V", SetAnswerJson),
        NATIVE("answerJson", "(Ljava/lang/String;Ljava/lang/String;)Ljava/lang/String;", AnswerJson),
        NATIVE("reset", "()V", Reset),
        NATIVE("kill", "(Ljava/lang/String;)V", Kill),
        NATIVE("start", "(Ljava/lang/String;)V", Start),
        NATIVE("isRunning", "(Ljava/lang/String;)Z", IsRunning),
        NATIVE("awaitDeathHandled", "(Ljava/lang/String;J)Z", AwaitDeathHandled),
        NATIVE("awaitNoticesDelivered", "(J)Z", AwaitNoticesDelivered),
        NATIVE("notifyCameraEvent", "(I)Z", NotifyCameraEvent),
        NATIVE("logLines", "()[Ljava/lang/String;", LogLines),
        NATIVE("logMark", "()J", LogMark),
        NATIVE("logLinesSince", "(J)[Ljava/lang/String;", LogLinesSince),
        NATIVE("awaitLogLine", "(JLjava/lang/String;J)Z", AwaitLogLine),
        NATIVE("clearLog", "()V", ClearLog),
        NATIVE("lightSamples", "()[I", LightSamples),
        NATIVE("flickerSpectrum", "([I)[F", FlickerSpectrum),
        NATIVE("detectFlickerFrequency", "([I)I", DetectFlickerFrequency),
};

#undef NATIVE

}  // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void*) {
    LogCapture::Install();
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_6) != JNI_OK) return JNI_ERR;
    jclass clazz = env->FindClass(kHandsetClass);
    if (clazz == nullptr) return JNI_ERR;
    const jint result = env->RegisterNatives(clazz, kMethods, sizeof(kMethods) / sizeof(kMethods[0]));
    env->DeleteLocalRef(clazz);
    return result < 0 ? JNI_ERR : JNI_VERSION_1_6;
}
