// libmmi_sim_jni.so: the simulated handset seen from Java (com.corvex.mmitest.sim.SimulatedHandset).
#include <dlfcn.h>
#include <flicker_detector.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>
#include <jni.h>
#include <nativehelper/jni_macros.h>
#include <sim/handset.h>
#include <sim/light_source.h>
#include <sim/log_capture.h>
#include <sim/profile.h>

#include <sim/panel_sim.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
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
constexpr int kMaxWindowLength = 300;  // the detector's working record

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

// A Java string as UTF-8 (a character outside the basic plane as one four-byte sequence;
// a lone surrogate as U+FFFD).
std::string ReadString(JNIEnv* env, jstring text, const char* what) {
    if (text == nullptr) throw JavaThrow{"java/lang/NullPointerException", std::string(what) + " is null"};
    const jsize length = env->GetStringLength(text);
    std::vector<jchar> units(static_cast<size_t>(length));
    if (length > 0) env->GetStringRegion(text, 0, length, units.data());
    std::string utf8;
    utf8.reserve(units.size());
    const auto put = [&utf8](uint32_t c) {
        if (c < 0x80) {
            utf8 += static_cast<char>(c);
        } else if (c < 0x800) {
            utf8 += static_cast<char>(0xC0 | (c >> 6));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            utf8 += static_cast<char>(0xE0 | (c >> 12));
            utf8 += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            utf8 += static_cast<char>(0xF0 | (c >> 18));
            utf8 += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            utf8 += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        }
    };
    for (size_t i = 0; i < units.size(); ++i) {
        const uint32_t unit = units[i];
        const bool high = unit >= 0xD800 && unit <= 0xDBFF;
        const bool lowNext = i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF;
        if (high && lowNext) {
            put(0x10000 + ((unit - 0xD800) << 10) + (units[++i] - 0xDC00));
        } else {
            put(unit >= 0xD800 && unit <= 0xDFFF ? 0xFFFD : unit);
        }
    }
    return utf8;
}

// A Java string of bytes as the services, the answers and the log hold them: UTF-8, or the
// Java VM's modified UTF-8 that the library passes on (a character outside the basic plane
// as two encoded surrogates, U+0000 as C0 80). NewStringUTF reads only the second, and a
// four-byte UTF-8 sequence (an emoji) comes out of it garbled. A byte that starts no valid
// sequence becomes U+FFFD.
jstring JavaText(JNIEnv* env, const std::string& bytes) {
    std::vector<jchar> units;
    units.reserve(bytes.size());
    const size_t size = bytes.size();
    for (size_t i = 0; i < size;) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        size_t length = 0;
        uint32_t c = 0;
        if (lead < 0x80) {
            length = 1;
            c = lead;
        } else if ((lead & 0xE0) == 0xC0) {
            length = 2;
            c = lead & 0x1F;
        } else if ((lead & 0xF0) == 0xE0) {
            length = 3;
            c = lead & 0x0F;
        } else if ((lead & 0xF8) == 0xF0) {
            length = 4;
            c = lead & 0x07;
        }
        bool valid = length != 0 && i + length <= size;
        for (size_t k = 1; valid && k < length; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            valid = (next & 0xC0) == 0x80;
            c = (c << 6) | (next & 0x3F);
        }
        // Shortest forms only, but for modified UTF-8's two-byte U+0000.
        valid = valid && (length != 2 || c >= 0x80 || c == 0) && (length != 3 || c >= 0x800) &&
                (length != 4 || (c >= 0x10000 && c <= 0x10FFFF));
        if (!valid) {
            units.push_back(0xFFFD);
            ++i;
            continue;
        }
        if (c >= 0x10000) {
            units.push_back(static_cast<jchar>(0xD800 + ((c - 0x10000) >> 10)));
            units.push_back(static_cast<jchar>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        } else {
            units.push_back(static_cast<jchar>(c));  // an encoded surrogate stays one unit
        }
        i += length;
    }
    return env->NewString(units.data(), static_cast<jsize>(units.size()));
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
        jstring text = JavaText(env, texts[i]);
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

// --- restarts of the application -------------------------------------------------------
//
// A restart is what the application's process dying and starting again does to the MMI
// library. The instance in use is told to unload (JNI_OnUnload) and releases its services;
// everything it registered with the service managers (death links, HIDL registration
// listeners, the camera client's callback) is dropped, as the kernel drops a dead
// process's; then a fresh instance loads, connects, and registers its native methods on
// MmiNativeManager again (RegisterNatives rebinds them), with static state of its own. A
// Java VM maps a library file only once, so each fresh instance is a private copy of the
// library's file, loaded from a path of its own. The copy an instance replaced stays mapped
// until the next restart (a call still running in it has returned by then) and is unmapped
// and deleted then; the instance the Java VM loaded itself stays mapped, inert.

struct Instance {
    void* handle = nullptr;
    std::string copy;  // the private copy's file; empty for the instance the Java VM loaded
};

// Guarded by g_lock.
std::optional<Instance> g_current;   // the instance whose native methods are registered
std::optional<Instance> g_replaced;  // the one it replaced, unmapped at the next restart
std::string g_libraryFile;           // the file the Java VM loaded
std::string* g_copyFolder = nullptr;
unsigned g_copies = 0;

template <typename Function>
Function EntryPoint(void* handle, const char* name) {
    auto entry = reinterpret_cast<Function>(dlsym(handle, name));
    if (entry == nullptr) {
        throw JavaThrow{"java/lang/IllegalStateException", std::string("libZtMmi_jni.so has no ") + name};
    }
    return entry;
}

// The instance in use, or nothing when MmiNativeManager has not loaded the library yet.
std::optional<Instance> CurrentInstance() {
    if (g_current) return g_current;
    void* loaded = dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD);
    if (loaded == nullptr) return std::nullopt;
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(dlsym(loaded, "JNI_OnLoad")), &info) == 0 || info.dli_fname == nullptr) {
        throw JavaThrow{"java/lang/IllegalStateException", "cannot find the file of libZtMmi_jni.so"};
    }
    g_libraryFile = info.dli_fname;
    g_current = Instance{loaded, ""};  // the reference is kept: the Java VM never unloads it
    return g_current;
}

void RemoveCopies() {
    if (g_copyFolder == nullptr) return;
    std::error_code ignored;
    std::filesystem::remove_all(*g_copyFolder, ignored);
}

Instance LoadFreshCopy() {
    if (g_copyFolder == nullptr) {
        std::error_code noTemp;
        std::string pattern = (std::filesystem::temp_directory_path(noTemp) / "mmi-sim-XXXXXX").string();
        if (noTemp || mkdtemp(pattern.data()) == nullptr) {
            throw JavaThrow{"java/lang/IllegalStateException",
                            "cannot make a folder for copies of libZtMmi_jni.so: " + std::string(std::strerror(errno))};
        }
        g_copyFolder = new std::string(pattern);
        std::atexit(RemoveCopies);
    }
    const std::string file = *g_copyFolder + "/libZtMmi_jni-" + std::to_string(++g_copies) + ".so";
    std::error_code error;
    std::filesystem::copy_file(g_libraryFile, file, error);
    if (error) {
        throw JavaThrow{"java/lang/IllegalStateException",
                        "cannot copy " + g_libraryFile + " to " + file + ": " + error.message()};
    }
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const std::string reason = dlerror();
        std::filesystem::remove(file, error);
        throw JavaThrow{"java/lang/IllegalStateException", "cannot load a fresh libZtMmi_jni.so: " + reason};
    }
    return Instance{handle, file};
}

void Unmap(const Instance& instance) {
    if (instance.copy.empty()) return;  // the Java VM's own
    dlclose(instance.handle);
    std::error_code ignored;
    std::filesystem::remove(instance.copy, ignored);
}

// Restarts the application around a change of the handset: `change` runs while no
// instance is loaded, `whileUnloaded` before the old process's registrations are dropped.
// Without a loaded library only `change` runs. Called with g_lock held.
void Restart(JNIEnv* env, const std::function<void()>& change, const std::function<void()>& whileUnloaded = {}) {
    const std::optional<Instance> current = CurrentInstance();
    if (!current) {
        change();
        return;
    }
    JavaVM* vm = nullptr;
    if (env->GetJavaVM(&vm) != JNI_OK) throw JavaThrow{"java/lang/IllegalStateException", "no Java VM"};
    // A killed AIDL service holds the library's recovery until it is back: start every
    // killed service first, so that the instance can release everything it holds.
    for (Family family : mmisim::kAllFamilies) Handset::Get().Start(family);
    NoticesDelivered(kSettleTimeout);
    EntryPoint<void (*)(JavaVM*, void*)>(current->handle, "JNI_OnUnload")(vm, nullptr);
    NoticesDelivered(kSettleTimeout);
    if (whileUnloaded) whileUnloaded();
    // The process is gone: nothing it registered reaches it any more.
    hostcontrol::DropClientLinks();
    hostcontrol::DropHidlClientRegistrations();
    Handset::Get().ForgetClients();
    change();
    const Instance fresh = LoadFreshCopy();
    if (g_replaced) Unmap(*g_replaced);
    g_replaced = g_current;
    g_current = fresh;
    const jint version = EntryPoint<jint (*)(JavaVM*, void*)>(fresh.handle, "JNI_OnLoad")(vm, nullptr);
    NoticesDelivered(kSettleTimeout);
    if (version < 0) {
        throw JavaThrow{"java/lang/IllegalStateException", "the fresh libZtMmi_jni.so failed to load (JNI_OnLoad returned " +
                                                                   std::to_string(version) + "); see the log"};
    }
}

// --- the display processor's vendor library ------------------------------------------

// The simulated libpixelworksMMITest.so that the MMI library finds on the loader's path,
// or null when it is not there. Kept open, so its answers stay as set while the MMI library
// closes and opens it.
void* PanelLibrary() {
    static void* const library = dlopen("libpixelworksMMITest.so", RTLD_NOW | RTLD_LOCAL);
    return library;
}

template <typename Function>
Function PanelControl(const char* name) {
    void* library = PanelLibrary();
    if (library == nullptr) {
        throw JavaThrow{"java/lang/IllegalStateException",
                        "the display processor's library libpixelworksMMITest.so is not on the loader's path "
                        "(LD_LIBRARY_PATH): this handset has none"};
    }
    auto control = reinterpret_cast<Function>(dlsym(library, name));
    if (control == nullptr) throw JavaThrow{"java/lang/IllegalStateException", std::string("no ") + name};
    return control;
}

// Serves the profile as a fresh handset: its services, answers and faults, and the panel
// library's default answers with no calls received.
void ServeFresh(const Profile& profile) {
    mmisim::ServeProfile(profile);
    if (PanelLibrary() != nullptr) PanelControl<decltype(&PanelSimReset)>("PanelSimReset")();
}

// --- profiles and answers --------------------------------------------------------------

void UseProfile(JNIEnv* env, jclass, jstring nameOrPath) {
    GuardedVoid(env, [&] {
        Profile profile = mmisim::LoadProfile(ReadString(env, nameOrPath, "profile"));
        std::lock_guard<std::mutex> lock(g_lock);
        Restart(env, [&] { ServeFresh(profile); });
        g_profile = profile;
        g_loaded = std::move(profile);
    });
}

jstring ProfileName(JNIEnv* env, jclass) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        std::lock_guard<std::mutex> lock(g_lock);
        return g_profile ? JavaText(env, g_profile->name) : nullptr;
    });
}

jstring ProfileSource(JNIEnv* env, jclass) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        std::lock_guard<std::mutex> lock(g_lock);
        return g_profile ? JavaText(env, g_profile->source) : nullptr;
    });
}

jstring ProfileDescription(JNIEnv* env, jclass) {
    return Guarded<jstring>(env, nullptr, [&]() -> jstring {
        std::lock_guard<std::mutex> lock(g_lock);
        return g_profile ? JavaText(env, g_profile->description) : nullptr;
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
        return JavaText(env, mmisim::GetAnswer(CurrentProfile(), mmisim::FamilyName(which), keyText));
    });
}

void Reset(JNIEnv* env, jclass) {
    GuardedVoid(env, [&] {
        std::lock_guard<std::mutex> lock(g_lock);
        CurrentProfile();
        // The answers as loaded, not the ones changed since.
        Restart(env, [&] { ServeFresh(*g_loaded); });
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

// Java's own text for a throwable, on the thread that caught it ("" when that fails).
std::string ThrowableText(JNIEnv* env, jthrowable throwable) {
    jclass clazz = env->GetObjectClass(throwable);
    jmethodID toString = env->GetMethodID(clazz, "toString", "()Ljava/lang/String;");
    env->DeleteLocalRef(clazz);
    auto text = toString == nullptr ? nullptr : static_cast<jstring>(env->CallObjectMethod(throwable, toString));
    if (env->ExceptionCheck() || text == nullptr) {
        env->ExceptionClear();
        return "";
    }
    const char* chars = env->GetStringUTFChars(text, nullptr);
    std::string copy = chars != nullptr ? chars : "";
    if (chars != nullptr) env->ReleaseStringUTFChars(text, chars);
    env->DeleteLocalRef(text);
    return copy;
}

// Has the camera service report an event to its registered client from a thread of the
// service's. Attached, the thread is like a binder thread of the application's runtime,
// where the library must leave no Java exception pending (on a device the runtime aborts
// on one): an exception left there is cleared and reported as an IllegalStateException.
bool DeliverCameraEvent(JNIEnv* env, jint serviceResult, bool attached) {
    if (!attached) return Handset::Get().NotifyVaelonEvent(serviceResult);
    JavaVM* vm = nullptr;
    if (env->GetJavaVM(&vm) != JNI_OK) return false;
    std::optional<std::string> leftPending;
    const bool delivered = Handset::Get().NotifyVaelonEvent(
            serviceResult,
            [vm] {
                JNIEnv* threadEnv = nullptr;
                vm->AttachCurrentThread(reinterpret_cast<void**>(&threadEnv), nullptr);
            },
            [vm, &leftPending] {
                JNIEnv* threadEnv = nullptr;
                if (vm->GetEnv(reinterpret_cast<void**>(&threadEnv), JNI_VERSION_1_6) == JNI_OK &&
                    threadEnv->ExceptionCheck()) {
                    jthrowable pending = threadEnv->ExceptionOccurred();
                    threadEnv->ExceptionClear();
                    leftPending = ThrowableText(threadEnv, pending);
                    threadEnv->DeleteLocalRef(pending);
                }
                vm->DetachCurrentThread();
            });
    if (leftPending) {
        throw JavaThrow{"java/lang/IllegalStateException",
                        "the library left a Java exception pending on the camera service's thread: " + *leftPending};
    }
    return delivered;
}

jboolean NotifyCameraEvent(JNIEnv* env, jclass, jint serviceResult) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] { return DeliverCameraEvent(env, serviceResult, true) ? JNI_TRUE : JNI_FALSE; });
}

jboolean NotifyCameraEventFromUnattachedThread(JNIEnv* env, jclass, jint serviceResult) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] { return DeliverCameraEvent(env, serviceResult, false) ? JNI_TRUE : JNI_FALSE; });
}

jboolean NotifyCameraEventAfterUnload(JNIEnv* env, jclass, jint serviceResult) {
    return Guarded<jboolean>(env, JNI_FALSE, [&] {
        std::lock_guard<std::mutex> lock(g_lock);
        CurrentProfile();
        if (!CurrentInstance()) return JNI_FALSE;  // never loaded: no client registered
        bool delivered = false;
        std::optional<JavaThrow> failure;
        Restart(env, [] {}, [&] {
            try {
                delivered = DeliverCameraEvent(env, serviceResult, true);
            } catch (const JavaThrow& error) {
                failure = error;  // reported once the restart is complete
            }
        });
        if (failure) throw *failure;
        return delivered ? JNI_TRUE : JNI_FALSE;
    });
}

// --- what the services received, and how they misbehave --------------------------------

// Each call as {generation, version, method, arguments...}.
jobjectArray CallRecords(JNIEnv* env, jclass, jstring family) {
    return Guarded<jobjectArray>(env, nullptr, [&]() -> jobjectArray {
        const std::vector<mmisim::Call> calls = Handset::Get().calls(FamilyOf(env, family));
        jclass rowClass = env->FindClass("[Ljava/lang/String;");
        if (rowClass == nullptr) return nullptr;
        jobjectArray rows = env->NewObjectArray(static_cast<jsize>(calls.size()), rowClass, nullptr);
        env->DeleteLocalRef(rowClass);
        for (size_t i = 0; rows != nullptr && i < calls.size(); ++i) {
            const mmisim::Call& call = calls[i];
            std::vector<std::string> row{call.origin.rfind("hidl", 0) == 0 ? "hidl" : "aidl", call.version, call.method};
            row.insert(row.end(), call.args.begin(), call.args.end());
            jobjectArray texts = StringArray(env, row);
            if (texts == nullptr) return nullptr;
            env->SetObjectArrayElement(rows, static_cast<jsize>(i), texts);
            env->DeleteLocalRef(texts);
        }
        return rows;
    });
}

// Changes the faults of a served family's services.
void ChangeFaults(JNIEnv* env, jstring family, const std::function<void(Family, mmisim::ServiceFaults&)>& change) {
    GuardedVoid(env, [&] {
        const Family which = FamilyOf(env, family);
        std::lock_guard<std::mutex> lock(g_lock);
        if (CurrentProfile().device[which].transport == mmisim::Transport::kNone) {
            throw JavaThrow{"java/lang/IllegalArgumentException",
                            std::string("the ") + mmisim::FamilyName(which) + " service is not served on this handset"};
        }
        mmisim::ServiceFaults faults = Handset::Get().faults(which);
        change(which, faults);
        Handset::Get().setFaults(which, faults);
    });
}

int32_t Millis(jint millis) {
    if (millis < 0) throw JavaThrow{"java/lang/IllegalArgumentException", "a time in milliseconds must not be negative"};
    return millis;
}

void FailCalls(JNIEnv* env, jclass, jstring family, jboolean on) {
    ChangeFaults(env, family, [&](Family, mmisim::ServiceFaults& faults) { faults.failCalls = on == JNI_TRUE; });
}

void SkipCallbacks(JNIEnv* env, jclass, jstring family, jboolean on) {
    ChangeFaults(env, family, [&](Family which, mmisim::ServiceFaults& faults) {
        if (Handset::Get().profile()[which].transport != mmisim::Transport::kHidl) {
            throw JavaThrow{"java/lang/IllegalArgumentException",
                            std::string("the ") + mmisim::FamilyName(which) +
                                    " service is served over AIDL: only a HIDL service answers through result callbacks"};
        }
        faults.skipCallbacks = on == JNI_TRUE;
    });
}

void SetLatency(JNIEnv* env, jclass, jstring family, jint millis) {
    ChangeFaults(env, family, [&](Family, mmisim::ServiceFaults& faults) { faults.latencyMs = Millis(millis); });
}

void StartLater(JNIEnv* env, jclass, jstring family, jint millis) {
    ChangeFaults(env, family, [&](Family which, mmisim::ServiceFaults&) {
        Handset::Get().StartLater(which, std::chrono::milliseconds(Millis(millis)));
    });
}

// --- the display processor's vendor library, from Java --------------------------------

jboolean HasPanelLibrary(JNIEnv*, jclass) { return PanelLibrary() != nullptr ? JNI_TRUE : JNI_FALSE; }

void SetPanelModes(JNIEnv* env, jclass, jstring text, jint length) {
    GuardedVoid(env, [&] {
        const std::optional<std::string> modes =
                text == nullptr ? std::nullopt : std::optional<std::string>(ReadString(env, text, "text"));
        PanelControl<decltype(&PanelSimSetModes)>("PanelSimSetModes")(modes ? modes->c_str() : nullptr, length);
    });
}

void SetPanelResults(JNIEnv* env, jclass, jint setModeResult, jint currentMode, jint recoverResult) {
    GuardedVoid(env, [&] {
        PanelControl<decltype(&PanelSimSetResults)>("PanelSimSetResults")(setModeResult, currentMode, recoverResult);
    });
}

jobjectArray PanelCalls(JNIEnv* env, jclass) {
    return Guarded<jobjectArray>(env, nullptr, [&] {
        auto count = PanelControl<decltype(&PanelSimCallCount)>("PanelSimCallCount");
        auto text = PanelControl<decltype(&PanelSimCallText)>("PanelSimCallText");
        std::vector<std::string> calls;
        for (int i = 0, n = count(); i < n; ++i) {
            const int length = text(i, nullptr, 0);
            if (length < 0) break;
            std::string call(static_cast<size_t>(length) + 1, '\0');
            text(i, call.data(), length + 1);
            call.resize(static_cast<size_t>(length));
            calls.push_back(std::move(call));
        }
        return StringArray(env, calls);
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

jint Detect(JNIEnv* env, jintArray samples, jint windowLength, jfloat sampleRate) {
    return Guarded<jint>(env, -1, [&]() -> jint {
        int raw[kFlickerSamples];
        ReadSamples(env, samples, raw);
        if (windowLength > kMaxWindowLength) {
            throw JavaThrow{"java/lang/IllegalArgumentException",
                            "the window may be at most " + std::to_string(kMaxWindowLength) + " samples long, not " +
                                    std::to_string(windowLength)};
        }
        int frequency = -1;
        if (DetectFlickerFrequence(raw, windowLength, frequency, sampleRate) != 0) {
            throw JavaThrow{"java/lang/IllegalStateException", "the detector could not clear its working record"};
        }
        return frequency;
    });
}

jint DetectFlickerFrequency(JNIEnv* env, jclass, jintArray samples) {
    return Detect(env, samples, kFlickerSamples, kFlickerSampleRate);
}

jint DetectFlickerFrequencyWith(JNIEnv* env, jclass, jintArray samples, jint windowLength, jfloat sampleRate) {
    return Detect(env, samples, windowLength, sampleRate);
}

// Signatures are checked against the functions' types at compile time.
const JNINativeMethod kMethods[] = {
        MAKE_JNI_NATIVE_METHOD("useProfile", "(Ljava/lang/String;)V", UseProfile),
        MAKE_JNI_NATIVE_METHOD("profileName", "()Ljava/lang/String;", ProfileName),
        MAKE_JNI_NATIVE_METHOD("profileSource", "()Ljava/lang/String;", ProfileSource),
        MAKE_JNI_NATIVE_METHOD("profileDescription", "()Ljava/lang/String;", ProfileDescription),
        MAKE_JNI_NATIVE_METHOD("serviceOf", "(Ljava/lang/String;)Ljava/lang/String;", ServiceOf),
        MAKE_JNI_NATIVE_METHOD("shippedProfiles", "()[Ljava/lang/String;", ShippedProfiles),
        MAKE_JNI_NATIVE_METHOD("setAnswerJson", "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)V",
                               SetAnswerJson),
        MAKE_JNI_NATIVE_METHOD("answerJson", "(Ljava/lang/String;Ljava/lang/String;)Ljava/lang/String;", AnswerJson),
        MAKE_JNI_NATIVE_METHOD("reset", "()V", Reset),
        MAKE_JNI_NATIVE_METHOD("kill", "(Ljava/lang/String;)V", Kill),
        MAKE_JNI_NATIVE_METHOD("start", "(Ljava/lang/String;)V", Start),
        MAKE_JNI_NATIVE_METHOD("isRunning", "(Ljava/lang/String;)Z", IsRunning),
        MAKE_JNI_NATIVE_METHOD("awaitDeathHandled", "(Ljava/lang/String;J)Z", AwaitDeathHandled),
        MAKE_JNI_NATIVE_METHOD("awaitNoticesDelivered", "(J)Z", AwaitNoticesDelivered),
        MAKE_JNI_NATIVE_METHOD("notifyCameraEvent", "(I)Z", NotifyCameraEvent),
        MAKE_JNI_NATIVE_METHOD("notifyCameraEventFromUnattachedThread", "(I)Z", NotifyCameraEventFromUnattachedThread),
        MAKE_JNI_NATIVE_METHOD("notifyCameraEventAfterUnload", "(I)Z", NotifyCameraEventAfterUnload),
        MAKE_JNI_NATIVE_METHOD("callRecords", "(Ljava/lang/String;)[[Ljava/lang/String;", CallRecords),
        MAKE_JNI_NATIVE_METHOD("failCalls", "(Ljava/lang/String;Z)V", FailCalls),
        MAKE_JNI_NATIVE_METHOD("skipCallbacks", "(Ljava/lang/String;Z)V", SkipCallbacks),
        MAKE_JNI_NATIVE_METHOD("setLatency", "(Ljava/lang/String;I)V", SetLatency),
        MAKE_JNI_NATIVE_METHOD("startLater", "(Ljava/lang/String;I)V", StartLater),
        MAKE_JNI_NATIVE_METHOD("hasPanelLibrary", "()Z", HasPanelLibrary),
        MAKE_JNI_NATIVE_METHOD("setPanelModes", "(Ljava/lang/String;I)V", SetPanelModes),
        MAKE_JNI_NATIVE_METHOD("setPanelResults", "(III)V", SetPanelResults),
        MAKE_JNI_NATIVE_METHOD("panelCalls", "()[Ljava/lang/String;", PanelCalls),
        MAKE_JNI_NATIVE_METHOD("logLines", "()[Ljava/lang/String;", LogLines),
        MAKE_JNI_NATIVE_METHOD("logMark", "()J", LogMark),
        MAKE_JNI_NATIVE_METHOD("logLinesSince", "(J)[Ljava/lang/String;", LogLinesSince),
        MAKE_JNI_NATIVE_METHOD("awaitLogLine", "(JLjava/lang/String;J)Z", AwaitLogLine),
        MAKE_JNI_NATIVE_METHOD("clearLog", "()V", ClearLog),
        MAKE_JNI_NATIVE_METHOD("lightSamples", "()[I", LightSamples),
        MAKE_JNI_NATIVE_METHOD("flickerSpectrum", "([I)[F", FlickerSpectrum),
        MAKE_JNI_NATIVE_METHOD("detectFlickerFrequency", "([I)I", DetectFlickerFrequency),
        MAKE_JNI_NATIVE_METHOD("detectFlickerFrequency", "([IIF)I", DetectFlickerFrequencyWith),
};

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
