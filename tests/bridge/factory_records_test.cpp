// Test results, station flags, the test-cycle record and the NM-card test over both
// backends, including factory interface 1.0 services that lack the cycle record.
#include <hostcontrol/securec_faults.h>

#include <climits>
#include <string>
#include <vector>

#include "factory_records_support.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::FactoryAnswers;

constexpr const char* kSetCycle = "setTestCycleNative";
constexpr const char* kSetCycleSig = "(II)I";
constexpr const char* kSetMode = "setMockCardTestModeNative";
constexpr const char* kSetModeSig = "(Ljava/lang/String;)I";

class StationAndResultTest : public FactoryRecordTest {};

TEST_P(StationAndResultTest, TestResultPassesBothIntegersInOrderUnchanged) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.mmiTestResultResult = -42; });
    EXPECT_EQ(Int("setMmiResultNative", "(II)I", INT_MIN, INT_MAX), -42);
    EXPECT_EQ(OnlyCall("setMmiTestResult"), (std::vector<std::string>{"-2147483648", "2147483647"}));
    EXPECT_EQ(Lines().back(), (Line{kInfo, Prefixed(By("SetMmiTestResult") + " ret = -42")}));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(StationAndResultTest, StationFlagIsReturnedWhateverTheStatus) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.stationFlags[-3] = {7, "P\xc3\xa5ss"}; });
    EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", -3), "P\xc3\xa5ss");
    EXPECT_EQ(OnlyCall("getManufactureStationFlag"), std::vector<std::string>{"-3"});
    EXPECT_EQ(Lines().back(), (Line{kInfo, Prefixed(By("GetManufactureStationFlag") +
                                                    ", station id: -3, result: 7, stationFlag: P\xc3\xa5ss")}));
    // A station the service knows nothing of gives its empty answer.
    EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", 12), "");
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetManufactureStationFlag") + ", station id: 12, result: 0, stationFlag: ")));
}

INSTANTIATE_TEST_SUITE_P(Backends, StationAndResultTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

class TestCycleTest : public FactoryRecordTest {};

TEST_P(TestCycleTest, StationAndCycleAreSentAsTwoCharactersEach) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.commandDataResult = 9; });
    struct Case {
        jint station;
        jint cycle;
        std::string payload;
    };
    const std::vector<Case> cases{
            {3, 7, "0307"},  {0, 0, "0000"},    {99, 99, "9999"},      {123, 4567, "1245"},
            {1, -5, "01-5"}, {-100, 7, "-107"}, {-7, -100000, "-7-1"}, {INT_MIN, INT_MAX, "-221"},
    };
    for (const Case& c : cases) {
        handset().factory().clearCalls();
        Mark();
        EXPECT_EQ(Int(kSetCycle, kSetCycleSig, c.station, c.cycle), 9) << c.payload;
        // Command 143, always declared with the full record size of 64.
        EXPECT_EQ(OnlyCall("setCommandData"), (std::vector<std::string>{"143", "64", c.payload}));
        const std::string by = By("SetTestCycle");
        const std::vector<Line> lines = Lines();
        ASSERT_GE(lines.size(), 3u);
        EXPECT_EQ(std::vector<Line>(lines.end() - 3, lines.end()),
                  (std::vector<Line>{{kInfo, Prefixed(by + ", stationID: " + std::to_string(c.station) +
                                                      ", cycle: " + std::to_string(c.cycle))},
                                     {kInfo, Prefixed(by + ", qrcodeInfo: " + c.payload)},
                                     {kInfo, Prefixed(by + ", result: 9")}}))
                << c.payload;
    }
}

TEST_P(TestCycleTest, CycleMarkerSendsAnEmptyRecordWithoutFormatting) {
    BootFactory();
    EXPECT_EQ(Int(kSetCycle, kSetCycleSig, 5, -100), 0);
    EXPECT_EQ(OnlyCall("setCommandData"), (std::vector<std::string>{"143", "64", ""}));
    const std::string by = By("SetTestCycle");
    EXPECT_TRUE(Has(kInfo, Prefixed(by + ", stationID: 5, cycle: -100")));
    EXPECT_TRUE(Has(kInfo, Prefixed(by + ", result: 0")));
    for (const Line& line : Lines()) EXPECT_EQ(line.message.find("qrcodeInfo"), std::string::npos) << line;
}

TEST_P(TestCycleTest, FailedClearOfTheRecordSendsNothing) {
    BootFactory();
    hostcontrol::FailNextMemset(SECUREC_EINVAL);
    EXPECT_EQ(Int(kSetCycle, kSetCycleSig, 3, 7), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed(By("SetTestCycle") + ", memset_s error, ret =0x16")}}));
    EXPECT_TRUE(handset().factory().callsTo("setCommandData").empty());
    // The next record goes out as usual.
    EXPECT_EQ(Int(kSetCycle, kSetCycleSig, 3, 7), 0);
    EXPECT_EQ(OnlyCall("setCommandData"), (std::vector<std::string>{"143", "64", "0307"}));
}

INSTANTIATE_TEST_SUITE_P(Backends, TestCycleTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

class TestCycleVersionTest : public MmiTest {};

TEST_F(TestCycleVersionTest, FactoryOneZeroHasNoCycleRecord) {
    Boot(FactoryOnly(kFactoryHidl10));
    EXPECT_EQ(Int(kSetCycle, kSetCycleSig, 3, 7), -1);
    EXPECT_TRUE(Has(kInfo, Prefixed("SetTestCycle by hidl, stationID: 3, cycle: 7")));
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("SetTestCycle by hidl fail, hwFactoryNew is null")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
    // The 1.0 records still work.
    EXPECT_EQ(Int("setMmiResultNative", "(II)I", 1, 2), 0);
    EXPECT_EQ(handset().factory().callsTo("setMmiTestResult").size(), 1u);
}

TEST_F(TestCycleVersionTest, WithoutServiceTheRequestIsStillLoggedFirst) {
    Boot(DeviceProfile::Bare());
    EXPECT_EQ(Int(kSetCycle, kSetCycleSig, 12, 34), -1);
    const std::vector<Line> lines = Lines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], (Line{kInfo, Prefixed("SetTestCycle by hidl, stationID: 12, cycle: 34")}));
    EXPECT_EQ(lines.back(), (Line{kError, Prefixed("SetTestCycle by hidl fail, hwFactoryNew is null")}));
}

class NmCardTest : public FactoryRecordTest {};

TEST_P(NmCardTest, ModeIsWrittenAsItem14AndTheResultReadFromIt) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) {
        a.setDeviceInfoResult = 4;
        a.deviceInfo[14] = {3, "SIM1:fail;SIM2:ok"};
    });
    EXPECT_EQ(Int(kSetMode, kSetModeSig, J("mock-on")), 4);
    EXPECT_EQ(OnlyCall("setDeviceInfo"), (std::vector<std::string>{"14", "mock-on"}));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("SetNmCardTestMode") + ", ret: 4")));

    // The text comes back even though the status says the test failed.
    EXPECT_EQ(Str("getMockCardTestResultNative", "()Ljava/lang/String;"), "SIM1:fail;SIM2:ok");
    EXPECT_EQ(OnlyCall("getDeviceInfo"), std::vector<std::string>{"14"});
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetNmCardTestResult") + ", ret: 3, testResultArray = SIM1:fail;SIM2:ok")));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(NmCardTest, ModeTextOutsideAsciiArrivesAsUtf8) {
    BootFactory();
    EXPECT_EQ(Int(kSetMode, kSetModeSig, J("\xe6\xa8\xa1\xe5\xbc\x8f-\xc3\xa9")), 0);
    EXPECT_EQ(OnlyCall("setDeviceInfo"), (std::vector<std::string>{"14", "\xe6\xa8\xa1\xe5\xbc\x8f-\xc3\xa9"}));
}

TEST_P(NmCardTest, NullModeIsReportedAndNeverSent) {
    BootFactory();
    EXPECT_EQ(Int(kSetMode, kSetModeSig, static_cast<jstring>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed(By("SetNmCardTestMode") + " fail, mode is null")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
}

INSTANTIATE_TEST_SUITE_P(Backends, NmCardTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

class NmCardMissingServiceTest : public MmiTest {};

TEST_F(NmCardMissingServiceTest, TheModeIsLookedAtBeforeTheService) {
    Boot(DeviceProfile::Bare());
    EXPECT_EQ(Int(kSetMode, kSetModeSig, J("mock-on")), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("SetNmCardTestMode by hidl fail, g_hwFactoryInterface is null")}}));
    // A null mode is found before the missing service is.
    Mark();
    EXPECT_EQ(Int(kSetMode, kSetModeSig, static_cast<jstring>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("SetNmCardTestMode by hidl fail, mode is null")}}));
    Mark();
    EXPECT_EQ(Str("getMockCardTestResultNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(
            LinesWithPriority(kError),
            (std::vector<Line>{{kError, Prefixed("GetNmCardTestResult by hidl fail, g_hwFactoryInterface is null")}}));
    Mark();
    EXPECT_EQ(Int("setMmiResultNative", "(II)I", 1, 1), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("SetMmiTestResult by hidl fail, g_hwFactoryInterface is null")}}));
    Mark();
    EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", 1), "");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{
                      {kError, Prefixed("GetManufactureStationFlag by hidl fail, g_hwFactoryInterface is null")}}));
}

}  // namespace
}  // namespace mmitest
