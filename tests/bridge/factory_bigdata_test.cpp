// Big-data fault reports: the Java model objects are read field by field and delivered to
// the factory service as one operation record or one message with exactly one event.
#include <map>
#include <string>
#include <vector>

#include "factory_records_support.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::FactoryAnswers;
using vendor::zentel::hardware::hwfactoryinterface::FmdCmdData;
using vendor::zentel::hardware::hwfactoryinterface::FmdEvent;
using vendor::zentel::hardware::hwfactoryinterface::FmdMsg;

using Fields = std::vector<std::string>;

// Every field of a record in declaration order, spare and reserved texts included.
Fields Of(const FmdCmdData& d) {
    return {std::to_string(d.version),
            std::to_string(d.commandId),
            std::to_string(d.operation),
            std::to_string(d.cycle),
            d.station,
            d.bsn,
            d.spareText1,
            d.spareText2,
            d.spareText3,
            d.spareText4,
            d.spareText5};
}
Fields Of(const FmdEvent& e) {
    return {std::to_string(e.errorCode),
            std::to_string(e.itemId),
            std::to_string(e.cycle),
            e.result,
            e.station,
            e.bsn,
            e.time,
            e.deviceName,
            e.testName,
            e.value,
            e.thresholdMin,
            e.thresholdMax,
            e.firmware,
            e.description,
            e.reserved1,
            e.reserved2,
            e.reserved3,
            e.reserved4,
            e.reserved5,
            e.reserved6};
}
Fields Of(const FmdMsg& m) {
    return {std::to_string(m.version), std::to_string(m.dataSource), std::to_string(m.eventCount),
            std::to_string(m.events.size())};
}

const Fields kNoReserved(6, "");
Fields With(Fields fields, const Fields& tail) {
    fields.insert(fields.end(), tail.begin(), tail.end());
    return fields;
}

// Texts of any length and outside ASCII travel unchanged.
const std::string kLongDescription(20000, 'd');
constexpr const char* kDeviceName = "\xe5\x85\x89\xe6\x84\x9f als-\xc3\xa9";

class BigDataTest : public FactoryRecordTest {
protected:
    jobject Operation(jint version, jint commandId, jint operation, const char* bsn, const char* station, jint cycle) {
        jobject object = NewModel(mEnv, kOperationClass);
        SetIntField(mEnv, object, "mVersion", version);
        SetIntField(mEnv, object, "mCommandId", commandId);
        SetIntField(mEnv, object, "mOperation", operation);
        SetTextField(mEnv, object, "mBsn", bsn);
        SetTextField(mEnv, object, "mStation", station);
        SetIntField(mEnv, object, "mCycle", cycle);
        return object;
    }

    std::vector<FmdCmdData> Operations() { return handset().factoryInbox().cmdData; }
    std::vector<FmdMsg> Messages() { return handset().factoryInbox().messages; }
};

TEST_P(BigDataTest, OperationReportCarriesEveryField) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.fmdCmdDataResult = 17; });
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, Operation(3, 1200, -4, "SN-0042", "RUNIN\xc3\xa9", 12)), 17);
    const std::vector<FmdCmdData> received = Operations();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(Of(received[0]), (Fields{"3", "1200", "-4", "12", "RUNIN\xc3\xa9", "SN-0042", "", "", "", "", ""}));
    EXPECT_TRUE(Messages().empty());

    // The serial number is sent but never logged; only AIDL logs the result.
    std::vector<Line> expected{
            {kInfo, Prefixed(By("SendBigDataOperation") + ", version: 3; commandId: 1200; "
                                                          "operation: -4; station: RUNIN\xc3\xa9; cycle: 12")}};
    if (Aidl()) expected.push_back({kInfo, Prefixed("SendBigDataOperation by aidl, result: 17")});
    const std::vector<Line> lines = Lines();
    ASSERT_GE(lines.size(), expected.size());
    EXPECT_EQ(std::vector<Line>(lines.end() - static_cast<std::ptrdiff_t>(expected.size()), lines.end()), expected);
    for (const Line& line : lines) EXPECT_EQ(line.message.find("SN-0042"), std::string::npos) << line;
}

TEST_P(BigDataTest, OperationFieldsThatCannotBeReadAreSentAsFallbacks) {
    BootFactory();
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, Operation(1, 2, 3, nullptr, nullptr, 4)), 0);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>(2, Line{kError, Prefixed("GetStringFromObject fail, field object is null")})));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("SendBigDataOperation") +
                                    ", version: 1; commandId: 2; operation: 3; station: ; cycle: 4")));
    Mark();
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, static_cast<jobject>(nullptr)), 0);
    EXPECT_EQ(Count(kError, Prefixed("GetIntFromObject fail, invalid parameter")), 4);
    EXPECT_EQ(Count(kError, Prefixed("GetStringFromObject fail, invalid parameter")), 2);

    const std::vector<FmdCmdData> received = Operations();
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(Of(received[0]), (Fields{"1", "2", "3", "4", "", "", "", "", "", "", ""}));
    EXPECT_EQ(Of(received[1]), (Fields{"-1", "-1", "-1", "-1", "", "", "", "", "", "", ""}));
}

TEST_P(BigDataTest, ValueReportCarriesExactlyOneEventWithEveryField) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.fmdMessageResult = -6; });
    jobject value = NewModel(mEnv, kValueClass);
    SetIntField(mEnv, value, "mVersion", 2);
    SetIntField(mEnv, value, "mDataSource", 5);
    SetIntField(mEnv, value, "mErrorCode", -1001);
    SetIntField(mEnv, value, "mItemId", 77);
    SetIntField(mEnv, value, "mCycle", 3);
    const std::vector<std::pair<const char*, std::string>> texts{{"mDeviceName", kDeviceName},
                                                                 {"mStation", "MMI2"},
                                                                 {"mTestName", "lux"},
                                                                 {"mBsn", "SN-77"},
                                                                 {"mValue", "412.5"},
                                                                 {"mThresholdMin", "100"},
                                                                 {"mThresholdMax", "900"},
                                                                 {"mResult", "pass"},
                                                                 {"mTime", "2024-05-01 10:11:12"},
                                                                 {"mFirmware", "fw-1.2"},
                                                                 {"mDescription", kLongDescription}};
    for (const auto& [field, text] : texts) SetTextField(mEnv, value, field, text.c_str());
    EXPECT_EQ(Int(kSendValue, kSendValueSig, value), -6);

    const std::vector<FmdMsg> messages = Messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(Of(messages[0]), (Fields{"2", "5", "1", "1"}));
    ASSERT_EQ(messages[0].events.size(), 1u);
    EXPECT_EQ(Of(messages[0].events[0]), With({"-1001", "77", "3", "pass", "MMI2", "SN-77", "2024-05-01 10:11:12",
                                               kDeviceName, "lux", "412.5", "100", "900", "fw-1.2", kLongDescription},
                                              kNoReserved));
    EXPECT_TRUE(Operations().empty());

    const std::string sent = Prefixed(By("SendBigDataValue") +
                                      ", version: 2; dataSource: 5; errorCode: -1001; itemId: 77; station: MMI2; "
                                      "cycle: 3; deviceName: " +
                                      kDeviceName +
                                      "; testName: lux; value: 412.5; minThreshold: 100; maxThreshold: 900; "
                                      "result: pass; time: 2024-05-01 10:11:12; firmware: fw-1.2; description: ");
    const std::vector<Line> info = LinesWithPriority(kInfo);
    ASSERT_GE(info.size(), 2u);
    const Line& report = Aidl() ? info[info.size() - 2] : info.back();
    // The log cuts a long line; up to the description it is exact.
    EXPECT_EQ(report.message.substr(0, sent.size()), sent);
    EXPECT_EQ(info.back().message == Prefixed("SendBigDataValue by aidl, result: -6"), Aidl());
    for (const Line& line : Lines()) EXPECT_EQ(line.message.find("SN-77"), std::string::npos) << line;
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(BigDataTest, ValueFieldsThatCannotBeReadAreSentAsFallbacks) {
    BootFactory();
    jobject value = NewModel(mEnv, kValueClass);  // ints 0, every text null
    SetTextField(mEnv, value, "mResult", "fail");
    EXPECT_EQ(Int(kSendValue, kSendValueSig, value), 0);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>(10, Line{kError, Prefixed("GetStringFromObject fail, field object is null")})));
    Mark();
    EXPECT_EQ(Int(kSendValue, kSendValueSig, static_cast<jobject>(nullptr)), 0);
    EXPECT_EQ(Count(kError, Prefixed("GetIntFromObject fail, invalid parameter")), 5);
    EXPECT_EQ(Count(kError, Prefixed("GetStringFromObject fail, invalid parameter")), 11);

    const std::vector<FmdMsg> messages = Messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(Of(messages[0]), (Fields{"0", "0", "1", "1"}));
    EXPECT_EQ(Of(messages[1]), (Fields{"-1", "-1", "1", "1"}));
    ASSERT_EQ(messages[1].events.size(), 1u);
    EXPECT_EQ(Of(messages[0].events[0]),
              With({"0", "0", "0", "fail", "", "", "", "", "", "", "", "", "", ""}, kNoReserved));
    EXPECT_EQ(Of(messages[1].events[0]),
              With({"-1", "-1", "-1", "", "", "", "", "", "", "", "", "", "", ""}, kNoReserved));
}

INSTANTIATE_TEST_SUITE_P(Backends, BigDataTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

class BigDataServiceTest : public MmiTest {};

TEST_F(BigDataServiceTest, FactoryOneZeroTakesBothReports) {
    Boot(FactoryOnly(kFactoryHidl10));
    handset().factory().update([](FactoryAnswers& a) {
        a.fmdCmdDataResult = 2;
        a.fmdMessageResult = 3;
    });
    jobject operation = NewModel(mEnv, kOperationClass);
    SetIntField(mEnv, operation, "mCommandId", 9);
    jobject value = NewModel(mEnv, kValueClass);
    SetTextField(mEnv, value, "mValue", "1.5");
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, operation), 2);
    EXPECT_EQ(Int(kSendValue, kSendValueSig, value), 3);
    const mmisim::FactoryInbox inbox = handset().factoryInbox();
    ASSERT_EQ(inbox.cmdData.size(), 1u);
    EXPECT_EQ(inbox.cmdData[0].commandId, 9);
    ASSERT_EQ(inbox.messages.size(), 1u);
    ASSERT_EQ(inbox.messages[0].events.size(), 1u);
    EXPECT_EQ(inbox.messages[0].events[0].value, "1.5");
}

// A Java VM that cannot hand out a text's characters (out of memory): the field is sent
// empty, the line says so, and nothing is released that was never handed out.
TEST_F(BigDataServiceTest, UnreadableCharactersAreSentEmpty) {
    Boot(FactoryOnly(kFactoryAidl));
    jobject value = NewModel(mEnv, kValueClass);
    SetTextField(mEnv, value, "mTestName", "camera");
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
    const mmisim::FactoryInbox inbox = handset().factoryInbox();
    ASSERT_EQ(inbox.messages.size(), 1u);
    EXPECT_EQ(inbox.messages[0].events.at(0).testName, "");
}

TEST_F(BigDataServiceTest, WithoutServiceNothingIsReadOrSent) {
    Boot(DeviceProfile::Bare());
    // A null object would log lines of its own if it were read.
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, static_cast<jobject>(nullptr)), -1);
    EXPECT_EQ(Int(kSendValue, kSendValueSig, static_cast<jobject>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{
                      {kError, Prefixed("SendBigDataOperation by hidl fail, env or g_hwFactoryInterface is null")},
                      {kError, Prefixed("SendBigDataValue by hidl fail, env or g_hwFactoryInterface is null")}}));
}

// The two operations called as the JVM never calls them: with no environment.
class BigDataNullEnvironmentTest : public FactoryRecordTest {};

TEST_P(BigDataNullEnvironmentTest, HidlRefusesAidlSendsFallbackValues) {
    BootFactory();
    using Send = jint (*)(JNIEnv*, jobject, jobject);
    std::map<std::string, void*> natives = NativeTable::Capture([this](JavaVM* vm) { return CallOnLoad(vm); }, mEnv);
    ASSERT_NE(natives[kSendOperation], nullptr);
    ASSERT_NE(natives[kSendValue], nullptr);
    Mark();
    const jint operationResult = reinterpret_cast<Send>(natives[kSendOperation])(nullptr, mManager, nullptr);
    const jint valueResult = reinterpret_cast<Send>(natives[kSendValue])(nullptr, mManager, nullptr);
    if (Aidl()) {
        // The AIDL backend does not look at the environment: every field reads as a fallback.
        EXPECT_EQ(operationResult, 0);
        EXPECT_EQ(valueResult, 0);
        const mmisim::FactoryInbox inbox = handset().factoryInbox();
        ASSERT_EQ(inbox.cmdData.size(), 1u);
        EXPECT_EQ(Of(inbox.cmdData[0]), (Fields{"-1", "-1", "-1", "-1", "", "", "", "", "", "", ""}));
        ASSERT_EQ(inbox.messages.size(), 1u);
        EXPECT_EQ(Of(inbox.messages[0]), (Fields{"-1", "-1", "1", "1"}));
        EXPECT_EQ(Count(kError, Prefixed("GetIntFromObject fail, invalid parameter")), 4 + 5);
        EXPECT_EQ(Count(kError, Prefixed("GetStringFromObject fail, invalid parameter")), 2 + 11);
    } else {
        EXPECT_EQ(operationResult, -1);
        EXPECT_EQ(valueResult, -1);
        EXPECT_TRUE(handset().factory().calls().empty());
        EXPECT_EQ(LinesWithPriority(kError),
                  (std::vector<Line>{
                          {kError, Prefixed("SendBigDataOperation by hidl fail, env or g_hwFactoryInterface is null")},
                          {kError, Prefixed("SendBigDataValue by hidl fail, env or g_hwFactoryInterface is null")}}));
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, BigDataNullEnvironmentTest, ::testing::Values(kFactoryAidl, kFactoryHidl),
                         BackendLabel);

}  // namespace
}  // namespace mmitest
