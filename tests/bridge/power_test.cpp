// Power test scenes and the USB speed check over both backends.
#include "device_support.h"

namespace mmitest {
namespace {

using mmisim::PowerAnswers;

constexpr const char* kSetSig = "(Ljava/lang/String;Ljava/lang/String;)I";
constexpr const char* kGetSig = "(Ljava/lang/String;)Ljava/lang/String;";
constexpr const char* kUsbSig = "(Ljava/lang/String;)I";

class PowerUsbBackendTest : public DeviceBackendCase {};

TEST_P(PowerUsbBackendTest, SetPowerStateSendsTheSceneAndAnswersTheResult) {
    handset().power().update([](PowerAnswers& a) { a.setPowerStateResult = 5; });
    EXPECT_EQ(Int("setPowerStateNative", kSetSig, J("standby"), J("time=10")), 5);
    // Over AIDL the caller tag goes first.
    EXPECT_EQ(CallsTo(handset().power(), "setPowerState"),
              (GetParam().aidl() ? Rows{{"aidl", "ZtMmiTest_jni", "standby", "time=10"}}
                                 : Rows{{"hidl", "standby", "time=10"}}));
    EXPECT_TRUE(Has(kInfo, By("SetPowerState", ", testScene:standby, para:time=10, result:5")));
}

TEST_P(PowerUsbBackendTest, PowerStateTextOnlyWithResultZero) {
    EXPECT_EQ(Str("getPowerStateNative", kGetSig, J("charge")), "charging");
    EXPECT_EQ(CallsTo(handset().power(), "getPowerState"),
              (GetParam().aidl() ? Rows{{"aidl", "ZtMmiTest_jni", "charge"}} : Rows{{"hidl", "charge"}}));
    EXPECT_TRUE(Has(kInfo, By("GetPowerState", ", result code: 0, result info: charging")));
    handset().power().update([](PowerAnswers& a) { a.powerState = {3, "half written"}; });
    EXPECT_EQ(Str("getPowerStateNative", kGetSig, J("charge")), "");
    // Not an error line on either backend.
    EXPECT_TRUE(Has(kInfo, GetParam().aidl() ? By("GetPowerState", " fail, result code: 3")
                                             : By("GetPowerState", ", result code: 3, result info: ")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(PowerUsbBackendTest, NullJavaTextsFailBeforeTheService) {
    EXPECT_EQ(Int("setPowerStateNative", kSetSig, (jstring) nullptr, J("time=10")), -1);
    EXPECT_EQ(Int("setPowerStateNative", kSetSig, J("standby"), (jstring) nullptr), -1);
    EXPECT_EQ(Str("getPowerStateNative", kGetSig, (jstring) nullptr), "");
    EXPECT_EQ(Int("checkUsbSpeedNative", kUsbSig, (jstring) nullptr), -1);
    EXPECT_EQ(LinesWithPriority(kError), Errors({By("SetPowerState", " fail, testScene is null"),
                                                 By("SetPowerState", " fail, para is null"),
                                                 By("GetPowerState", " fail, key is null"),
                                                 By("CheckUsbSpeed", " fail, scene is null")}));
    EXPECT_TRUE(handset().power().calls().empty());
}

INSTANTIATE_TEST_SUITE_P(Backends, PowerUsbBackendTest, ::testing::Values(kAidlDevices, kHidlDevices),
                         DeviceBackendName);

class PowerUsbTest : public MmiTest {};

TEST_F(PowerUsbTest, UsbSpeedOverAidlIsAPowerStateRequestWithTheFixedParameters) {
    Boot(mmisim::DeviceProfile::AllAidl());
    handset().power().update([](PowerAnswers& a) { a.setPowerStateResult = 1; });
    EXPECT_EQ(Int("checkUsbSpeedNative", kUsbSig, J("usb_otg")), 1);
    EXPECT_EQ(CallsTo(handset().power(), "setPowerState"),
              (Rows{{"aidl", "ZtMmiTest_jni", "usb_otg", "testTimes=,maxLimit=,minLimit="}}));
    EXPECT_TRUE(handset().power().callsTo("checkUsbSpeed").empty());
    EXPECT_TRUE(Has(kInfo, Prefixed("CheckUsbSpeed by aidl, scene: usb_otg, resultCode: 1")));
}

TEST_F(PowerUsbTest, UsbSpeedOverHidlIsTheServicesOwnCheck) {
    Boot(mmisim::DeviceProfile::AllHidl());
    handset().power().update([](PowerAnswers& a) { a.usbSpeed = {2, "usb2 only"}; });
    EXPECT_EQ(Int("checkUsbSpeedNative", kUsbSig, J("usb_otg")), 2);
    EXPECT_EQ(CallsTo(handset().power(), "checkUsbSpeed"), (Rows{{"hidl", "usb_otg", "", "", ""}}));
    EXPECT_TRUE(Has(kInfo, Prefixed("CheckUsbSpeed by hidl, scene: usb_otg, resultCode: 2, resultInfo: usb2 only")));
}

TEST_F(PowerUsbTest, WithoutServiceAnswersFallbacks) {
    Boot(mmisim::DeviceProfile::Bare());
    EXPECT_EQ(Int("setPowerStateNative", kSetSig, J("standby"), J("time=10")), -1);
    EXPECT_EQ(Str("getPowerStateNative", kGetSig, J("charge")), "");
    EXPECT_EQ(Int("checkUsbSpeedNative", kUsbSig, J("usb_otg")), -1);
    EXPECT_EQ(LinesWithPriority(kError), Errors({Prefixed("SetPowerState by hidl fail, g_hwPower is null"),
                                                 Prefixed("GetPowerState by hidl fail, g_hwPower is null"),
                                                 Prefixed("CheckUsbSpeed by hidl fail, g_hwPower is null")}));
}

// A service dying under the calls leaves the presets, over either backend.
TEST_F(PowerUsbTest, ServiceDyingUnderTheCallsAnswersThePresets) {
    auto calls = [&] {
        EXPECT_EQ(Int("setPowerStateNative", kSetSig, J("standby"), J("time=10")), -1);
        EXPECT_EQ(Str("getPowerStateNative", kGetSig, J("charge")), "");
        EXPECT_EQ(Int("checkUsbSpeedNative", kUsbSig, J("usb_otg")), -1);
    };
    Boot(mmisim::DeviceProfile::AllHidl());
    WithDeadService(mmisim::Family::kPower, calls);
    EXPECT_TRUE(Has(kInfo, Prefixed("CheckUsbSpeed by hidl, scene: usb_otg, resultCode: -1, resultInfo: ")));
    Boot(mmisim::DeviceProfile::AllAidl());
    WithDeadService(mmisim::Family::kPower, calls);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetPowerState by aidl fail, result code: -1")));
}

}  // namespace
}  // namespace mmitest
