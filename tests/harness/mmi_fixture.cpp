#include "mmi_fixture.h"

#include <dlfcn.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>

#include "jvm.h"

namespace mmitest {
namespace {

constexpr const char* kManagerClass = "com/corvex/mmitest/controller/MmiNativeManager";
constexpr const char* kLibrary = MMI_LIB_DIR "/libZtMmi_jni.so";

bool g_libraryLoaded = false;

template <typename Function>
Function LibraryEntry(const char* name) {
    void* library = dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) return nullptr;
    auto entry = reinterpret_cast<Function>(dlsym(library, name));
    dlclose(library);
    return entry;
}

}  // namespace

std::string Prefixed(const std::string& text) { return "ZtMmiTest_jni: " + text; }

jobject NewModel(JNIEnv* env, const char* className, const std::vector<std::pair<const char*, FieldValue>>& fields) {
    jclass clazz = env->FindClass(className);
    jobject object = env->AllocObject(clazz);
    for (const auto& [name, value] : fields) {
        const bool text = std::holds_alternative<const char*>(value);
        jfieldID field = env->GetFieldID(clazz, name, text ? "Ljava/lang/String;" : "I");
        if (field == nullptr) {
            env->ExceptionClear();
            ADD_FAILURE() << className << " has no field " << name;
        } else if (text) {
            const char* chars = std::get<const char*>(value);
            jstring string = chars != nullptr ? env->NewStringUTF(chars) : nullptr;
            env->SetObjectField(object, field, string);
            if (string != nullptr) env->DeleteLocalRef(string);
        } else {
            env->SetIntField(object, field, std::get<jint>(value));
        }
    }
    env->DeleteLocalRef(clazz);
    return object;
}

const char* NameOf(mmisim::Transport backend) { return backend == mmisim::Transport::kAidl ? "aidl" : "hidl"; }

mmisim::DeviceProfile EveryFamilyOver(mmisim::Transport backend) {
    return backend == mmisim::Transport::kAidl ? mmisim::DeviceProfile::AllAidl() : mmisim::DeviceProfile::AllHidl();
}

std::string BackendName(const ::testing::TestParamInfo<mmisim::Transport>& info) { return NameOf(info.param); }

std::ostream& operator<<(std::ostream& out, const Line& line) {
    return out << line.priority << " \"" << line.message << "\"";
}

void MmiTest::SetUp() {
    mEnv = Jvm::Get().Env();
    ASSERT_EQ(mEnv->PushLocalFrame(512), 0);
    mVmOutputMark = Jvm::Get().OutputSize();
    Mark();
}

void MmiTest::TearDown() {
    if (mManager != nullptr) {
        mEnv->DeleteGlobalRef(mManager);
        mManager = nullptr;
    }
    mEnv->PopLocalFrame(nullptr);
    const std::string output = Jvm::Get().Output().substr(mVmOutputMark);
    EXPECT_FALSE(HasJniWarning(output)) << "the JVM printed a JNI warning:\n" << output;
    if (mSettleAtTearDown) {
        EXPECT_TRUE(NoticesDelivered()) << "death or registration notices still pending at the end of the test";
    }
}

jint MmiTest::CallOnLoad(JavaVM* vm) {
    auto onLoad = LibraryEntry<jint (*)(JavaVM*, void*)>("JNI_OnLoad");
    if (onLoad == nullptr) {
        ADD_FAILURE() << "libZtMmi_jni.so is not loaded";
        return JNI_ERR;
    }
    return onLoad(vm, nullptr);
}

void MmiTest::CallOnUnload(JavaVM* vm) {
    auto onUnload = LibraryEntry<void (*)(JavaVM*, void*)>("JNI_OnUnload");
    if (onUnload == nullptr) {
        ADD_FAILURE() << "libZtMmi_jni.so is not loaded";
        return;
    }
    onUnload(vm, nullptr);
}

void MmiTest::Boot(const mmisim::DeviceProfile& profile) {
    mBootMark = log().mark();
    if (g_libraryLoaded) {
        CallOnUnload(Jvm::Get().vm());
        NoticesDelivered();
        handset().Configure(profile);
        ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    } else {
        handset().Configure(profile);
    }
    jclass clazz = mEnv->FindClass(kManagerClass);
    ASSERT_NE(clazz, nullptr);
    jmethodID constructor = mEnv->GetMethodID(clazz, "<init>", "()V");
    jobject manager = mEnv->NewObject(clazz, constructor);  // the first one loads the library
    if (mEnv->ExceptionCheck()) {
        mEnv->ExceptionDescribe();
        mEnv->ExceptionClear();
        FAIL() << "loading libZtMmi_jni failed";
    }
    g_libraryLoaded = true;
    mManager = mEnv->NewGlobalRef(manager);
    mEnv->DeleteLocalRef(manager);
    mEnv->DeleteLocalRef(clazz);
    ASSERT_TRUE(NoticesDelivered());
    Mark();
}

jstring MmiTest::J(const std::string& text) { return mEnv->NewStringUTF(text.c_str()); }

void MmiTest::ClearCalls() {
    for (mmisim::Family family : mmisim::kAllFamilies) handset().visit(family, [](auto& state) { state.clearCalls(); });
}

std::vector<std::vector<std::string>> MmiTest::Received(mmisim::Family family, const std::string& method) {
    std::vector<std::vector<std::string>> calls;
    for (const mmisim::Call& call : handset().calls(family)) {
        if (call.method == method) calls.push_back(call.args);
    }
    return calls;
}

std::optional<std::string> MmiTest::FailInfo() {
    jclass clazz = mEnv->FindClass(kManagerClass);
    auto value = static_cast<jstring>(mEnv->GetStaticObjectField(
            clazz, mEnv->GetStaticFieldID(clazz, "sTpCapacitanceFailInfo", "Ljava/lang/String;")));
    mEnv->DeleteLocalRef(clazz);
    return Text(value);
}

void MmiTest::SetFailInfo(const char* text) {
    jclass clazz = mEnv->FindClass(kManagerClass);
    mEnv->SetStaticObjectField(clazz, mEnv->GetStaticFieldID(clazz, "sTpCapacitanceFailInfo", "Ljava/lang/String;"),
                               J(text));
    mEnv->DeleteLocalRef(clazz);
}

int MmiTest::RegisterSuccesses() {
    jclass clazz = mEnv->FindClass(kManagerClass);
    const int count = mEnv->CallStaticIntMethod(clazz, mEnv->GetStaticMethodID(clazz, "getRegisterSuccessCount", "()I"));
    mEnv->DeleteLocalRef(clazz);
    return Checked(count);
}

const std::map<std::string, void*>& MmiTest::Natives() {
    static std::map<std::string, void*> natives;
    if (natives.empty()) {
        PatchedJni jni(mEnv);
        jni.functions.RegisterNatives = [](JNIEnv* env, jclass clazz, const JNINativeMethod* methods, jint count) {
            for (jint i = 0; i < count; ++i) natives[methods[i].name] = methods[i].fnPtr;
            return PatchedJni::Real().RegisterNatives(env, clazz, methods, count);
        };
        jni.Apply();
        EXPECT_EQ(CallOnLoad(jni.vm()), 0x10004);
    }
    return natives;
}

namespace {
JNIInvokeInterface_ g_invocation{};
JavaVM_ g_vm{&g_invocation};
}  // namespace

PatchedJni::PatchedJni(JNIEnv* env) : functions(*env->functions), mEnv(env) {
    sReal = env->functions;
    redirectClass = nullptr;
    getEnvResult = JNI_OK;
    getEnvEnv = env;
    functions.FindClass = [](JNIEnv* e, const char* name) {
        return Real().FindClass(e, redirectClass != nullptr ? redirectClass : name);
    };
}

PatchedJni::~PatchedJni() { mEnv->functions = sReal; }

JavaVM* PatchedJni::vm() {
    g_invocation = *Jvm::Get().vm()->functions;
    g_invocation.GetEnv = [](JavaVM*, void** env, jint) {
        *env = getEnvEnv;
        return getEnvResult;
    };
    return &g_vm;
}

jmethodID MmiTest::Method(const char* name, const char* signature) {
    if (mManager == nullptr) {
        ADD_FAILURE() << "native method " << name << " called before Boot()";
        std::abort();
    }
    jclass clazz = mEnv->GetObjectClass(mManager);
    jmethodID method = mEnv->GetMethodID(clazz, name, signature);
    mEnv->DeleteLocalRef(clazz);
    if (method == nullptr) {
        mEnv->ExceptionClear();
        ADD_FAILURE() << "no method " << name << signature;
    }
    return method;
}

std::optional<std::string> MmiTest::Text(jstring text) {
    if (text == nullptr) return std::nullopt;
    const char* chars = mEnv->GetStringUTFChars(text, nullptr);
    std::string copy(chars);
    mEnv->ReleaseStringUTFChars(text, chars);
    mEnv->DeleteLocalRef(text);
    return copy;
}

std::optional<std::vector<int>> MmiTest::IntsOf(jintArray array) {
    if (array == nullptr) return std::nullopt;
    std::vector<int> values(static_cast<size_t>(mEnv->GetArrayLength(array)));
    if (!values.empty()) {
        mEnv->GetIntArrayRegion(array, 0, static_cast<jsize>(values.size()), reinterpret_cast<jint*>(values.data()));
    }
    mEnv->DeleteLocalRef(array);
    return values;
}

std::vector<Line> MmiTest::Lines() const { return LinesFrom(mLogMark); }

std::vector<Line> MmiTest::BootLines() const { return LinesFrom(mBootMark); }

std::vector<Line> MmiTest::LinesFrom(size_t mark) const {
    std::vector<Line> lines;
    for (const mmisim::LogEntry& entry : mmisim::LogCapture::Install().since(mark)) {
        lines.push_back(Line{entry.priority, entry.message});
    }
    return lines;
}

int MmiTest::Count(int priority, const std::string& message) const {
    int count = 0;
    for (const Line& line : Lines()) count += line.priority == priority && line.message == message;
    return count;
}

std::vector<Line> MmiTest::LinesWithPriority(int priority) const {
    std::vector<Line> matching;
    for (const Line& line : Lines()) {
        if (line.priority == priority) matching.push_back(line);
    }
    return matching;
}

std::vector<std::string> MmiTest::Messages(int priority, const std::string& start) const {
    std::vector<std::string> messages;
    for (const Line& line : LinesWithPriority(priority)) {
        if (line.message.rfind(start, 0) == 0) messages.push_back(line.message);
    }
    return messages;
}

bool MmiTest::WaitFor(int priority, const std::string& message, std::chrono::milliseconds timeout) const {
    return mmisim::LogCapture::Install().waitForMessage(mLogMark, priority, message, timeout);
}

bool MmiTest::NoticesDelivered() {
    // A HIDL notice may post a binder notice and the other way round: settle both twice.
    bool idle = true;
    for (int round = 0; round < 2; ++round) {
        idle = hostcontrol::WaitForHidlNotices(kNoticeTimeout) && idle;
        idle = hostcontrol::WaitForBinderNotices(kNoticeTimeout) && idle;
    }
    return idle;
}

}  // namespace mmitest
