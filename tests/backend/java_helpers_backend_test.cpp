// The Java field readers and the hexadecimal conversion, called directly.
#include <java_helpers.h>

#include <string>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

// An environment that forwards to the real one but cannot hand out a string's characters,
// as a VM out of memory would.
struct NoCharsEnv {
    static inline JNIEnv* sReal = nullptr;

    static jclass JNICALL FindClass(JNIEnv*, const char* name) { return sReal->FindClass(name); }
    static jfieldID JNICALL GetFieldID(JNIEnv*, jclass c, const char* n, const char* s) {
        return sReal->GetFieldID(c, n, s);
    }
    static jobject JNICALL GetObjectField(JNIEnv*, jobject o, jfieldID f) { return sReal->GetObjectField(o, f); }
    static void JNICALL DeleteLocalRef(JNIEnv*, jobject o) { sReal->DeleteLocalRef(o); }
    static jboolean JNICALL ExceptionCheck(JNIEnv*) { return sReal->ExceptionCheck(); }
    static void JNICALL ExceptionClear(JNIEnv*) { sReal->ExceptionClear(); }
    static const char* JNICALL GetStringUTFChars(JNIEnv*, jstring, jboolean*) { return nullptr; }
    static void JNICALL ReleaseStringUTFChars(JNIEnv*, jstring, const char*) {
        ADD_FAILURE() << "characters released that were never handed out";
    }

    JNINativeInterface_ functions{};
    JNIEnv_ env{};

    explicit NoCharsEnv(JNIEnv* real) {
        sReal = real;
        functions.FindClass = FindClass;
        functions.GetFieldID = GetFieldID;
        functions.GetObjectField = GetObjectField;
        functions.DeleteLocalRef = DeleteLocalRef;
        functions.ExceptionCheck = ExceptionCheck;
        functions.ExceptionClear = ExceptionClear;
        functions.GetStringUTFChars = GetStringUTFChars;
        functions.ReleaseStringUTFChars = ReleaseStringUTFChars;
        env.functions = &functions;
    }
};

class JavaHelpersTest : public MmiTest {};

TEST_F(JavaHelpersTest, UnreadableStringCharactersGiveTheEmptyText) {
    jclass clazz = mEnv->FindClass("com/corvex/mmitest/model/BigDataValue");
    jobject value = mEnv->NewObject(clazz, mEnv->GetMethodID(clazz, "<init>", "()V"));
    mEnv->CallVoidMethod(value, mEnv->GetMethodID(clazz, "setTestName", "(Ljava/lang/String;)V"), J("camera"));
    ASSERT_FALSE(mEnv->ExceptionCheck());
    NoCharsEnv env(mEnv);
    Mark();
    EXPECT_EQ(GetStringFromObject(&env.env, value, "com/corvex/mmitest/model/BigDataValue", "mTestName"), "");
    EXPECT_EQ(Lines(), (std::vector<Line>{{kError, Prefixed("GetStringFromObject fail, string value is null")}}));
}

TEST_F(JavaHelpersTest, HexadecimalTextOfBytes) {
    const unsigned char bytes[] = {0xAB, 0x01, 0x00, 0xFF};
    char text[9] = "????????";
    EXPECT_EQ(ConvertBinToString(bytes, 2, text, 4), 0);
    EXPECT_EQ(std::string(text), "ab01????");  // exactly four characters, no terminator
    EXPECT_EQ(ConvertBinToString(bytes, 4, text, 8), 0);
    EXPECT_EQ(std::string(text, 8), "ab0100ff");
    Mark();
    EXPECT_EQ(ConvertBinToString(bytes, 2, text, 3), -1);
    EXPECT_EQ(ConvertBinToString(bytes, 0, text, 8), -1);
    EXPECT_EQ(ConvertBinToString(nullptr, 1, text, 8), -1);
    EXPECT_EQ(ConvertBinToString(bytes, 0x80000001u, text, 2), -1);  // twice the count does not fit 32 bits
    EXPECT_EQ(Lines(),
              (std::vector<Line>{{kError, Prefixed("ConvertBinToString fail, parameter is invalid, numLen: 2, strLen: 3")},
                                 {kError, Prefixed("ConvertBinToString fail, parameter is invalid, numLen: 0, strLen: 8")},
                                 {kError, Prefixed("ConvertBinToString fail, parameter is invalid, numLen: 1, strLen: 8")},
                                 {kError, Prefixed("ConvertBinToString fail, parameter is invalid, numLen: "
                                                   "2147483649, strLen: 2")}}));
}

}  // namespace
}  // namespace mmitest
