// Where each family is connected at load, and the dispatchers' special cases: a fingerprint
// service without a session, and vibrator services without the maker's extension. (Every
// method's choice per call is in native_methods_test.)
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;

class DispatchTest : public MmiTest {
protected:
    int BootCount(const std::string& message) {
        int count = 0;
        for (const Line& line : BootLines()) count += line.message == message;
        return count;
    }
};

TEST_F(DispatchTest, EachFamilyConnectsWhereItIsServed) {
    // Factory over HIDL, sensors over AIDL: neither HIDL sensors service is tried.
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile[Family::kFactory].transport = Transport::kHidl;
    Boot(profile);
    EXPECT_EQ(BootCount(Prefixed("g_hwFactoryInterface linkToDeath")), 1);
    EXPECT_EQ(BootCount(Prefixed("g_aidlSensors init success")), 1);
    EXPECT_EQ(BootCount("InitSensor by hidl") + BootCount("InitSensorsV20 by hidl"), 0);
    // The camera and the vibrator are tried over AIDL on a HIDL handset; the light's link
    // line has no prefix; a first sensors generation alone leaves the second handle null.
    profile = DeviceProfile::AllHidl();
    profile[Family::kSensors].hidlMinor = 0;
    profile[Family::kSensors].sensorsV2 = false;
    Boot(profile);
    for (const std::string& line : {std::string("InitVaelon"), Prefixed("g_aidlVaelon is null"), std::string("InitVibrator"),
                                    std::string("InitVibrator failed to get IVibrator"),
                                    std::string("g_hwLight linkToDeath"), Prefixed("g_hwSensors linkToDeath"),
                                    Prefixed("g_zentelSensors is nullptr")}) {
        EXPECT_EQ(BootCount(line), 1) << line;
    }
}

// No AIDL session, only the 2.1 extension over HIDL, or nothing at all: the command goes to
// the HIDL backend, which has no handle.
TEST_F(DispatchTest, FingerprintWithoutSessionOrExtensionAnswersMinusOne) {
    DeviceProfile noSession = DeviceProfile::AllAidl();
    noSession[Family::kFingerprint].fingerprintNoSession = true;
    DeviceProfile only21 = DeviceProfile::AllHidl();
    only21[Family::kFingerprint].hidlMinor = 1;
    for (const DeviceProfile& profile : {noSession, only21, DeviceProfile::Bare()}) {
        Boot(profile);
        EXPECT_EQ(Int("sendCmdToFingerprintHalNative", "(I)I", 7), -1);
        EXPECT_TRUE(Has(kInfo, "SendCmdToFingerprintHal, Hidl Called"));
        EXPECT_EQ(LinesWithPriority(kError),
                  (std::vector<Line>{{kError, Prefixed("SetCmdToFingerprintHal by hidl fail, g_hwFingerprint is null")}}));
        EXPECT_TRUE(handset().fingerprint().callsTo("sendCmdToHal").empty());
    }
}

TEST_F(DispatchTest, FingerprintWithoutSessionKeepsItsServiceAcrossARecovery) {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile[Family::kFingerprint].fingerprintNoSession = true;
    Boot(profile);
    EXPECT_EQ(BootCount(Prefixed("g_aidlFingerprintSession is null")), 1);
    EXPECT_EQ(BootCount("IsFingerprintAidlVersion, true"), 0);
    EXPECT_EQ(BootCount("InitFingerprint by hidl"), 1);
    ASSERT_EQ(handset().fingerprint().callsTo("createSession").size(), 1u);
    // Another service dies: the exit leaves the fingerprint service set (there is no session
    // to unlink), so the restart asks for no new session.
    handset().Kill(Family::kLight);
    handset().Start(Family::kLight);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlVibrator init success")));
    EXPECT_EQ(handset().fingerprint().callsTo("createSession").size(), 1u);
    EXPECT_EQ(Count(kError, Prefixed("g_aidlFingerprintSession is null")), 0);
}

TEST_F(DispatchTest, VibratorWithoutTheMakersExtensionIsNotServed) {
    for (const auto& [extension, line] : {std::pair{mmisim::VibratorExtension::kNone, "InitVibrator failed to get IBinder"},
                                          {mmisim::VibratorExtension::kOtherInterface, "ZtMmiTest_jni: g_aidlVibrator is null"}}) {
        DeviceProfile profile = DeviceProfile::AllAidl();
        profile[Family::kVibrator].vibratorExtension = extension;
        Boot(profile);
        EXPECT_EQ(BootCount(line), 1);
        EXPECT_EQ(BootCount(Prefixed("g_aidlVibrator init success")), 0);
        Void("setVibratorParameterNative", "(Ljava/lang/String;)V", J("intensity=3"));
        EXPECT_TRUE(Has(kError, "SetVibratorPar fail, Aidl is null"));
        EXPECT_TRUE(handset().vibrator().calls().empty());
    }
}

}  // namespace
}  // namespace mmitest
