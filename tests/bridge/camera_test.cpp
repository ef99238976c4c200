// The camera always-on service: capabilities and overtime, client registration, and the
// service's events reaching Java from threads the service owns.
#include "device_support.h"
#include "jvm.h"

namespace mmitest {
namespace {

using mmisim::VaelonAnswers;

class CameraAlwaysOnTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        Boot(mmisim::DeviceProfile::AllAidl());
    }
    jint Register(jint serviceType) { return Int("registerClientNative", "(I)I", serviceType); }
    jint Unregister() { return Int("unregisterClientNative", "()I"); }
    // The service reports an event from a thread of its own that is attached to the Java VM
    // for the time of the event. The library must leave no Java exception pending there.
    bool EventOnAttachedThread(int32_t serviceResult) {
        JNIEnv* env = nullptr;
        bool exceptionLeft = false;
        const bool delivered = handset().NotifyVaelonEvent(
                serviceResult, [&] { Jvm::Get().vm()->AttachCurrentThread(reinterpret_cast<void**>(&env), nullptr); },
                [&] {
                    exceptionLeft = env->ExceptionCheck();
                    if (exceptionLeft) env->ExceptionClear();
                    Jvm::Get().vm()->DetachCurrentThread();
                });
        EXPECT_FALSE(exceptionLeft) << "a Java exception was left pending on the service thread";
        return delivered;
    }
    // Error lines other than the one every event writes first.
    std::vector<Line> EventErrors() const {
        std::vector<Line> errors = LinesWithPriority(kError);
        if (errors.empty() || errors.front().message.rfind("RegisterClient to get vaelon callback success", 0) != 0) {
            ADD_FAILURE() << "the event's first line is missing";
            return errors;
        }
        errors.erase(errors.begin());
        return errors;
    }
};

TEST_F(CameraAlwaysOnTest, CapabilitiesInServiceOrderAndTheLastMatchingOvertime) {
    handset().vaelon().update([](VaelonAnswers& a) { a.capabilities = {{1, {30}}, {2, {}}, {1, {45, 60}}}; });
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), (std::vector<int>{1, 2, 1}));
    EXPECT_TRUE(Has(kInfo, Prefixed("GetCapabilities by aidl success, return 3 ints.")));
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), 45);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetVaelonOvertime by aidl success, overtime 45.")));
    // A matching record without overtimes, and no matching record at all.
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 2), -1);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 3), -1);
    EXPECT_EQ(Count(kInfo, Prefixed("GetVaelonOvertime by aidl success, overtime -1.")), 2);
}

TEST_F(CameraAlwaysOnTest, EmptyCapabilityListGivesNullAndMinusOne) {
    handset().vaelon().update([](VaelonAnswers& a) { a.capabilities.clear(); });
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), std::nullopt);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({Prefixed("GetCapabilities by aidl fail, get empty result vector"),
                      Prefixed("GetVaelonOvertime by aidl fail, get empty result vector")}));
}

TEST_F(CameraAlwaysOnTest, RegisterThenUnregisterSendsBackTheLastHandleGiven) {
    EXPECT_EQ(Register(4), 0);
    EXPECT_TRUE(Has(kInfo, Prefixed("RegisterClient by aidl success, return 0, serviceType: 4, clientHandle: 7")));
    // A second registration replaces the handle.
    handset().vaelon().update([](VaelonAnswers& a) { a.clientHandle = 9; });
    EXPECT_EQ(Register(5), 0);
    EXPECT_EQ(CallsTo(handset().vaelon(), "registerClient"), (Rows{{"aidl", "4", "0"}, {"aidl", "5", "0"}}));
    EXPECT_EQ(Unregister(), 0);
    EXPECT_EQ(CallsTo(handset().vaelon(), "unregisterClient"), (Rows{{"aidl", "9"}}));
    EXPECT_TRUE(Has(kInfo, Prefixed("UnregisterClient by aidl, clear g_aidlVaelonNotifier")));
    EXPECT_TRUE(Has(kInfo, Prefixed("UnregisterClient by aidl success, return 0, clientHandle: 9")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_F(CameraAlwaysOnTest, UnregisterWithoutRegistrationSendsTheUnfilledHandle) {
    EXPECT_EQ(Unregister(), 0);
    EXPECT_EQ(CallsTo(handset().vaelon(), "unregisterClient"), (Rows{{"aidl", "0"}}));
    EXPECT_FALSE(Has(kInfo, Prefixed("UnregisterClient by aidl, clear g_aidlVaelonNotifier")));
}

TEST_F(CameraAlwaysOnTest, ServiceResultsOtherThanZeroFail) {
    handset().vaelon().update([](VaelonAnswers& a) {
        a.registerResult = 5;
        a.unregisterResult = 3;
    });
    EXPECT_EQ(Register(4), -1);
    EXPECT_EQ(Unregister(), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({Prefixed("RegisterClient by aidl fail, get result fail, result: 5"),
                      Prefixed("UnregisterClient by aidl fail, get result fail, result: 3")}));
}

TEST_F(CameraAlwaysOnTest, ServiceDyingUnderTheCallsLeavesThePresets) {
    WithDeadService(mmisim::Family::kVaelon, [&] {
        EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), std::nullopt);
        EXPECT_EQ(Register(4), -1);
        EXPECT_EQ(Unregister(), -1);
    });
    // 2: the service did not write its result.
    EXPECT_TRUE(Has(kError, Prefixed("RegisterClient by aidl fail, get result fail, result: 2")));
    EXPECT_TRUE(Has(kError, Prefixed("UnregisterClient by aidl fail, get result fail, result: 2")));
}

TEST_F(CameraAlwaysOnTest, EventOnAnAttachedServiceThreadCallsJava) {
    ASSERT_EQ(Register(4), 0);
    const int before = RegisterSuccessCount(mEnv);
    Mark();
    ASSERT_TRUE(EventOnAttachedThread(3));
    EXPECT_EQ(RegisterSuccessCount(mEnv), before + 1);
    EXPECT_EQ(Lines(), Errors({"RegisterClient to get vaelon callback success, clientHandle: 7, serviceResult: 3"}));
}

TEST_F(CameraAlwaysOnTest, EventOnAThreadUnknownToJavaCallsNothing) {
    ASSERT_EQ(Register(4), 0);
    const int before = RegisterSuccessCount(mEnv);
    Mark();
    ASSERT_TRUE(handset().NotifyVaelonEvent(3));
    EXPECT_EQ(EventErrors(), Errors({Prefixed("RegisterClient fail, get env fail")}));
    EXPECT_EQ(RegisterSuccessCount(mEnv), before);
}

// Registration called straight through the library's native table with an environment
// whose class lookup and Java VM the test chooses.
class CameraRegistrationEnvTest : public CameraAlwaysOnTest {
protected:
    jint RegisterThrough(const char* className, JavaVM* vm) {
        const auto table = NativeTable::Capture([this](JavaVM* loadVm) { return CallOnLoad(loadVm); }, mEnv);
        auto registerClient = reinterpret_cast<jint (*)(JNIEnv*, jobject, jint)>(table.at("registerClientNative"));
        RedirectedEnv env(mEnv, className, vm);
        Mark();
        return registerClient(env.get(), mManager, 4);
    }
};

TEST_F(CameraRegistrationEnvTest, VmWithoutEnvironmentCallsNothing) {
    static JNIInvokeInterface_ invoke{};
    invoke.GetEnv = [](JavaVM*, void** env, jint) {
        *env = nullptr;
        return JNI_OK;
    };
    static JavaVM_ vm{};
    vm.functions = &invoke;
    ASSERT_EQ(RegisterThrough(kNativeManagerClass, &vm), 0);
    const int before = RegisterSuccessCount(mEnv);
    ASSERT_TRUE(EventOnAttachedThread(3));
    EXPECT_EQ(EventErrors(), Errors({"RegisterClient fail, env is null"}));
    EXPECT_EQ(RegisterSuccessCount(mEnv), before);
}

TEST_F(CameraRegistrationEnvTest, ClassWithoutRegisterSuccessIsReportedAndLeavesNoException) {
    ASSERT_EQ(RegisterThrough("java/lang/Object", Jvm::Get().vm()), 0);
    ASSERT_TRUE(EventOnAttachedThread(3));
    // The failed lookup's exception is cleared on the service thread (checked by the event).
    EXPECT_EQ(EventErrors(), Errors({Prefixed("RegisterClient fail, method RegisterSuccess not found"),
                                     "RegisterClient fail, vaelonCallbackId is nullptr"}));
}

TEST_F(CameraRegistrationEnvTest, MissingClassStillRegistersButEventsFindNoWayBack) {
    EXPECT_EQ(RegisterThrough("com/corvex/mmitest/controller/NoSuchManager", Jvm::Get().vm()), 0);
    EXPECT_FALSE(mEnv->ExceptionCheck());
    EXPECT_TRUE(Has(kError, Prefixed(std::string("RegisterClient by aidl fail, class ") + kNativeManagerClass +
                                     " not found")));
    Mark();
    ASSERT_TRUE(EventOnAttachedThread(3));
    EXPECT_EQ(EventErrors(), Errors({"RegisterClient fail, g_globalEnv is null or g_nativeClass is null"}));
}

class CameraAlwaysOnAbsentTest : public MmiTest {};

TEST_F(CameraAlwaysOnAbsentTest, WithoutTheServiceTheDispatcherAnswers) {
    Boot(mmisim::DeviceProfile::Bare());
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), std::nullopt);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), -1);
    EXPECT_EQ(Int("registerClientNative", "(I)I", 4), -1);
    EXPECT_EQ(Int("unregisterClientNative", "()I"), -1);
    for (const char* name : {"GetCapabilities", "GetVaelonOvertime", "RegisterClient", "UnregisterClient"}) {
        EXPECT_TRUE(Has(kInfo, std::string(name) + ", no Hidl Called")) << name;
    }
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

}  // namespace
}  // namespace mmitest
