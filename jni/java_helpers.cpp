#include "java_helpers.h"

#include <mmi_log.h>

using mmi::kLogPrefix;

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

// The field id of a model object's field, or null after reporting the failed lookup.
jfieldID FindField(JNIEnv* env, const char* operation, const char* className, const char* fieldName,
                   const char* signature) {
    jclass clazz = env->FindClass(className);
    if (clazz == nullptr) {
        mmi::ReportFailedLookup(env, operation, "class", className);
        return nullptr;
    }
    jfieldID field = env->GetFieldID(clazz, fieldName, signature);
    env->DeleteLocalRef(clazz);
    if (field == nullptr) mmi::ReportFailedLookup(env, operation, "field", fieldName);
    return field;
}

}  // namespace

std::string GetStringFromObject(JNIEnv* env, jobject object, const char* className, const char* fieldName) {
    if (env == nullptr || object == nullptr) {
        MMI_LOGE("%s: GetStringFromObject fail, invalid parameter", kLogPrefix);
        return std::string();
    }
    jfieldID field = FindField(env, "GetStringFromObject", className, fieldName, "Ljava/lang/String;");
    if (field == nullptr) return std::string();
    auto value = static_cast<jstring>(env->GetObjectField(object, field));
    if (value == nullptr) {
        MMI_LOGE("%s: GetStringFromObject fail, field object is null", kLogPrefix);
        return std::string();
    }
    const char* chars = env->GetStringUTFChars(value, nullptr);
    if (chars == nullptr) {
        // The VM could not copy the characters (out of memory); the caller reads further
        // fields, so the VM's exception must not stay pending.
        mmi::ClearPendingException(env);
        MMI_LOGE("%s: GetStringFromObject fail, string value is null", kLogPrefix);
        env->DeleteLocalRef(value);
        return std::string();
    }
    std::string text(chars);
    env->ReleaseStringUTFChars(value, chars);
    env->DeleteLocalRef(value);
    return text;
}

int GetIntFromObject(JNIEnv* env, jobject object, const char* className, const char* fieldName) {
    if (env == nullptr || object == nullptr) {
        MMI_LOGE("%s: GetIntFromObject fail, invalid parameter", kLogPrefix);
        return -1;
    }
    jfieldID field = FindField(env, "GetIntFromObject", className, fieldName, "I");
    if (field == nullptr) return -1;
    return env->GetIntField(object, field);
}

int ConvertBinToString(const unsigned char* num, unsigned int numLen, char* str, unsigned int strLen) {
    if (num == nullptr || str == nullptr || numLen == 0 || static_cast<uint64_t>(numLen) * 2 > strLen) {
        MMI_LOGE("%s: ConvertBinToString fail, parameter is invalid, numLen: %u, strLen: %u", kLogPrefix, numLen,
                 strLen);
        return -1;
    }
    for (unsigned int i = 0; i < numLen; ++i) {
        str[2 * i] = kHexDigits[num[i] >> 4];
        str[2 * i + 1] = kHexDigits[num[i] & 0x0f];
    }
    return 0;
}

namespace mmi {

void ClearPendingException(JNIEnv* env) {
    if (env->ExceptionCheck()) env->ExceptionClear();
}

void ReportFailedLookup(JNIEnv* env, const char* operation, const char* kind, const char* name) {
    ClearPendingException(env);
    MMI_LOGE("%s: %s fail, %s %s not found", kLogPrefix, operation, kind, name);
}

void LogNullArgument(const char* operation, const char* argument) {
    MMI_LOGE("%s: %s fail, %s is null", kLogPrefix, operation, argument);
}

JavaUtfChars::JavaUtfChars(JNIEnv* env, jstring string) : mEnv(env), mString(string) {
    if (env != nullptr && string != nullptr) mChars = env->GetStringUTFChars(string, nullptr);
}

JavaUtfChars::~JavaUtfChars() {
    if (mChars != nullptr && mRelease) mEnv->ReleaseStringUTFChars(mString, mChars);
}

JavaBytes ReadJavaBytes(JNIEnv* env, jbyteArray array) {
    JavaBytes result;
    if (env == nullptr || array == nullptr) return result;
    const jsize length = env->GetArrayLength(array);
    result.bytes.resize(static_cast<size_t>(length));
    if (length > 0) {
        env->GetByteArrayRegion(array, 0, length, reinterpret_cast<jbyte*>(result.bytes.data()));
    }
    result.isNull = false;
    return result;
}

jstring NewJavaString(JNIEnv* env, const char* text) { return env->NewStringUTF(text != nullptr ? text : ""); }

bool SetStaticStringField(JNIEnv* env, const char* operation, const char* className, const char* fieldName,
                          const std::string& text) {
    jclass clazz = env->FindClass(className);
    if (clazz == nullptr) {
        ReportFailedLookup(env, operation, "class", className);
        return false;
    }
    jfieldID field = env->GetStaticFieldID(clazz, fieldName, "Ljava/lang/String;");
    if (field == nullptr) {
        ReportFailedLookup(env, operation, "static field", fieldName);
        env->DeleteLocalRef(clazz);
        return false;
    }
    jstring value = NewJavaString(env, text);
    if (value != nullptr) {
        env->SetStaticObjectField(clazz, field, value);
        env->DeleteLocalRef(value);
    }
    env->DeleteLocalRef(clazz);
    return value != nullptr;
}

jintArray NewJavaIntArray(JNIEnv* env, const int32_t* values, size_t count) {
    jintArray array = env->NewIntArray(static_cast<jsize>(count));
    if (array != nullptr && count > 0) {
        env->SetIntArrayRegion(array, 0, static_cast<jsize>(count), reinterpret_cast<const jint*>(values));
    }
    return array;
}

}  // namespace mmi
