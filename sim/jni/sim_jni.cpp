// libmmi_sim_jni.so: the simulated handset seen from Java (com.corvex.mmitest.sim.SimulatedHandset).
#include <jni.h>
#include <sim/handset.h>
#include <sim/log_capture.h>

#include <string>

namespace {

constexpr const char* kHandsetClass = "com/corvex/mmitest/sim/SimulatedHandset";

void ThrowIllegalArgument(JNIEnv* env, const std::string& message) {
    jclass clazz = env->FindClass("java/lang/IllegalArgumentException");
    if (clazz != nullptr) env->ThrowNew(clazz, message.c_str());
}

std::string ReadString(JNIEnv* env, jstring text) {
    if (text == nullptr) return std::string();
    const char* chars = env->GetStringUTFChars(text, nullptr);
    std::string copy = chars != nullptr ? chars : "";
    if (chars != nullptr) env->ReleaseStringUTFChars(text, chars);
    return copy;
}

void UseProfile(JNIEnv* env, jclass, jstring name) {
    const std::string profile = ReadString(env, name);
    if (profile == "aidl") {
        mmisim::Handset::Get().Configure(mmisim::DeviceProfile::AllAidl());
    } else if (profile == "hidl") {
        mmisim::Handset::Get().Configure(mmisim::DeviceProfile::AllHidl());
    } else if (profile == "bare") {
        mmisim::Handset::Get().Configure(mmisim::DeviceProfile::Bare());
    } else {
        ThrowIllegalArgument(env, "unknown device profile '" + profile + "' (known: aidl, hidl, bare)");
    }
}

bool FamilyOf(JNIEnv* env, jstring name, mmisim::Family* family) {
    const std::string text = ReadString(env, name);
    std::optional<mmisim::Family> found = mmisim::FamilyFromName(text);
    if (!found) {
        ThrowIllegalArgument(env, "unknown service family '" + text + "'");
        return false;
    }
    *family = *found;
    return true;
}

void Kill(JNIEnv* env, jclass, jstring name) {
    mmisim::Family family;
    if (FamilyOf(env, name, &family)) mmisim::Handset::Get().Kill(family);
}

void Start(JNIEnv* env, jclass, jstring name) {
    mmisim::Family family;
    if (FamilyOf(env, name, &family)) mmisim::Handset::Get().Start(family);
}

jobjectArray LogLines(JNIEnv* env, jclass) {
    const std::vector<mmisim::LogEntry> entries = mmisim::LogCapture::Install().entries();
    jclass stringClass = env->FindClass("java/lang/String");
    if (stringClass == nullptr) return nullptr;
    jobjectArray lines = env->NewObjectArray(static_cast<jsize>(entries.size()), stringClass, nullptr);
    env->DeleteLocalRef(stringClass);
    for (size_t i = 0; lines != nullptr && i < entries.size(); ++i) {
        jstring line = env->NewStringUTF(mmisim::LogCapture::Brief(entries[i]).c_str());
        env->SetObjectArrayElement(lines, static_cast<jsize>(i), line);
        env->DeleteLocalRef(line);
    }
    return lines;
}

void ClearLog(JNIEnv*, jclass) { mmisim::LogCapture::Install().clear(); }

const JNINativeMethod kMethods[] = {
        {const_cast<char*>("useProfile"), const_cast<char*>("(Ljava/lang/String;)V"), reinterpret_cast<void*>(UseProfile)},
        {const_cast<char*>("kill"), const_cast<char*>("(Ljava/lang/String;)V"), reinterpret_cast<void*>(Kill)},
        {const_cast<char*>("start"), const_cast<char*>("(Ljava/lang/String;)V"), reinterpret_cast<void*>(Start)},
        {const_cast<char*>("logLines"), const_cast<char*>("()[Ljava/lang/String;"), reinterpret_cast<void*>(LogLines)},
        {const_cast<char*>("clearLog"), const_cast<char*>("()V"), reinterpret_cast<void*>(ClearLog)},
};

}  // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void*) {
    mmisim::LogCapture::Install();
    JNIEnv* env = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&env), JNI_VERSION_1_6) != JNI_OK) return JNI_ERR;
    jclass clazz = env->FindClass(kHandsetClass);
    if (clazz == nullptr) return JNI_ERR;
    const jint result = env->RegisterNatives(clazz, kMethods, sizeof(kMethods) / sizeof(kMethods[0]));
    env->DeleteLocalRef(clazz);
    return result < 0 ? JNI_ERR : JNI_VERSION_1_6;
}
