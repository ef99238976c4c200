#include "jvm.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace mmitest {
namespace {

std::mutex g_outputLock;
std::string g_output;

jint JNICALL CaptureOutput(FILE* stream, const char* format, va_list args) {
    va_list copy;
    va_copy(copy, args);
    char buffer[4096];
    const int length = std::vsnprintf(buffer, sizeof(buffer), format, copy);
    va_end(copy);
    if (length > 0) {
        std::lock_guard<std::mutex> lock(g_outputLock);
        g_output.append(buffer, std::min<size_t>(static_cast<size_t>(length), sizeof(buffer) - 1));
    }
    return std::vfprintf(stream != nullptr ? stream : stderr, format, args);
}

}  // namespace

Jvm& Jvm::Get() {
    static Jvm* jvm = new Jvm();
    return *jvm;
}

void Jvm::Start() {
    if (mVm != nullptr) return;
    std::thread creator([this] {
        // MMI_TEST_CLASSPATH puts a test's own classes before the application's.
        const char* first = std::getenv("MMI_TEST_CLASSPATH");
        std::string classPath = std::string("-Djava.class.path=") + (first != nullptr ? std::string(first) + ":" : "") +
                                MMI_JAVA_DIR "/mmi_app.jar:" MMI_JAVA_DIR "/mmi_sim.jar";
        std::string libraryPath = "-Djava.library.path=" MMI_LIB_DIR;
        JavaVMOption options[5];
        options[0].optionString = const_cast<char*>("-Xcheck:jni");
        options[1].optionString = const_cast<char*>("vfprintf");
        options[1].extraInfo = reinterpret_cast<void*>(CaptureOutput);
        options[2].optionString = classPath.data();
        options[3].optionString = libraryPath.data();
        options[4].optionString = const_cast<char*>("-Xss4m");
        JavaVMInitArgs args{JNI_VERSION_1_8, 5, options, JNI_FALSE};
        JNIEnv* env = nullptr;
        if (JNI_CreateJavaVM(&mVm, reinterpret_cast<void**>(&env), &args) != JNI_OK) {
            std::fprintf(stderr, "cannot create the Java VM\n");
            std::abort();
        }
        mVm->DetachCurrentThread();
    });
    creator.join();
    Env();
}

JNIEnv* Jvm::Env() {
    JNIEnv* env = nullptr;
    if (mVm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_8) == JNI_OK) return env;
    mVm->AttachCurrentThread(reinterpret_cast<void**>(&env), nullptr);
    return env;
}

std::string Jvm::Output() const {
    std::lock_guard<std::mutex> lock(g_outputLock);
    return g_output;
}

size_t Jvm::OutputSize() const {
    std::lock_guard<std::mutex> lock(g_outputLock);
    return g_output.size();
}

bool HasJniWarning(const std::string& vmOutput) {
    return vmOutput.find("WARNING in native method") != std::string::npos ||
           vmOutput.find("WARNING: JNI") != std::string::npos || vmOutput.find("FATAL ERROR in native method") != std::string::npos;
}

}  // namespace mmitest
