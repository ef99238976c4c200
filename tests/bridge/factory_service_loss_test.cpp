// The factory service lost while a record operation runs: gone between the dispatcher's
// choice and the operation (the AIDL operations' own missing-service lines), and dead
// under the call while the library still holds it (the preset answers of each backend).
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "factory_records_support.h"

namespace mmitest {
namespace {

using mmisim::FactoryAnswers;

struct Operation {
    const char* dispatcher;
    std::function<void()> call;  // asserts the fallback result
    Line missing;                // the AIDL backend's missing-service line
};

class ServiceLossTest : public FactoryRecordTest {
protected:
    // Every operation of the records, each with the fallback it must answer.
    std::vector<Operation> RecordOperations() {
        const auto noText = std::optional<std::string>("");
        return {
                {"SetMmiTestResult",
                 [this] { EXPECT_EQ(Int("setMmiResultNative", "(II)I", 1, 2), -1); },
                 {kError, Prefixed("SetMmiTestResult by aidl fail, g_aidlFactoryInterface is null")}},
                {"GetManufactureStationFlag",
                 [this, noText] {
                     EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", 1), noText);
                 },
                 {kError, Prefixed("GetManufactureStationFlag by aidl fail, g_aidlFactoryInterface is null")}},
                {"SetTestCycle",
                 [this] { EXPECT_EQ(Int("setTestCycleNative", "(II)I", 3, 7), -1); },
                 {kError, Prefixed("SetTestCycle by aidl fail, g_aidlFactoryInterface is null")}},
                {"SetNmCardTestMode",
                 [this] { EXPECT_EQ(Int("setMockCardTestModeNative", "(Ljava/lang/String;)I", J("on")), -1); },
                 {kError, Prefixed("SetNmCardTestMode by aidl fail, g_aidlFactoryInterface is null")}},
                {"GetNmCardTestResult",
                 [this, noText] { EXPECT_EQ(Str("getMockCardTestResultNative", "()Ljava/lang/String;"), noText); },
                 {kError, Prefixed("GetNmCardTestResult by aidl fail, g_aidlFactoryInterface is null")}},
                {"SendBigDataOperation",
                 [this] { EXPECT_EQ(Int(kSendOperation, kSendOperationSig, NewModel(mEnv, kOperationClass)), -1); },
                 {kError, Prefixed("SendBigDataOperation by aidl fail, env or g_aidlFactoryInterface is null")}},
                {"SendBigDataValue",
                 [this] { EXPECT_EQ(Int(kSendValue, kSendValueSig, NewModel(mEnv, kValueClass)), -1); },
                 {kError, Prefixed("SendBigDataValue by aidl fail, env or g_aidlFactoryInterface is null")}},
                {"GetOeminfo",
                 [this, noText] { EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), noText); },
                 {kError, Prefixed("GetOeminfo by aidl fail, g_aidlFactoryInterface is null")}},
                {"GetVerifySignatureResult",
                 [this] {
                     jbyteArray signature = mEnv->NewByteArray(2);
                     EXPECT_EQ(Int("getVerifySignatureResultNative", "([B)I", signature), -1);
                 },
                 {kError, Prefixed("GetVerifySignatureResult by aidl fail, g_aidlFactoryInterface is null")}},
                {"GetRsaSignInfo",
                 [this, noText] { EXPECT_EQ(Str("getRsaSignInfoNative", "()Ljava/lang/String;"), noText); },
                 {kError, "GetRsaSignInfo by aidl, g_aidlFactoryInterface is null"}},
                {"GetDeviceInfo",
                 [this, noText] { EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", 0), noText); },
                 {kError, "GetDeviceInfo by aidl, g_aidlFactoryInterface is null"}},
        };
    }
};

class AidlHandleGoneTest : public ServiceLossTest {};

TEST_P(AidlHandleGoneTest, EachOperationFindsTheHandleGoneAfterTheChoice) {
    BootFactory();
    for (const Operation& operation : RecordOperations()) {
        Mark();
        WithAidlHandleDroppedAfterChoice(std::string(operation.dispatcher) + ", Aidl Called", operation.call);
        EXPECT_TRUE(Has(kInfo, std::string(operation.dispatcher) + ", Aidl Called"));
        // One ERROR line of the operation and no call: it stopped at the handle (the other
        // ERROR lines are the reconnection's).
        std::vector<Line> errors;
        for (const Line& line : LinesWithPriority(kError)) {
            if (line.message.find(" by aidl") != std::string::npos) errors.push_back(line);
        }
        EXPECT_EQ(errors, std::vector<Line>{operation.missing}) << operation.dispatcher;
    }
    EXPECT_TRUE(handset().factory().calls().empty());
    EXPECT_TRUE(handset().factoryInbox().cmdData.empty());
    EXPECT_TRUE(handset().factoryInbox().messages.empty());
    // Back to normal once the service returned.
    Mark();
    EXPECT_EQ(Int("setMmiResultNative", "(II)I", 1, 2), 0);
    EXPECT_TRUE(Has(kInfo, Prefixed("SetMmiTestResult by aidl ret = 0")));
}

INSTANTIATE_TEST_SUITE_P(Backends, AidlHandleGoneTest, ::testing::Values(kFactoryAidl), BackendLabel);

class DiedUnderCallTest : public ServiceLossTest {};

// Each operation answers as when the service wrote no result: its presets.
TEST_P(DiedUnderCallTest, OperationsAnswerWithTheirPresets) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) {
        a.mmiTestResultResult = 5;
        a.oeminfo = "oem";
        a.deviceInfo[44] = {0, "rsa"};
    });
    const std::vector<Operation> operations = RecordOperations();
    std::vector<Line> lines;
    WithServiceDeadUnderCalls([&] {
        for (const Operation& operation : operations) operation.call();
        lines = Lines();
    });
    EXPECT_TRUE(handset().factoryInbox().cmdData.empty());
    EXPECT_TRUE(handset().factoryInbox().messages.empty());
    const std::string by = std::string(" by ") + GetParam().name;
    std::vector<Line> expected;
    if (Aidl()) {
        expected = {{kInfo, Prefixed("SetMmiTestResult by aidl ret = -1")},
                    {kInfo, Prefixed("GetManufactureStationFlag by aidl, station id: 1, result: 0, stationFlag: ")},
                    {kInfo, Prefixed("SetTestCycle by aidl, result: -1")},
                    {kInfo, Prefixed("SetNmCardTestMode by aidl, ret: -1")},
                    {kInfo, Prefixed("GetNmCardTestResult by aidl, ret: 0, testResultArray = ")},
                    {kInfo, Prefixed("SendBigDataOperation by aidl, result: -1")},
                    {kInfo, Prefixed("SendBigDataValue by aidl, result: -1")},
                    // A lost transaction leaves a successful empty record.
                    {kInfo, Prefixed("GetOeminfo by aidl, read result: 0, oemInfo: ")},
                    {kInfo, Prefixed("GetVerifySignatureResult by aidl, ret: -1")},
                    {kInfo, "GetDeviceInfo by aidl, ret = 0, info: "},
                    {kInfo, "GetDeviceInfo by aidl, ret = 0, info: "}};
    } else {
        expected = {{kInfo, Prefixed("SetMmiTestResult by hidl ret = -1")},
                    {kInfo, Prefixed("GetManufactureStationFlag by hidl, station id: 1, result: -1, stationFlag: ")},
                    // The 1.1 view cannot be had from a dead service.
                    {kError, Prefixed("SetTestCycle by hidl fail, hwFactoryNew is null")},
                    {kInfo, Prefixed("SetNmCardTestMode by hidl, ret: -1")},
                    {kInfo, Prefixed("GetNmCardTestResult by hidl, ret: -1, testResultArray = ")},
                    {kError, Prefixed("GetOeminfo by hidl fail, hwFactoryNew is null")},
                    {kInfo, Prefixed("GetVerifySignatureResult by hidl, ret: -1")},
                    {kInfo, "GetRsaSignInfo by hidl, ret = 0"},
                    {kInfo, "GetDeviceInfo by hidl, ret = 0"}};
    }
    std::vector<Line> results;
    for (const Line& line : lines) {
        // The result lines only, not the request lines written before each call.
        const bool request = line.message.find("stationID: ") != std::string::npos ||
                             line.message.find("qrcodeInfo: ") != std::string::npos ||
                             line.message.find(", version: ") != std::string::npos;
        if (line.message.find(by) != std::string::npos && !request) results.push_back(line);
    }
    EXPECT_EQ(results, expected);
}

INSTANTIATE_TEST_SUITE_P(Backends, DiedUnderCallTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

}  // namespace
}  // namespace mmitest
