// Library load and unload through the real JVM, and their failure paths.
#include <jni.h>

#include <string>

#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;

// A stand-in VM whose GetEnv answers what a test wants; every JNI call made through the
// environment it hands out goes to the real JVM, except the overridden lookups.
struct FakeVm {
    static inline jint sGetEnvResult = JNI_OK;
    static inline JNIEnv* sEnv = nullptr;

    static jint JNICALL GetEnv(JavaVM*, void** env, jint) {
        *env = sEnv;
        return sGetEnvResult;
    }

    JNIInvokeInterface_ invoke{};
    JavaVM_ vm{};

    FakeVm(jint getEnvResult, JNIEnv* env) {
        sGetEnvResult = getEnvResult;
        sEnv = env;
        invoke.GetEnv = GetEnv;
        vm.functions = &invoke;
    }
    JavaVM* get() { return &vm; }
};

// An environment whose class lookup finds `sClassName` instead of what was asked, through
// the real JVM (so a missing class leaves a real pending exception).
struct RedirectingEnv {
    static inline JNIEnv* sReal = nullptr;
    static inline const char* sClassName = nullptr;

    static jclass JNICALL FindClass(JNIEnv*, const char*) { return sReal->FindClass(sClassName); }
    static jint JNICALL RegisterNatives(JNIEnv*, jclass clazz, const JNINativeMethod* methods, jint count) {
        return sReal->RegisterNatives(clazz, methods, count);
    }
    static void JNICALL DeleteLocalRef(JNIEnv*, jobject ref) { sReal->DeleteLocalRef(ref); }
    static jboolean JNICALL ExceptionCheck(JNIEnv*) { return sReal->ExceptionCheck(); }
    static void JNICALL ExceptionClear(JNIEnv*) { sReal->ExceptionClear(); }

    JNINativeInterface_ functions{};
    JNIEnv_ env{};

    RedirectingEnv(JNIEnv* real, const char* className) {
        sReal = real;
        sClassName = className;
        functions.FindClass = FindClass;
        functions.RegisterNatives = RegisterNatives;
        functions.DeleteLocalRef = DeleteLocalRef;
        functions.ExceptionCheck = ExceptionCheck;
        functions.ExceptionClear = ExceptionClear;
        env.functions = &functions;
    }
    JNIEnv* get() { return &env; }
};

class LoadTest : public MmiTest {};

TEST_F(LoadTest, LoadConnectsEveryFamilyInOrderThenRegisters) {
    Boot(DeviceProfile::AllAidl());
    // The load itself happened before the mark; load again to see its lines.
    ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    std::vector<std::string> inits;
    for (const Line& line : Lines()) {
        if (line.message.rfind("Init", 0) == 0) inits.push_back(line.message);
    }
    EXPECT_EQ(inits, (std::vector<std::string>{"InitFactoryInterface", "InitDisplay", "InitTouchScreen",
                                               "InitFingerprint", "InitSensor", "InitPower", "InitLight",
                                               "InitVaelon", "InitVibrator"}));
    EXPECT_EQ(Lines().front(), (Line{kInfo, Prefixed("InitMmiNativeManager")}));
    // Every native method is registered: the JVM checked names and signatures, and a call
    // reaches the library.
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
}

TEST_F(LoadTest, NullVmFailsBeforeConnectingAnything) {
    handset().Configure(DeviceProfile::AllAidl());
    Boot(DeviceProfile::AllAidl());
    handset().factory().clearCalls();
    EXPECT_EQ(CallOnLoad(nullptr), -1);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kError, Prefixed("JNI_OnLoad fail, vm is null")}}));
}

TEST_F(LoadTest, GetEnvFailureKeepsTheServicesConnected) {
    Boot(DeviceProfile::Bare());
    CallOnUnload(Jvm::Get().vm());
    handset().Configure(DeviceProfile::AllAidl());
    Mark();
    FakeVm vm(JNI_EDETACHED, nullptr);
    EXPECT_EQ(CallOnLoad(vm.get()), -1);
    EXPECT_TRUE(Has(kInfo, Prefixed("g_aidlVibrator init success")));
    EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, Prefixed("JNI_OnLoad fail, GetEnv error")}}));
    // The services stay connected: calls work although registration never ran.
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
}

TEST_F(LoadTest, NullEnvironmentFailsRegistration) {
    Boot(DeviceProfile::AllAidl());
    FakeVm vm(JNI_OK, nullptr);
    Mark();
    EXPECT_EQ(CallOnLoad(vm.get()), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("RegisterNativeMethods fail, env is null")},
                                 {kError, Prefixed("JNI_OnLoad fail, registerNatives failed")}}));
}

TEST_F(LoadTest, MissingClassFailsWithTwoErrorsAndNoPendingException) {
    Boot(DeviceProfile::AllAidl());
    RedirectingEnv env(mEnv, "com/corvex/mmitest/controller/NoSuchManager");
    FakeVm vm(JNI_OK, env.get());
    Mark();
    EXPECT_EQ(CallOnLoad(vm.get()), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("RegisterNativeMethods fail, class not found")},
                                 {kError, Prefixed("JNI_OnLoad fail, registerNatives failed")}}));
    EXPECT_FALSE(mEnv->ExceptionCheck());
}

TEST_F(LoadTest, ClassWithoutTheMethodsFailsRegistrationAndNoPendingException) {
    Boot(DeviceProfile::AllAidl());
    RedirectingEnv env(mEnv, "java/lang/Object");
    FakeVm vm(JNI_OK, env.get());
    Mark();
    EXPECT_EQ(CallOnLoad(vm.get()), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("RegisterNativeMethods fail, cont not register all the methods")},
                                 {kError, Prefixed("JNI_OnLoad fail, registerNatives failed")}}));
    EXPECT_FALSE(mEnv->ExceptionCheck());
}

TEST_F(LoadTest, UnloadRunsBothExitsThenReleasesAndLeavesNullHandles) {
    Boot(DeviceProfile::AllAidl());
    CallOnUnload(Jvm::Get().vm());
    const std::vector<Line> lines = Lines();
    ASSERT_GE(lines.size(), 14u);
    EXPECT_EQ(lines[0], (Line{kInfo, "ExitMmiNativeManager"}));
    EXPECT_EQ(lines[1], (Line{kInfo, Prefixed("ExitMmiManager")}));
    EXPECT_TRUE(Has(kInfo, Prefixed("ExitMmiManager by hidl")));
    EXPECT_EQ(lines[lines.size() - 2], (Line{kInfo, "ReleaseNativeGlobalValue"}));
    EXPECT_EQ(lines.back(), (Line{kInfo, Prefixed("ReleaseGlobalValue")}));
    Mark();
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "");
    EXPECT_TRUE(Has(kInfo, "GetBsn, Hidl Called"));
    EXPECT_TRUE(Has(kError, Prefixed("GetBsn by hidl fail, g_hwFactoryInterface is null")));
}

TEST_F(LoadTest, UnloadWithNullVmDoesNothingElse) {
    Boot(DeviceProfile::AllAidl());
    CallOnUnload(nullptr);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kError, Prefixed("JNI_OnUnLoad fail, vm is null")}}));
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
}

TEST_F(LoadTest, UnloadWithoutEnvironmentExitsButKeepsTheClientReferences) {
    Boot(DeviceProfile::AllAidl());
    FakeVm vm(JNI_EDETACHED, nullptr);
    CallOnUnload(vm.get());
    EXPECT_TRUE(Has(kInfo, Prefixed("ExitMmiManager")));
    EXPECT_TRUE(Has(kInfo, Prefixed("ExitMmiManager by hidl")));
    EXPECT_TRUE(Has(kError, Prefixed("JNI_OnUnLoad fail, GetEnv error")));
    EXPECT_FALSE(Has(kInfo, "ReleaseNativeGlobalValue"));
    EXPECT_FALSE(Has(kInfo, Prefixed("ReleaseGlobalValue")));
}

TEST_F(LoadTest, ExitWithNothingConnectedWritesTheTenAidlLines) {
    Boot(DeviceProfile::Bare());
    CallOnUnload(Jvm::Get().vm());
    std::vector<Line> aidlExit;
    for (const Line& line : Lines()) {
        if (line.message == Prefixed("ExitMmiManager by hidl")) break;
        if (line.message != "ExitMmiNativeManager") aidlExit.push_back(line);
    }
    std::vector<Line> expected{{kInfo, Prefixed("ExitMmiManager")}};
    for (const char* family : {"FactoryInterface", "Display", "TouchScreen", "Fingerprint", "Sensors", "Power",
                               "Light", "Vaelon", "Vibrator"}) {
        expected.push_back({kInfo, Prefixed(std::string("Exit") + family)});
    }
    EXPECT_EQ(aidlExit, expected);
}

}  // namespace
}  // namespace mmitest
