// OEM info blocks, signature verification through lower-case hexadecimal text, the RSA
// signing information and numbered device-info items over both backends.
#include <optional>
#include <string>
#include <vector>

#include "factory_records_support.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::FactoryAnswers;

constexpr const char* kOeminfo = "getOeminfoNative";
constexpr const char* kOeminfoSig = "(III)Ljava/lang/String;";
constexpr const char* kVerify = "getVerifySignatureResultNative";
constexpr const char* kVerifySig = "([B)I";

class IdentityTest : public FactoryRecordTest {
protected:
    jbyteArray Bytes(const std::vector<uint8_t>& bytes) {
        jbyteArray array = mEnv->NewByteArray(static_cast<jsize>(bytes.size()));
        if (!bytes.empty()) {
            mEnv->SetByteArrayRegion(array, 0, static_cast<jsize>(bytes.size()),
                                     reinterpret_cast<const jbyte*>(bytes.data()));
        }
        return array;
    }
};

TEST_P(IdentityTest, SignatureIsSentAsLowerCaseHexUnderItem11) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.setDeviceInfoResult = 1; });
    EXPECT_EQ(Int(kVerify, kVerifySig, Bytes({0xAB, 0x01})), 1);
    EXPECT_EQ(OnlyCall("setDeviceInfo"), (std::vector<std::string>{"11", "ab01"}));
    EXPECT_EQ(Lines().back(), (Line{kInfo, Prefixed(By("GetVerifySignatureResult") + ", ret: 1")}));

    // Every byte value, first byte first, two characters each and nothing after them.
    std::vector<uint8_t> all(256);
    std::string hex;
    for (int i = 0; i < 256; ++i) {
        all[static_cast<size_t>(i)] = static_cast<uint8_t>(255 - i);
        hex += "0123456789abcdef"[(255 - i) >> 4];
        hex += "0123456789abcdef"[(255 - i) & 0xf];
    }
    handset().factory().clearCalls();
    EXPECT_EQ(Int(kVerify, kVerifySig, Bytes(all)), 1);
    const std::vector<std::string> args = OnlyCall("setDeviceInfo");
    ASSERT_EQ(args.size(), 2u);
    EXPECT_EQ(args[1].size(), 512u);
    EXPECT_EQ(args[1], hex);
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(IdentityTest, EmptySignatureFailsTheConversionAndIsNotSent) {
    BootFactory();
    EXPECT_EQ(Int(kVerify, kVerifySig, Bytes({})), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{
                      {kError, Prefixed("ConvertBinToString fail, parameter is invalid, numLen: 0, strLen: 0")},
                      {kError, Prefixed(By("GetVerifySignatureResult") + ", convertBinToString fail")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
}

TEST_P(IdentityTest, NullSignatureIsReportedAndNotSent) {
    BootFactory();
    EXPECT_EQ(Int(kVerify, kVerifySig, static_cast<jbyteArray>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed(By("GetVerifySignatureResult") + " fail, signature is null")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
}

TEST_P(IdentityTest, RsaSignInfoIsItem44ReturnedWhateverTheStatus) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.deviceInfo[44] = {3, "rsa:partial"}; });
    EXPECT_EQ(Str("getRsaSignInfoNative", "()Ljava/lang/String;"), "rsa:partial");
    EXPECT_EQ(OnlyCall("getDeviceInfo"), std::vector<std::string>{"44"});
    // Over AIDL the device-info line is written; over HIDL a line of its own, without the text.
    EXPECT_EQ(Lines().back(), (Line{kInfo, Aidl() ? "GetDeviceInfo by aidl, ret = 3, info: rsa:partial"
                                                  : "GetRsaSignInfo by hidl, ret = 3"}));
}

TEST_P(IdentityTest, DeviceInfoPassesTheItemThrough) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) {
        a.deviceInfo[-2] = {-9, "negative"};
        a.deviceInfo[1000] = {0, std::string("pre\0post", 8)};
    });
    EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", -2), "negative");
    EXPECT_EQ(Lines().back(), (Line{kInfo, Aidl() ? "GetDeviceInfo by aidl, ret = -9, info: negative"
                                                  : "GetDeviceInfo by hidl, ret = -9"}));
    EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", 1000), "pre");
    // An item the service does not know answers (0, "").
    EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", 7), "");
    std::vector<std::string> items;
    for (const mmisim::Call& call : handset().factory().callsTo("getDeviceInfo")) items.push_back(call.args[0]);
    EXPECT_EQ(items, (std::vector<std::string>{"-2", "1000", "7"}));
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

INSTANTIATE_TEST_SUITE_P(Backends, IdentityTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

// OEM info needs factory interface 1.1 over HIDL.
class OeminfoTest : public IdentityTest {};

TEST_P(OeminfoTest, BlockIsReadWithTheThreeIntegersInOrder) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.oeminfo = "OEM:line-7"; });
    EXPECT_EQ(Str(kOeminfo, kOeminfoSig, 3, -1, 4096), "OEM:line-7");
    EXPECT_EQ(OnlyCall("getOeminfo"), (std::vector<std::string>{"3", "-1", "4096"}));
    EXPECT_EQ(Lines().back(), (Line{kInfo, Prefixed(By("GetOeminfo") + ", read result: 0, oemInfo: OEM:line-7")}));
}

TEST_P(OeminfoTest, TextEndsAtTheFirstZeroByteOfTheBlock) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) { a.oeminfo = std::string("A\0B", 3); });
    EXPECT_EQ(Str(kOeminfo, kOeminfoSig, 1, 0, 3), "A");
    // A block that starts with a zero byte is an empty text, but still a success.
    handset().factory().update([](FactoryAnswers& a) { a.oeminfo = std::string("\0\0XYZ", 5); });
    EXPECT_EQ(Str(kOeminfo, kOeminfoSig, 1, 0, 5), "");
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetOeminfo") + ", read result: 0, oemInfo: ")));
    // Bytes that are not UTF-8, and a sequence cut by the end of the block, are handed over
    // as they are; the Java side reads what it can of them.
    handset().factory().update([](FactoryAnswers& a) {
        a.oeminfo = std::string(
                "\xff\xfe\x80"
                "A\xe2",
                5);
    });
    const std::optional<std::string> binary = Str(kOeminfo, kOeminfoSig, 1, 0, 5);
    ASSERT_TRUE(binary.has_value());
    EXPECT_NE(binary->find('A'), std::string::npos);
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(OeminfoTest, FailedReadGivesAnEmptyText) {
    BootFactory();
    handset().factory().update([](FactoryAnswers& a) {
        a.oeminfoRet = 2;
        a.oeminfo = "stale";
    });
    EXPECT_EQ(Str(kOeminfo, kOeminfoSig, 1, 2, 3), "");
    // The HIDL line ends in a blank.
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{
                      {kError, Prefixed(By("GetOeminfo") + " fail, read failed result: 2" + (Aidl() ? "" : " "))}}));
}

INSTANTIATE_TEST_SUITE_P(Backends, OeminfoTest, ::testing::Values(kFactoryAidl, kFactoryHidl), BackendLabel);

class IdentityVersionTest : public MmiTest {};

TEST_F(IdentityVersionTest, FactoryOneZeroHasNoOeminfoButVerifiesSignatures) {
    Boot(FactoryOnly(kFactoryHidl10));
    handset().factory().update([](FactoryAnswers& a) { a.oeminfo = "never read"; });
    EXPECT_EQ(Str(kOeminfo, kOeminfoSig, 1, 2, 3), "");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("GetOeminfo by hidl fail, hwFactoryNew is null")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
    // Signatures and device info are 1.0 operations.
    jbyteArray signature = mEnv->NewByteArray(1);
    EXPECT_EQ(Int(kVerify, kVerifySig, signature), 0);
    EXPECT_EQ(handset().factory().callsTo("setDeviceInfo")[0].args, (std::vector<std::string>{"11", "00"}));
    EXPECT_EQ(Str("getRsaSignInfoNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(handset().factory().callsTo("getDeviceInfo").size(), 1u);
}

TEST_F(IdentityVersionTest, WithoutServiceEachOperationWritesItsOwnLine) {
    Boot(DeviceProfile::Bare());
    EXPECT_EQ(Str(kOeminfo, kOeminfoSig, 1, 2, 3), "");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("GetOeminfo by hidl fail, hwFactoryNew is null")}}));
    Mark();
    // The array is not looked at without a service: no null-argument line.
    EXPECT_EQ(Int(kVerify, kVerifySig, static_cast<jbyteArray>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{
                      {kError, Prefixed("GetVerifySignatureResult by hidl fail, g_hwFactoryInterface is null")}}));
    Mark();
    EXPECT_EQ(Str("getRsaSignInfoNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, "GetRsaSignInfo by hidl, g_hwFactoryInterface is null"}}));
    Mark();
    EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", 0), "");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, "GetDeviceInfo by hidl, g_hwFactoryInterface is null"}}));
}

}  // namespace
}  // namespace mmitest
