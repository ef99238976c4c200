// Big-data reports built from model classes of another application build: a field that
// is missing or has another type reads as its fallback, the failed lookup is logged and
// cleared, and the report is still delivered.
#include <string>
#include <vector>

#include "factory_records_support.h"

namespace mmitest {
namespace {

using vendor::zentel::hardware::hwfactoryinterface::FmdCmdData;
using vendor::zentel::hardware::hwfactoryinterface::FmdEvent;

class ModelFieldsTest : public FactoryRecordTest {};

TEST_P(ModelFieldsTest, OperationFieldsThatCannotBeReadAreSentAsFallbacks) {
    BootFactory();
    jobject operation = NewModel(mEnv, kOperationClass);
    SetIntField(mEnv, operation, "mVersion", 4);
    SetIntField(mEnv, operation, "mCommandId", 321);
    SetTextField(mEnv, operation, "mBsn", "SN-9");
    SetTextField(mEnv, operation, "mCycle", "12");
    EXPECT_EQ(Int(kSendOperation, kSendOperationSig, operation), 0);

    const std::vector<FmdCmdData> received = handset().factoryInbox().cmdData;
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].version, 4);
    EXPECT_EQ(received[0].commandId, 321);
    EXPECT_EQ(received[0].operation, -1);  // a long, not an int
    EXPECT_EQ(received[0].bsn, "SN-9");
    EXPECT_EQ(received[0].station, "");  // missing
    EXPECT_EQ(received[0].cycle, -1);    // a String, not an int
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("GetIntFromObject fail, field mOperation not found")},
                                 {kError, Prefixed("GetStringFromObject fail, field mStation not found")},
                                 {kError, Prefixed("GetIntFromObject fail, field mCycle not found")}}));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("SendBigDataOperation") +
                                    ", version: 4; commandId: 321; operation: -1; station: ; cycle: -1")));
    // No exception is left for Java (the call helper fails the test on one) nor for the
    // next JNI call (-Xcheck:jni would warn).
    EXPECT_FALSE(mEnv->ExceptionCheck());
}

TEST_P(ModelFieldsTest, ValueFieldsThatCannotBeReadAreSentAsFallbacks) {
    BootFactory();
    jobject value = NewModel(mEnv, kValueClass);
    SetIntField(mEnv, value, "mVersion", 1);
    SetIntField(mEnv, value, "mItemId", 8);
    SetTextField(mEnv, value, "mStation", "ALS");
    SetTextField(mEnv, value, "mResult", "pass");
    SetTextField(mEnv, value, "mDescription", "last field");
    EXPECT_EQ(Int(kSendValue, kSendValueSig, value), 0);

    const std::vector<vendor::zentel::hardware::hwfactoryinterface::FmdMsg> messages =
            handset().factoryInbox().messages;
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].version, 1);
    EXPECT_EQ(messages[0].dataSource, -1);  // missing
    EXPECT_EQ(messages[0].eventCount, 1);
    ASSERT_EQ(messages[0].events.size(), 1u);
    const FmdEvent& event = messages[0].events[0];
    EXPECT_EQ(event.itemId, 8);
    EXPECT_EQ(event.station, "ALS");
    EXPECT_EQ(event.testName, "");  // missing
    EXPECT_EQ(event.value, "");     // a double, not a String
    EXPECT_EQ(event.firmware, "");  // an Object, not a String
    EXPECT_EQ(event.result, "pass");
    EXPECT_EQ(event.description, "last field");
    const std::vector<Line> expectedLookups{{kError, Prefixed("GetIntFromObject fail, field mDataSource not found")},
                                            {kError, Prefixed("GetStringFromObject fail, field mTestName not found")},
                                            {kError, Prefixed("GetStringFromObject fail, field mValue not found")},
                                            {kError, Prefixed("GetStringFromObject fail, field mFirmware not found")}};
    std::vector<Line> lookups;
    for (const Line& line : LinesWithPriority(kError)) {
        if (line.message.find("not found") != std::string::npos) lookups.push_back(line);
    }
    EXPECT_EQ(lookups, expectedLookups);
    EXPECT_FALSE(mEnv->ExceptionCheck());
}

INSTANTIATE_TEST_SUITE_P(Backends, ModelFieldsTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

}  // namespace
}  // namespace mmitest
