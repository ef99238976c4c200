// Backend choice per family at load and per call, and the dispatchers that differ from the
// standard pattern.
#include <algorithm>
#include <string>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;

bool AnyLineContains(const std::vector<Line>& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const Line& l) { return l.message.find(text) != std::string::npos; });
}

int CountLines(const std::vector<Line>& lines, const std::string& message) {
    return static_cast<int>(
            std::count_if(lines.begin(), lines.end(), [&](const Line& l) { return l.message == message; }));
}

class DispatchTest : public MmiTest {};

TEST_F(DispatchTest, ServedOverAidlTheCallNeverReachesHidl) {
    Boot(DeviceProfile::AllAidl());
    EXPECT_TRUE(Bool("isFactoryVersionNative", "()Z"));
    EXPECT_EQ(Lines(), (std::vector<Line>{{kInfo, "isFactoryInterfaceAidlVersion"},
                                          {kInfo, "isFactoryInterfaceAidlVersion, true"},
                                          {kInfo, "IsFactoryVersion, Aidl Called"},
                                          {kInfo, Prefixed("IsFactoryVersion by aidl: 1")}}));
    const auto calls = handset().factory().callsTo("isFactoryVersion");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].origin, "aidl");
}

TEST_F(DispatchTest, NotServedAtAllTheHidlBackendAnswersWithItsNullPath) {
    Boot(DeviceProfile::Bare());
    EXPECT_FALSE(Bool("isFactoryVersionNative", "()Z"));
    EXPECT_EQ(Lines(), (std::vector<Line>{{kInfo, "isFactoryInterfaceAidlVersion"},
                                          {kInfo, "IsFactoryVersion, Hidl Called"},
                                          {kError, Prefixed("IsFactoryVersion by hidl fail, g_hwFactoryInterface is null")}}));
}

TEST_F(DispatchTest, MixedHandsetConnectsEachFamilyWhereItIsServed) {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile[Family::kFactory].transport = Transport::kHidl;
    Boot(profile);
    const std::vector<Line> boot = BootLines();
    EXPECT_TRUE(AnyLineContains(boot, "g_hwFactoryInterface linkToDeath"));
    // Sensors are served over AIDL: neither HIDL sensors service is tried.
    EXPECT_TRUE(AnyLineContains(boot, "g_aidlSensors init success"));
    EXPECT_FALSE(AnyLineContains(boot, "InitSensor by hidl"));
    EXPECT_FALSE(AnyLineContains(boot, "InitSensorsV20 by hidl"));

    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    EXPECT_TRUE(Has(kInfo, "GetBsn, Hidl Called"));
    EXPECT_TRUE(Has(kInfo, Prefixed("GetBsn by hidl, ret: 0")));
}

TEST_F(DispatchTest, CameraAndVibratorAreTriedOverAidlOnAHidlHandset) {
    Boot(DeviceProfile::AllHidl());
    const std::vector<Line> boot = BootLines();
    EXPECT_EQ(CountLines(boot, "InitVaelon"), 1);
    EXPECT_EQ(CountLines(boot, Prefixed("g_aidlVaelon is null")), 1);
    EXPECT_EQ(CountLines(boot, "InitVibrator"), 1);
    EXPECT_EQ(CountLines(boot, "InitVibrator failed to get IVibrator"), 1);
}

TEST_F(DispatchTest, OnlyTheFirstSensorsGenerationLeavesTheSecondHandleNull) {
    DeviceProfile profile = DeviceProfile::AllHidl();
    profile[Family::kSensors].hidlMinor = 0;
    profile[Family::kSensors].sensorsV2 = false;
    Boot(profile);
    const std::vector<Line> boot = BootLines();
    EXPECT_EQ(CountLines(boot, Prefixed("g_hwSensors linkToDeath")), 1);
    EXPECT_EQ(CountLines(boot, Prefixed("g_zentelSensors is nullptr")), 1);
}

TEST_F(DispatchTest, LightLinkLineHasNoPrefix) {
    Boot(DeviceProfile::AllHidl());
    EXPECT_EQ(CountLines(BootLines(), "g_hwLight linkToDeath"), 1);
}

TEST_F(DispatchTest, VibratorWithoutAidlServiceFailsInTheDispatcher) {
    Boot(DeviceProfile::AllHidl());
    Void("setVibratorParameterNative", "(Ljava/lang/String;)V", J("intensity=3"));
    EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, "SetVibratorPar fail, Aidl is null"}}));
    Mark();
    EXPECT_EQ(Str("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", J("f0")), "");
    EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, "GetVibratorResult fail, Aidl is null"}}));
    EXPECT_TRUE(handset().vibrator().calls().empty());
}

TEST_F(DispatchTest, CameraWithoutAidlServiceAnswersInTheDispatcher) {
    Boot(DeviceProfile::AllHidl());
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), std::nullopt);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), -1);
    EXPECT_EQ(Int("registerClientNative", "(I)I", 1), -1);
    EXPECT_EQ(Int("unregisterClientNative", "()I"), -1);
    for (const char* name : {"GetCapabilities", "GetVaelonOvertime", "RegisterClient", "UnregisterClient"}) {
        EXPECT_EQ(Count(kInfo, std::string(name) + ", no Hidl Called"), 1) << name;
    }
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_F(DispatchTest, FlickerAmplitudeWithoutAidlSensorsIsNull) {
    Boot(DeviceProfile::AllHidl());
    EXPECT_EQ(Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", 5), std::nullopt);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kInfo, "IsSensorAidlVersion"},
                                          {kInfo, "GetFlickerFrequencyAndAmplitude, Aidl is null"}}));
    EXPECT_TRUE(handset().sensors().calls().empty());
}

TEST_F(DispatchTest, VideoInterpolationNeverConsultsAFamily) {
    Boot(DeviceProfile::AllAidl());
    Int("getVideoInterpolationDefaultModelNative", "()I");
    Str("getVideoInterpolationModelNative", "()Ljava/lang/String;");
    Int("setVideoInterpolationModelNative", "(II)I", 1, 60);
    Int("recoverInperpolateFreshRateNative", "()I");
    const std::vector<Line> lines = Lines();
    EXPECT_FALSE(AnyLineContains(lines, "AidlVersion"));
    for (const char* name : {"GetVideoInterpolationDefaultModel", "GetVideoInterpolationModel",
                             "SetVideoInterpolationModel", "RecoverInperpolateFreshRate"}) {
        EXPECT_EQ(Count(kInfo, std::string(name) + ", Hidl Called"), 1) << name;
    }
}

TEST_F(DispatchTest, ChoiceFollowsTheHandleOnEveryCall) {
    Boot(DeviceProfile::AllAidl());
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    EXPECT_TRUE(Has(kInfo, "GetBsn, Aidl Called"));
    // The service dies and stays away: the recovery waits for it, and meanwhile calls are
    // routed to HIDL, which has no factory handle on this handset.
    handset().Kill(Family::kFactory);
    ASSERT_TRUE(WaitFor(kInfo, "InitFactoryInterface"));  // the recovery now waits for it
    Mark();
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(Lines(), (std::vector<Line>{{kInfo, "isFactoryInterfaceAidlVersion"},
                                          {kInfo, "GetBsn, Hidl Called"},
                                          {kError, Prefixed("GetBsn by hidl fail, g_hwFactoryInterface is null")}}));
    handset().Start(Family::kFactory);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlVibrator init success")));
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
}

TEST_F(DispatchTest, FingerprintWithoutSessionIsRoutedToHidl) {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile[Family::kFingerprint].fingerprintNoSession = true;
    Boot(profile);
    const std::vector<Line> boot = BootLines();
    EXPECT_EQ(CountLines(boot, Prefixed("g_aidlFingerprintSession is null")), 1);
    EXPECT_EQ(CountLines(boot, "IsFingerprintAidlVersion, true"), 0);
    EXPECT_EQ(CountLines(boot, "InitFingerprint by hidl"), 1);

    EXPECT_EQ(Int("sendCmdToFingerprintHalNative", "(I)I", 7), -1);
    EXPECT_TRUE(Has(kInfo, "SendCmdToFingerprintHal, Hidl Called"));
    EXPECT_TRUE(Has(kError, Prefixed("SetCmdToFingerprintHal by hidl fail, g_hwFingerprint is null")));
}

TEST_F(DispatchTest, FingerprintWithoutSessionKeepsItsServiceAcrossARecovery) {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile[Family::kFingerprint].fingerprintNoSession = true;
    Boot(profile);
    ASSERT_EQ(handset().fingerprint().callsTo("createSession").size(), 1u);
    // Another service dies: the exit leaves the fingerprint service set (there is no session
    // to unlink), so the restart asks for no new session.
    handset().Kill(Family::kLight);
    handset().Start(Family::kLight);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlVibrator init success")));
    EXPECT_EQ(handset().fingerprint().callsTo("createSession").size(), 1u);
    EXPECT_EQ(Count(kError, Prefixed("g_aidlFingerprintSession is null")), 0);
}

struct ExtensionCase {
    mmisim::VibratorExtension extension;
    const char* errorLine;
};

class VibratorExtensionTest : public MmiTest, public ::testing::WithParamInterface<ExtensionCase> {};

TEST_P(VibratorExtensionTest, WrongExtensionLeavesTheVibratorUnserved) {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile[Family::kVibrator].vibratorExtension = GetParam().extension;
    Boot(profile);
    EXPECT_EQ(CountLines(BootLines(), GetParam().errorLine), 1);
    EXPECT_EQ(CountLines(BootLines(), Prefixed("g_aidlVibrator init success")), 0);
    Void("setVibratorParameterNative", "(Ljava/lang/String;)V", J("intensity=3"));
    EXPECT_TRUE(Has(kError, "SetVibratorPar fail, Aidl is null"));
}

INSTANTIATE_TEST_SUITE_P(
        Extensions, VibratorExtensionTest,
        ::testing::Values(ExtensionCase{mmisim::VibratorExtension::kNone, "InitVibrator failed to get IBinder"},
                          ExtensionCase{mmisim::VibratorExtension::kOtherInterface,
                                        "ZtMmiTest_jni: g_aidlVibrator is null"}),
        [](const ::testing::TestParamInfo<ExtensionCase>& info) {
            return std::string(info.param.extension == mmisim::VibratorExtension::kNone ? "NoExtension"
                                                                                        : "OtherInterface");
        });

}  // namespace
}  // namespace mmitest
