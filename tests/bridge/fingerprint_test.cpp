// Factory commands to the fingerprint HAL: the AIDL session and the HIDL extension.
#include "device_support.h"

namespace mmitest {
namespace {

class FingerprintCmdBackendTest : public DeviceBackendCase {};

TEST_P(FingerprintCmdBackendTest, CommandAndSignedAnswerPassUnchanged) {
    handset().fingerprint().update([](mmisim::FingerprintAnswers& a) { a.cmdResult = -5; });
    EXPECT_EQ(Int("sendCmdToFingerprintHalNative", "(I)I", -7), -5);
    EXPECT_EQ(CallsTo(handset().fingerprint(), "sendCmdToHal"), (Rows{{GetParam().name, "-7"}}));
    EXPECT_EQ(Lines().back(), (Line{kInfo, By("SetCmdToFingerprintHal", ", cmd = -7 ret = -5")}));
}

INSTANTIATE_TEST_SUITE_P(Backends, FingerprintCmdBackendTest, ::testing::Values(kAidlDevices, kHidlDevices),
                         DeviceBackendName);

class FingerprintCmdTest : public MmiTest {};

// No AIDL session, only the 2.1 extension over HIDL, or nothing at all: the command goes to
// the HIDL backend, which has no handle.
TEST_F(FingerprintCmdTest, WithoutSessionOrExtensionAnswersMinusOne) {
    mmisim::DeviceProfile noSession = mmisim::DeviceProfile::AllAidl();
    noSession[mmisim::Family::kFingerprint].fingerprintNoSession = true;
    mmisim::DeviceProfile only21 = mmisim::DeviceProfile::AllHidl();
    only21[mmisim::Family::kFingerprint].hidlMinor = 1;
    for (const mmisim::DeviceProfile& profile : {noSession, only21, mmisim::DeviceProfile::Bare()}) {
        Boot(profile);
        EXPECT_EQ(Int("sendCmdToFingerprintHalNative", "(I)I", 7), -1);
        EXPECT_EQ(LinesWithPriority(kError),
                  Errors({Prefixed("SetCmdToFingerprintHal by hidl fail, g_hwFingerprint is null")}));
        EXPECT_TRUE(handset().fingerprint().callsTo("sendCmdToHal").empty());
    }
}

TEST_F(FingerprintCmdTest, HidlServiceDyingUnderTheCallAnswersMinusOne) {
    Boot(mmisim::DeviceProfile::AllHidl());
    WithDeadService(mmisim::Family::kFingerprint, [&] { EXPECT_EQ(Int("sendCmdToFingerprintHalNative", "(I)I", 7), -1); });
    EXPECT_TRUE(Has(kInfo, Prefixed("SetCmdToFingerprintHal by hidl, cmd = 7 ret = -1")));
}

}  // namespace
}  // namespace mmitest
