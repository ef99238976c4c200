// The camera always-on service: capabilities and overtime, client registration, and the
// service's events reaching Java from threads the service owns.
#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::VaelonAnswers;

class CameraTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        Boot(mmisim::DeviceProfile::AllAidl());
    }
    jint Register(jint serviceType) { return Int("registerClientNative", "(I)I", serviceType); }
    jint Unregister() { return Int("unregisterClientNative", "()I"); }
    // Registers through an environment whose class lookups find `className`; without a VM
    // environment, the Java VM the library keeps hands out none.
    jint RegisterWith(const char* className, bool vmWithoutEnvironment = false) {
        static JavaVM* sVm = nullptr;
        PatchedJni jni(mEnv);
        PatchedJni::redirectClass = className;
        if (vmWithoutEnvironment) {
            PatchedJni::getEnvEnv = nullptr;
            sVm = jni.vm();
            jni.functions.GetJavaVM = [](JNIEnv*, JavaVM** vm) {
                *vm = sVm;
                return JNI_OK;
            };
        }
        jni.Apply();
        return Register(4);
    }
    // The service reports an event from a thread of its own that is attached to the Java VM
    // for the time of the event. The library must leave no Java exception pending there.
    // Returns the ERROR lines other than the one every event writes first.
    std::vector<Line> EventOnAttachedThread(int32_t serviceResult) {
        Mark();
        JNIEnv* env = nullptr;
        bool exceptionLeft = false;
        EXPECT_TRUE(handset().NotifyVaelonEvent(
                serviceResult, [&] { Jvm::Get().vm()->AttachCurrentThread(reinterpret_cast<void**>(&env), nullptr); },
                [&] {
                    exceptionLeft = env->ExceptionCheck();
                    if (exceptionLeft) env->ExceptionClear();
                    Jvm::Get().vm()->DetachCurrentThread();
                }));
        EXPECT_FALSE(exceptionLeft) << "a Java exception was left pending on the service thread";
        std::vector<Line> errors = LinesWithPriority(kError);
        const std::string first = "RegisterClient to get vaelon callback success, clientHandle: 7, serviceResult: " +
                                  std::to_string(serviceResult);
        EXPECT_FALSE(errors.empty() || errors.front().message != first) << "the event's first line is missing";
        if (!errors.empty()) errors.erase(errors.begin());
        return errors;
    }
};

TEST_F(CameraTest, CapabilitiesInServiceOrderAndTheLastMatchingOvertime) {
    handset().vaelon().update([](VaelonAnswers& a) { a.capabilities = {{1, {30}}, {2, {}}, {1, {45, 60}}}; });
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), (std::vector<int>{1, 2, 1}));
    EXPECT_TRUE(Has(kInfo, Prefixed("GetCapabilities by aidl success, return 3 ints.")));
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), 45);
    // A matching record without overtimes, and no matching record at all.
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 2), -1);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 3), -1);
    EXPECT_EQ(Count(kInfo, Prefixed("GetVaelonOvertime by aidl success, overtime -1.")), 2);
}

TEST_F(CameraTest, EmptyAndVeryLongCapabilityLists) {
    handset().vaelon().update([](VaelonAnswers& a) { a.capabilities.clear(); });
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), std::nullopt);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("GetCapabilities by aidl fail, get empty result vector")},
                                 {kError, Prefixed("GetVaelonOvertime by aidl fail, get empty result vector")}}));
    // Types 0-6 in turn; every third record names no overtime.
    std::vector<mmisim::Capability> many;
    std::vector<int> types;
    int lastOvertimeOfType4 = -1;
    for (int i = 0; i < 100000; ++i) {
        const bool named = i % 3 != 0;
        many.push_back({i % 7, named ? std::vector<int32_t>{i, 1} : std::vector<int32_t>{}});
        types.push_back(i % 7);
        if (i % 7 == 4 && named) lastOvertimeOfType4 = i;
    }
    handset().vaelon().update([&](VaelonAnswers& a) { a.capabilities = many; });
    EXPECT_TRUE(Ints("getCapabilitiesNative", "()[I") == types);
    // The first overtime of the last record of the type that names one.
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 4), lastOvertimeOfType4);
}

TEST_F(CameraTest, UnregisterSendsBackTheLastHandleGiven) {
    EXPECT_EQ(Unregister(), 0);  // nothing registered yet: the unfilled handle
    EXPECT_FALSE(Has(kInfo, Prefixed("UnregisterClient by aidl, clear g_aidlVaelonNotifier")));
    EXPECT_EQ(Register(4), 0);
    handset().vaelon().update([](VaelonAnswers& a) { a.clientHandle = 9; });
    EXPECT_EQ(Register(5), 0);  // replaces the handle
    EXPECT_EQ(Unregister(), 0);
    EXPECT_EQ(Received(mmisim::Family::kVaelon, "registerClient"), (std::vector<std::vector<std::string>>{{"4", "0"}, {"5", "0"}}));
    EXPECT_EQ(Received(mmisim::Family::kVaelon, "unregisterClient"), (std::vector<std::vector<std::string>>{{"0"}, {"9"}}));
    EXPECT_TRUE(Has(kInfo, Prefixed("UnregisterClient by aidl success, return 0, clientHandle: 9")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_F(CameraTest, ServiceResultsOtherThanZeroFail) {
    handset().vaelon().update([](VaelonAnswers& a) {
        a.registerResult = 5;
        a.unregisterResult = 3;
    });
    EXPECT_EQ(Register(4), -1);
    EXPECT_EQ(Unregister(), -1);
    // A call failing in transport leaves the preset 2: the service wrote no result.
    handset().setFaults(mmisim::Family::kVaelon, {true, false, 0});
    EXPECT_EQ(Register(4), -1);
    EXPECT_EQ(Unregister(), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("RegisterClient by aidl fail, get result fail, result: 5")},
                                 {kError, Prefixed("UnregisterClient by aidl fail, get result fail, result: 3")},
                                 {kError, Prefixed("RegisterClient by aidl fail, get result fail, result: 2")},
                                 {kError, Prefixed("UnregisterClient by aidl fail, get result fail, result: 2")}}));
}

TEST_F(CameraTest, EventsReachJavaOnlyFromAttachedThreads) {
    ASSERT_EQ(Register(4), 0);
    const int before = RegisterSuccesses();
    EXPECT_TRUE(EventOnAttachedThread(3).empty());
    EXPECT_EQ(RegisterSuccesses(), before + 1);
    // A thread unknown to the Java VM calls nothing.
    Mark();
    ASSERT_TRUE(handset().NotifyVaelonEvent(3));
    EXPECT_EQ(LinesWithPriority(kError).back(), (Line{kError, Prefixed("RegisterClient fail, get env fail")}));
    EXPECT_EQ(RegisterSuccesses(), before + 1);
}

TEST_F(CameraTest, VmWithoutEnvironmentCallsNothing) {
    ASSERT_EQ(RegisterWith(nullptr, true), 0);
    const int before = RegisterSuccesses();
    EXPECT_EQ(EventOnAttachedThread(3), (std::vector<Line>{{kError, "RegisterClient fail, env is null"}}));
    EXPECT_EQ(RegisterSuccesses(), before);
}

TEST_F(CameraTest, ClassWithoutRegisterSuccessIsReportedAndLeavesNoException) {
    ASSERT_EQ(RegisterWith("java/lang/Object"), 0);
    // The failed lookup's exception is cleared on the service thread (checked by the event).
    EXPECT_EQ(EventOnAttachedThread(3),
              (std::vector<Line>{{kError, Prefixed("RegisterClient fail, method RegisterSuccess not found")},
                                 {kError, "RegisterClient fail, vaelonCallbackId is nullptr"}}));
}

TEST_F(CameraTest, MissingClassStillRegistersButEventsFindNoWayBack) {
    Mark();
    EXPECT_EQ(RegisterWith("com/corvex/mmitest/controller/NoSuchManager"), 0);
    EXPECT_TRUE(Has(kError, Prefixed("RegisterClient by aidl fail, class com/corvex/mmitest/controller/MmiNativeManager "
                                     "not found")));
    EXPECT_EQ(EventOnAttachedThread(3),
              (std::vector<Line>{{kError, "RegisterClient fail, g_globalEnv is null or g_nativeClass is null"}}));
}

}  // namespace
}  // namespace mmitest
