// Power and touch-screen behaviour beyond the table's: the power-state text only with result
// 0, the capacitance test's Java field, failed calibration and crown tests, and a Java class
// without that field.
#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::TouchScreenAnswers;

class DevicesTest : public BackendTest {};

TEST_P(DevicesTest, PowerStateTextOnlyWithResultZero) {
    BootBackend();
    handset().power().update([](mmisim::PowerAnswers& a) { a.powerState = {3, "half written"}; });
    EXPECT_EQ(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J("charge")), "");
    // Not an error line on either backend.
    EXPECT_TRUE(Has(kInfo, aidl() ? By("GetPowerState", " fail, result code: 3")
                                  : By("GetPowerState", ", result code: 3, result info: ")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(DevicesTest, CapacitanceTestStoresTheServiceTextInJavaWhateverTheStatus) {
    BootBackend();
    for (const mmisim::TextReply& reply : {mmisim::TextReply{2, "TX3 open, RX7 short"}, mmisim::TextReply{0, ""}}) {
        handset().touchScreen().update([&](TouchScreenAnswers& a) { a.capacitanceTest = reply; });
        EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), reply.ret);
        EXPECT_EQ(FailInfo(), reply.text);
    }
    // Status -1 means the HIDL service never called back; the field then gets the empty text.
    if (!aidl()) {
        SetFailInfo("before");
        handset().setFaults(mmisim::Family::kTouchScreen, {false, true, 0});
        EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
        EXPECT_EQ(FailInfo(), "");
    }
}

// The backends answer a failure differently: empty texts over AIDL, fixed texts over HIDL
// (the crown's own text is dropped).
TEST_P(DevicesTest, FailedCalibrationAndCrown) {
    BootBackend();
    handset().touchScreen().update([](TouchScreenAnswers& a) {
        a.capacitanceCalibrate = {3, "short"};
        a.rotateCrown = {1, "stuck"};
    });
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", 5),
              aidl() ? "" : "Capacitance Calibrate Failed");
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), aidl() ? "" : "error");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, By("GetCapacitanceCalibrateResult", aidl() ? " fail" : " fail, ret: 3")},
                                 {kError, By("GetRotateCrownTestResult", " fail")}}));
    if (!aidl()) {
        EXPECT_TRUE(Has(kInfo, By("GetCapacitanceCalibrateResult", ", ret: 3, info: Capacitance Calibrate Failed")));
    }
}

// A class without the field: the status still comes back, and the failed lookup leaves no
// Java exception behind.
TEST_P(DevicesTest, FailedFieldLookupIsReportedAndCleared) {
    BootBackend();
    handset().touchScreen().update([](TouchScreenAnswers& a) { a.capacitanceTest = {2, "TX3 open"}; });
    PatchedJni jni(mEnv);
    PatchedJni::redirectClass = "java/lang/Object";
    jni.Apply();
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), 2);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, By("GetCapacitanceTestResult", " fail, static field sTpCapacitanceFailInfo "
                                                                         "not found")}}));
}

MMI_ON_BOTH_BACKENDS(DevicesTest);

class TouchScreenTest : public MmiTest {};

TEST_F(TouchScreenTest, WithoutTheServiceTheJavaFieldIsKept) {
    Boot(mmisim::DeviceProfile::Bare());
    SetFailInfo("earlier run");
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
    EXPECT_EQ(FailInfo(), "earlier run");
}

}  // namespace
}  // namespace mmitest
