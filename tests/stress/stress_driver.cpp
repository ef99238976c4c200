#include "stress_driver.h"

#include <gtest/gtest.h>

namespace mmistress {
namespace {

constexpr const char* kDriverClass = "com/corvex/mmitest/stress/StressDriver";

}  // namespace

StressDriver::StressDriver(JNIEnv* env, jobject manager, int threads, uint64_t seed) : mEnv(env) {
    jclass clazz = env->FindClass(kDriverClass);
    if (clazz == nullptr) {
        env->ExceptionDescribe();
        env->ExceptionClear();
        ADD_FAILURE() << kDriverClass << " is not on the class path (MMI_TEST_CLASSPATH)";
        return;
    }
    mClass = static_cast<jclass>(env->NewGlobalRef(clazz));
    env->DeleteLocalRef(clazz);
    jmethodID constructor = env->GetMethodID(mClass, "<init>", "(Lcom/corvex/mmitest/controller/MmiNativeManager;IJ)V");
    jobject driver = env->NewObject(mClass, constructor, manager, static_cast<jint>(threads), static_cast<jlong>(seed));
    if (!checked("StressDriver()") || driver == nullptr) return;
    mDriver = env->NewGlobalRef(driver);
    env->DeleteLocalRef(driver);
}

StressDriver::~StressDriver() {
    if (mDriver != nullptr) mEnv->DeleteGlobalRef(mDriver);
    if (mClass != nullptr) mEnv->DeleteGlobalRef(mClass);
}

bool StressDriver::checked(const char* what) {
    if (!mEnv->ExceptionCheck()) return true;
    mEnv->ExceptionDescribe();
    mEnv->ExceptionClear();
    ADD_FAILURE() << "StressDriver." << what << " threw";
    return false;
}

std::string StressDriver::text(jobject string) {
    if (string == nullptr) return "null";
    auto jtext = static_cast<jstring>(string);
    const char* chars = mEnv->GetStringUTFChars(jtext, nullptr);
    std::string copy(chars != nullptr ? chars : "");
    if (chars != nullptr) mEnv->ReleaseStringUTFChars(jtext, chars);
    mEnv->DeleteLocalRef(string);
    return copy;
}

std::vector<std::string> StressDriver::texts(jobject array) {
    std::vector<std::string> result;
    if (array == nullptr) return result;
    auto jarray = static_cast<jobjectArray>(array);
    const jsize length = mEnv->GetArrayLength(jarray);
    for (jsize i = 0; i < length; ++i) result.push_back(text(mEnv->GetObjectArrayElement(jarray, i)));
    mEnv->DeleteLocalRef(array);
    return result;
}

std::vector<std::string> StressDriver::methods() {
    jfieldID field = mEnv->GetStaticFieldID(mClass, "METHODS", "[Ljava/lang/String;");
    if (!checked("METHODS")) return {};
    return texts(mEnv->GetStaticObjectField(mClass, field));
}

void StressDriver::start(int64_t boundMillis) {
    mEnv->CallVoidMethod(mDriver, mEnv->GetMethodID(mClass, "start", "(J)V"), static_cast<jlong>(boundMillis));
    checked("start");
}

void StressDriver::resume() {
    mEnv->CallVoidMethod(mDriver, mEnv->GetMethodID(mClass, "resume", "()V"));
    checked("resume");
}

bool StressDriver::pause(int64_t timeoutMillis) {
    const jboolean paused = mEnv->CallBooleanMethod(mDriver, mEnv->GetMethodID(mClass, "pause", "(J)Z"),
                                                    static_cast<jlong>(timeoutMillis));
    return checked("pause") && paused == JNI_TRUE;
}

bool StressDriver::stop(int64_t timeoutMillis) {
    const jboolean stopped = mEnv->CallBooleanMethod(mDriver, mEnv->GetMethodID(mClass, "stop", "(J)Z"),
                                                     static_cast<jlong>(timeoutMillis));
    return checked("stop") && stopped == JNI_TRUE;
}

int64_t StressDriver::calls() {
    const jlong calls = mEnv->CallLongMethod(mDriver, mEnv->GetMethodID(mClass, "calls", "()J"));
    checked("calls");
    return calls;
}

bool StressDriver::awaitCalls(int64_t count, int64_t timeoutMillis) {
    const jboolean reached = mEnv->CallBooleanMethod(mDriver, mEnv->GetMethodID(mClass, "awaitCalls", "(JJ)Z"),
                                                     static_cast<jlong>(count), static_cast<jlong>(timeoutMillis));
    return checked("awaitCalls") && reached == JNI_TRUE;
}

std::optional<std::string> StressDriver::stall() {
    jobject stall = mEnv->CallObjectMethod(mDriver, mEnv->GetMethodID(mClass, "stall", "()Ljava/lang/String;"));
    if (!checked("stall") || stall == nullptr) return std::nullopt;
    return text(stall);
}

std::vector<std::string> StressDriver::failures() {
    jobject array = mEnv->CallObjectMethod(mDriver, mEnv->GetMethodID(mClass, "failures", "()[Ljava/lang/String;"));
    if (!checked("failures")) return {};
    return texts(array);
}

std::vector<std::pair<int64_t, std::string>> StressDriver::drainAnswers(int method) {
    jobject array = mEnv->CallObjectMethod(mDriver, mEnv->GetMethodID(mClass, "drainAnswers", "(I)[Ljava/lang/String;"),
                                           static_cast<jint>(method));
    std::vector<std::pair<int64_t, std::string>> answers;
    if (!checked("drainAnswers")) return answers;
    for (const std::string& entry : texts(array)) {
        const size_t tab = entry.find('\t');
        answers.emplace_back(std::stoll(entry.substr(0, tab)), entry.substr(tab + 1));
    }
    return answers;
}

std::string StressDriver::callOnce(int method) {
    jobject answer = mEnv->CallObjectMethod(mDriver, mEnv->GetMethodID(mClass, "callOnce", "(I)Ljava/lang/String;"),
                                            static_cast<jint>(method));
    if (!checked("callOnce")) return "threw";
    return text(answer);
}

std::string StressDriver::callRepeatedly(int method, int times) {
    jobject answer =
            mEnv->CallObjectMethod(mDriver, mEnv->GetMethodID(mClass, "callRepeatedly", "(II)Ljava/lang/String;"),
                                   static_cast<jint>(method), static_cast<jint>(times));
    if (!checked("callRepeatedly")) return "threw";
    return text(answer);
}

}  // namespace mmistress
