// Factory behaviour beyond the method table's: the big-data reports field by field, fields
// that cannot be read, the auto-start flag's and OEM info's failures, and the test-cycle
// record's formatting.
#include <hostcontrol/securec_faults.h>

#include <climits>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::FactoryAnswers;
using vendor::zentel::hardware::hwfactoryinterface::FmdCmdData;
using vendor::zentel::hardware::hwfactoryinterface::FmdEvent;
using vendor::zentel::hardware::hwfactoryinterface::FmdMsg;
using Fields = std::vector<std::string>;

constexpr const char* kSendOperation = "sendBigDataOperationNative";
constexpr const char* kSendOperationSig = "(Lcom/corvex/mmitest/model/BigDataOperation;)I";
constexpr const char* kSendValue = "sendBigDataValueNative";
constexpr const char* kSendValueSig = "(Lcom/corvex/mmitest/model/BigDataValue;)I";

// Every field of a record in declaration order, spare and reserved texts included.
Fields Of(const FmdCmdData& d) {
    return {std::to_string(d.version), std::to_string(d.commandId), std::to_string(d.operation),
            std::to_string(d.cycle),   d.station,  d.bsn, d.spareText1, d.spareText2, d.spareText3, d.spareText4,
            d.spareText5};
}
Fields Of(const FmdMsg& m) {
    const FmdEvent& e = m.events.at(0);
    return {std::to_string(m.version), std::to_string(m.dataSource), std::to_string(m.eventCount),
            std::to_string(m.events.size()), std::to_string(e.errorCode), std::to_string(e.itemId),
            std::to_string(e.cycle), e.result, e.station, e.bsn, e.time, e.deviceName, e.testName, e.value,
            e.thresholdMin, e.thresholdMax, e.firmware, e.description, e.reserved1, e.reserved2, e.reserved3,
            e.reserved4, e.reserved5, e.reserved6};
}

const std::string kLongDescription(20000, 'd');
constexpr const char* kDeviceName = "\xe5\x85\x89\xe6\x84\x9f als-\xc3\xa9";

class FactoryTest : public BackendTest {
protected:
    FmdCmdData LastOperation() { return handset().factoryInbox().cmdData.at(0); }
    FmdMsg LastMessage() { return handset().factoryInbox().messages.at(0); }
};

TEST_P(FactoryTest, OperationReportCarriesEveryField) {
    BootBackend();
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig,
                  NewModel(mEnv, kOperationClass,
                           {{"mVersion", 3}, {"mCommandId", 1200}, {"mOperation", -4}, {"mBsn", "SN-0042"},
                            {"mStation", "RUNIN\xc3\xa9"}, {"mCycle", 12}})),
              0);
    EXPECT_EQ(Of(LastOperation()), (Fields{"3", "1200", "-4", "12", "RUNIN\xc3\xa9", "SN-0042", "", "", "", "", ""}));
    EXPECT_TRUE(handset().factoryInbox().messages.empty());
    // The serial number is sent but never logged.
    for (const Line& line : Lines()) EXPECT_EQ(line.message.find("SN-0042"), std::string::npos) << line;
}

TEST_P(FactoryTest, ValueReportCarriesExactlyOneEventWithEveryField) {
    BootBackend();
    jobject value = NewModel(mEnv, kValueClass,
                             {{"mVersion", 2}, {"mDataSource", 5}, {"mErrorCode", -1001}, {"mItemId", 77}, {"mCycle", 3},
                              {"mDeviceName", kDeviceName}, {"mStation", "MMI2"}, {"mTestName", "lux"},
                              {"mBsn", "SN-77"}, {"mValue", "412.5"}, {"mThresholdMin", "100"},
                              {"mThresholdMax", "900"}, {"mResult", "pass"}, {"mTime", "2024-05-01 10:11:12"},
                              {"mFirmware", "fw-1.2"}, {"mDescription", kLongDescription.c_str()}});
    EXPECT_EQ(Int(kSendValue, kSendValueSig, value), 0);
    EXPECT_EQ(Of(LastMessage()),
              (Fields{"2", "5", "1", "1", "-1001", "77", "3", "pass", "MMI2", "SN-77", "2024-05-01 10:11:12", kDeviceName,
                      "lux", "412.5", "100", "900", "fw-1.2", kLongDescription, "", "", "", "", "", ""}));
    EXPECT_TRUE(handset().factoryInbox().cmdData.empty());
    // The log cuts a long line; up to the description it is exact. The serial number is not in it.
    const std::string sent = By("SendBigDataValue",
                                ", version: 2; dataSource: 5; errorCode: -1001; itemId: 77; station: MMI2; cycle: 3; "
                                "deviceName: " + std::string(kDeviceName) +
                                        "; testName: lux; value: 412.5; minThreshold: 100; maxThreshold: 900; "
                                        "result: pass; time: 2024-05-01 10:11:12; firmware: fw-1.2; description: ");
    const std::vector<Line> info = LinesWithPriority(kInfo);
    const Line& report = info.at(info.size() - (aidl() ? 2 : 1));
    EXPECT_EQ(report.message.substr(0, sent.size()), sent);
    for (const Line& line : Lines()) EXPECT_EQ(line.message.find("SN-77"), std::string::npos) << line;
}

// Null texts are sent empty, one line each; a null report is read as all fields missing
// and sent with -1 and empty texts.
TEST_P(FactoryTest, FieldsThatCannotBeReadAreSentAsFallbacks) {
    BootBackend();
    const Line nullField{kError, Prefixed("GetStringFromObject fail, field object is null")};
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, NewModel(mEnv, kOperationClass, {{"mVersion", 1}, {"mCycle", 4}})), 0);
    EXPECT_EQ(LinesWithPriority(kError), std::vector<Line>(2, nullField));
    EXPECT_TRUE(Has(kInfo, By("SendBigDataOperation", ", version: 1; commandId: 0; operation: 0; station: ; cycle: 4")));
    Mark();
    EXPECT_EQ(Int(kSendValue, kSendValueSig, NewModel(mEnv, kValueClass, {{"mResult", "fail"}})), 0);
    EXPECT_EQ(LinesWithPriority(kError), std::vector<Line>(10, nullField));
    EXPECT_EQ(Of(LastMessage()),
              (Fields{"0", "0", "1", "1", "0", "0", "0", "fail", "", "", "", "", "", "", "", "", "", "", "", "", "", "",
                      "", ""}));
    ClearCalls();
    Mark();
    const Line intLine{kError, Prefixed("GetIntFromObject fail, invalid parameter")};
    const Line textLine{kError, Prefixed("GetStringFromObject fail, invalid parameter")};
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, static_cast<jobject>(nullptr)), 0);
    EXPECT_EQ(Int(kSendValue, kSendValueSig, static_cast<jobject>(nullptr)), 0);
    std::vector<Line> expected{intLine, intLine, intLine, textLine, textLine, intLine};
    expected.insert(expected.end(), 5, intLine);
    expected.insert(expected.end(), 11, textLine);
    EXPECT_EQ(LinesWithPriority(kError), expected);
    EXPECT_EQ(Of(handset().factoryInbox().cmdData.at(1)), (Fields{"-1", "-1", "-1", "-1", "", "", "", "", "", "", ""}));
    EXPECT_EQ(Of(handset().factoryInbox().messages.at(1)),
              (Fields{"-1", "-1", "1", "1", "-1", "-1", "-1", "", "", "", "", "", "", "", "", "", "", "", "", "", "", "",
                      "", ""}));
}

// Called as the JVM never calls them, with no environment: the HIDL backend refuses, the
// AIDL one does not look at it and reads every field as its fallback.
TEST_P(FactoryTest, ReportsWithoutAnEnvironment) {
    BootBackend();
    using Send = jint (*)(JNIEnv*, jobject, jobject);
    const auto& natives = Natives();
    Mark();
    const jint operation = reinterpret_cast<Send>(natives.at(kSendOperation))(nullptr, mManager, nullptr);
    const jint value = reinterpret_cast<Send>(natives.at(kSendValue))(nullptr, mManager, nullptr);
    EXPECT_EQ(operation, aidl() ? 0 : -1);
    EXPECT_EQ(value, aidl() ? 0 : -1);
    if (aidl()) {
        EXPECT_EQ(Of(LastOperation()), (Fields{"-1", "-1", "-1", "-1", "", "", "", "", "", "", ""}));
        EXPECT_EQ(Count(kError, Prefixed("GetIntFromObject fail, invalid parameter")), 4 + 5);
        EXPECT_EQ(Count(kError, Prefixed("GetStringFromObject fail, invalid parameter")), 2 + 11);
    } else {
        EXPECT_TRUE(handset().factory().calls().empty());
        EXPECT_EQ(LinesWithPriority(kError),
                  (std::vector<Line>{{kError, By("SendBigDataOperation", " fail, env or g_hwFactoryInterface is null")},
                                     {kError, By("SendBigDataValue", " fail, env or g_hwFactoryInterface is null")}}));
    }
}

// A Java VM that cannot hand out a text's characters (out of memory): the field is sent
// empty, the line says so, and nothing is released that was never handed out.
TEST_P(FactoryTest, UnreadableCharactersAreSentEmpty) {
    BootBackend();
    jobject value = NewModel(mEnv, kValueClass, {{"mTestName", "camera"}});
    {
        PatchedJni jni(mEnv);
        jni.functions.GetStringUTFChars = [](JNIEnv*, jstring, jboolean*) -> const char* { return nullptr; };
        jni.functions.ReleaseStringUTFChars = [](JNIEnv*, jstring, const char*) {
            ADD_FAILURE() << "characters released that were never handed out";
        };
        jni.Apply();
        EXPECT_EQ(Int(kSendValue, kSendValueSig, value), 0);
    }
    EXPECT_EQ(Count(kError, Prefixed("GetStringFromObject fail, string value is null")), 1);
    EXPECT_EQ(LastMessage().events.at(0).testName, "");
}

TEST_P(FactoryTest, AutoStartFlagAndOeminfoFailures) {
    BootBackend();
    handset().factory().update([](FactoryAnswers& a) {
        a.deviceInfo[5] = {3, "1"};
        a.oeminfoRet = 2;
        a.oeminfo = "stale";
    });
    EXPECT_EQ(Str("getMmiAutoStartFlagNative", "()Ljava/lang/String;"), aidl() ? "" : "Error");
    EXPECT_TRUE(Has(kInfo, By("GetMmiAutoStartFlag", ", ret: 3, flag: 1")));
    EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), "");
    // The HIDL line ends in a blank.
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, By("GetMmiAutoStartFlag", aidl() ? " failed, ret: 3" : " failed")},
                                 {kError, By("GetOeminfo", std::string(" fail, read failed result: 2") +
                                                                   (aidl() ? "" : " "))}}));
}

// Command 143 with the station and the cycle as "%02d", cut to two characters each, in a
// record of 64; the cycle -100 sends an empty record.
TEST_P(FactoryTest, TestCycleRecord) {
    BootBackend();
    const std::vector<std::tuple<jint, jint, std::string>> cases{
            {0, 0, "0000"},  {99, 99, "9999"},    {123, 4567, "1245"},      {1, -5, "01-5"},
            {-100, 7, "-107"}, {-7, -100000, "-7-1"}, {INT_MIN, INT_MAX, "-221"}, {5, -100, ""}};
    for (const auto& [station, cycle, payload] : cases) {
        SCOPED_TRACE(payload);
        ClearCalls();
        Mark();
        EXPECT_EQ(Int("setTestCycleNative", "(II)I", station, cycle), 0);
        EXPECT_EQ(Received(mmisim::Family::kFactory, "setCommandData"), (std::vector<Fields>{{"143", "64", payload}}));
        EXPECT_EQ(Has(kInfo, By("SetTestCycle", ", qrcodeInfo: " + payload)), !payload.empty());
    }
    // A record that cannot be cleared is not sent; the next one is.
    ClearCalls();
    hostcontrol::FailNextMemset(SECUREC_EINVAL);
    EXPECT_EQ(Int("setTestCycleNative", "(II)I", 3, 7), -1);
    EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, By("SetTestCycle", ", memset_s error, ret =0x16")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
    EXPECT_EQ(Int("setTestCycleNative", "(II)I", 3, 7), 0);
    EXPECT_EQ(Received(mmisim::Family::kFactory, "setCommandData"), (std::vector<Fields>{{"143", "64", "0307"}}));
}

MMI_ON_BOTH_BACKENDS(FactoryTest);

}  // namespace
}  // namespace mmitest
