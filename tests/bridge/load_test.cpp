// Library load and unload through the real JVM, and their failure paths (through a Java VM
// and an environment whose lookups the test chooses).
#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;

class LoadTest : public MmiTest {};

TEST_F(LoadTest, LoadConnectsEveryFamilyInOrderThenRegisters) {
    Boot(DeviceProfile::AllAidl());
    CallOnUnload(Jvm::Get().vm());
    Mark();
    ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    EXPECT_EQ(Lines().front(), (Line{kInfo, Prefixed("InitMmiNativeManager")}));
    EXPECT_EQ(Messages(kInfo, "Init"), (std::vector<std::string>{"InitFactoryInterface", "InitDisplay", "InitTouchScreen",
                                                                 "InitFingerprint", "InitSensor", "InitPower", "InitLight",
                                                                 "InitVaelon", "InitVibrator"}));
    // Every native method is registered: the JVM checked names and signatures.
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    Mark();
    EXPECT_EQ(CallOnLoad(nullptr), -1);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kError, Prefixed("JNI_OnLoad fail, vm is null")}}));
}

// A load that fails after connecting returns -1 with its lines and no pending exception,
// and leaves the services connected.
TEST_F(LoadTest, FailuresAfterConnectingKeepTheServices) {
    struct Case {
        jint getEnv;
        bool withEnvironment;
        const char* managerClass;
        std::vector<std::string> errors;
    };
    const std::string registration = Prefixed("JNI_OnLoad fail, registerNatives failed");
    const std::vector<Case> cases = {
            {JNI_EDETACHED, false, nullptr, {Prefixed("JNI_OnLoad fail, GetEnv error")}},
            {JNI_OK, false, nullptr, {Prefixed("RegisterNativeMethods fail, env is null"), registration}},
            {JNI_OK, true, "com/corvex/mmitest/controller/NoSuchManager",
             {Prefixed("RegisterNativeMethods fail, class not found"), registration}},
            {JNI_OK, true, "java/lang/Object",
             {Prefixed("RegisterNativeMethods fail, cont not register all the methods"), registration}}};
    Boot(DeviceProfile::AllAidl());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.errors.front());
        CallOnUnload(Jvm::Get().vm());
        Mark();
        {
            PatchedJni jni(mEnv);
            PatchedJni::getEnvResult = c.getEnv;
            PatchedJni::getEnvEnv = c.withEnvironment ? mEnv : nullptr;
            PatchedJni::redirectClass = c.managerClass;
            jni.Apply();
            EXPECT_EQ(CallOnLoad(jni.vm()), -1);
        }
        EXPECT_FALSE(mEnv->ExceptionCheck());
        EXPECT_EQ(Messages(kError), c.errors);
        EXPECT_TRUE(Has(kInfo, Prefixed("g_aidlVibrator init success")));
        EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    }
}

TEST_F(LoadTest, UnloadRunsBothExitsThenReleasesAndLeavesNullHandles) {
    Boot(DeviceProfile::AllAidl());
    CallOnUnload(nullptr);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kError, Prefixed("JNI_OnUnLoad fail, vm is null")}}));
    Mark();
    CallOnUnload(Jvm::Get().vm());
    const std::vector<Line> lines = Lines();
    ASSERT_GE(lines.size(), 14u);
    EXPECT_EQ(lines[0], (Line{kInfo, "ExitMmiNativeManager"}));
    EXPECT_EQ(Messages(kInfo, Prefixed("Exit")),
              (std::vector<std::string>{Prefixed("ExitMmiManager"), Prefixed("ExitFactoryInterface"), Prefixed("ExitDisplay"),
                                        Prefixed("ExitTouchScreen"), Prefixed("ExitFingerprint"), Prefixed("ExitSensors"),
                                        Prefixed("ExitPower"), Prefixed("ExitLight"), Prefixed("ExitVaelon"),
                                        Prefixed("ExitVibrator"), Prefixed("ExitMmiManager by hidl")}));
    EXPECT_EQ(std::vector<Line>(lines.end() - 2, lines.end()),
              (std::vector<Line>{{kInfo, "ReleaseNativeGlobalValue"}, {kInfo, Prefixed("ReleaseGlobalValue")}}));
    Mark();
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "");
    EXPECT_TRUE(Has(kError, Prefixed("GetBsn by hidl fail, g_hwFactoryInterface is null")));
}

TEST_F(LoadTest, UnloadWithoutEnvironmentExitsButKeepsTheClientReferences) {
    Boot(DeviceProfile::Bare());
    PatchedJni jni(mEnv);
    PatchedJni::getEnvResult = JNI_EDETACHED;
    CallOnUnload(jni.vm());
    // Nothing connected: the AIDL exit writes its ten lines all the same.
    EXPECT_EQ(Messages(kInfo, Prefixed("Exit")),
              (std::vector<std::string>{Prefixed("ExitMmiManager"), Prefixed("ExitFactoryInterface"), Prefixed("ExitDisplay"),
                                        Prefixed("ExitTouchScreen"), Prefixed("ExitFingerprint"), Prefixed("ExitSensors"),
                                        Prefixed("ExitPower"), Prefixed("ExitLight"), Prefixed("ExitVaelon"),
                                        Prefixed("ExitVibrator"), Prefixed("ExitMmiManager by hidl")}));
    EXPECT_EQ(Messages(kError), std::vector<std::string>{Prefixed("JNI_OnUnLoad fail, GetEnv error")});
    EXPECT_FALSE(Has(kInfo, "ReleaseNativeGlobalValue"));
}

}  // namespace
}  // namespace mmitest
