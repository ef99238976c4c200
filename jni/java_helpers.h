// Helpers shared by the bridge and both backends for reading Java objects and arguments
// and building Java results.
#pragma once

#include <jni.h>

#include <cstdint>
#include <string>
#include <vector>

// A text field of a Java model object, or "" when it cannot be read (logged).
std::string GetStringFromObject(JNIEnv* env, jobject object, const char* className, const char* fieldName);

// An int field of a Java model object, or -1 when it cannot be read (logged).
int GetIntFromObject(JNIEnv* env, jobject object, const char* className, const char* fieldName);

// Writes the lower-case hexadecimal form of numLen bytes into str (2 * numLen characters,
// no terminator). Returns 0, or -1 (logged) when a buffer is null, numLen is 0 or str is
// shorter than 2 * numLen.
int ConvertBinToString(const unsigned char* num, unsigned int numLen, char* str, unsigned int strLen);

namespace mmi {

// The application's class that declares the native methods.
constexpr const char* kNativeManagerClass = "com/corvex/mmitest/controller/MmiNativeManager";

// Clears the exception that a failed class, field or method lookup left pending, for
// callers whose own error line already reports the failure.
void ClearPendingException(JNIEnv* env);

// Clears the exception that a failed class, field or method lookup left pending, and
// logs which lookup failed.
void ReportFailedLookup(JNIEnv* env, const char* operation, const char* kind, const char* name);

// The one ERROR line for a null Java argument, naming the operation and the argument.
void LogNullArgument(const char* operation, const char* argument);

// The modified UTF-8 characters of a Java string for the length of a scope.
class JavaUtfChars {
public:
    JavaUtfChars(JNIEnv* env, jstring string);
    ~JavaUtfChars();
    JavaUtfChars(const JavaUtfChars&) = delete;
    JavaUtfChars& operator=(const JavaUtfChars&) = delete;

    bool isNull() const { return mChars == nullptr; }
    const char* c_str() const { return mChars; }

    // The characters stay taken when the scope ends (operations that never give them back).
    void keepTaken() { mRelease = false; }

private:
    JNIEnv* mEnv;
    jstring mString;
    const char* mChars = nullptr;
    bool mRelease = true;
};

// A copy of a Java byte array's contents.
struct JavaBytes {
    bool isNull = true;
    std::vector<uint8_t> bytes;
};
JavaBytes ReadJavaBytes(JNIEnv* env, jbyteArray array);

// A new Java string of a C text (up to its first zero byte).
jstring NewJavaString(JNIEnv* env, const char* text);
inline jstring NewJavaString(JNIEnv* env, const std::string& text) { return NewJavaString(env, text.c_str()); }

// Sets a static String field of a Java class to the text. A lookup that fails is logged
// for the operation and its exception cleared; returns whether the field was set.
bool SetStaticStringField(JNIEnv* env, const char* operation, const char* className, const char* fieldName,
                          const std::string& text);

// A new Java int array holding the values.
jintArray NewJavaIntArray(JNIEnv* env, const int32_t* values, size_t count);
inline jintArray NewJavaIntArray(JNIEnv* env, const std::vector<int32_t>& values) {
    return NewJavaIntArray(env, values.data(), values.size());
}

}  // namespace mmi
