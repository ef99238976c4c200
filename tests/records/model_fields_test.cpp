// Big-data reports built from model classes of another application build (first on the
// class path): a field that is missing or has another type reads as its fallback, the
// failed lookup is logged and cleared, and the report is still delivered.
#include "mmi_fixture.h"

namespace mmitest {
namespace {

class ModelFieldsTest : public BackendTest {};

TEST_P(ModelFieldsTest, FieldsThatCannotBeReadAreSentAsFallbacks) {
    BootBackend();
    jobject operation = NewModel(mEnv, kOperationClass,
                                 {{"mVersion", 4}, {"mCommandId", 321}, {"mBsn", "SN-9"}, {"mCycle", "12"}});
    EXPECT_EQ(Int("sendBigDataOperationNative", "(Lcom/corvex/mmitest/model/BigDataOperation;)I", operation), 0);
    const auto data = handset().factoryInbox().cmdData.at(0);
    // The operation is a long, the station missing, the cycle a String.
    EXPECT_EQ(std::make_tuple(data.version, data.commandId, data.operation, data.bsn, data.station, data.cycle),
              std::make_tuple(4, 321, -1, std::string("SN-9"), std::string(""), -1));
    EXPECT_TRUE(Has(kInfo, By("SendBigDataOperation", ", version: 4; commandId: 321; operation: -1; station: ; cycle: -1")));

    jobject value = NewModel(mEnv, kValueClass,
                             {{"mVersion", 1}, {"mItemId", 8}, {"mStation", "ALS"}, {"mResult", "pass"},
                              {"mDescription", "last field"}});
    EXPECT_EQ(Int("sendBigDataValueNative", "(Lcom/corvex/mmitest/model/BigDataValue;)I", value), 0);
    const auto message = handset().factoryInbox().messages.at(0);
    const auto& event = message.events.at(0);
    // The data source and the test name are missing, the value a double, the firmware an Object.
    EXPECT_EQ(std::make_tuple(message.version, message.dataSource, message.eventCount, event.itemId, event.station,
                              event.testName, event.value, event.firmware, event.result, event.description),
              std::make_tuple(1, -1, 1, 8, std::string("ALS"), std::string(""), std::string(""), std::string(""),
                              std::string("pass"), std::string("last field")));
    std::vector<Line> lookups;
    for (const Line& line : LinesWithPriority(kError)) {
        if (line.message.find("not found") != std::string::npos) lookups.push_back(line);
    }
    EXPECT_EQ(lookups, (std::vector<Line>{{kError, Prefixed("GetIntFromObject fail, field mOperation not found")},
                                          {kError, Prefixed("GetStringFromObject fail, field mStation not found")},
                                          {kError, Prefixed("GetIntFromObject fail, field mCycle not found")},
                                          {kError, Prefixed("GetIntFromObject fail, field mDataSource not found")},
                                          {kError, Prefixed("GetStringFromObject fail, field mTestName not found")},
                                          {kError, Prefixed("GetStringFromObject fail, field mValue not found")},
                                          {kError, Prefixed("GetStringFromObject fail, field mFirmware not found")}}));
    // No exception is left for Java (the call helper fails the test on one) nor for the
    // next JNI call (-Xcheck:jni would warn).
    EXPECT_FALSE(mEnv->ExceptionCheck());
}

MMI_ON_BOTH_BACKENDS(ModelFieldsTest);

}  // namespace
}  // namespace mmitest
