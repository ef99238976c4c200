// Factory state and identity queries over both backends.
#include <string>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::FactoryAnswers;
using mmisim::Transport;

struct Backend {
    Transport transport;
    const char* name;       // "aidl" or "hidl" as the log lines say it
    const char* handle;     // the handle the missing-service lines name
};

const Backend kAidl{Transport::kAidl, "aidl", "g_aidlFactoryInterface"};
const Backend kHidl{Transport::kHidl, "hidl", "g_hwFactoryInterface"};

class FactoryQueryTest : public MmiTest, public ::testing::WithParamInterface<Backend> {
protected:
    void BootWithFactory(int hidlMinor = -1) {
        DeviceProfile profile = DeviceProfile::Bare();
        profile[Family::kFactory].transport = GetParam().transport;
        profile[Family::kFactory].hidlMinor = hidlMinor;
        Boot(profile);
    }
    std::string By(const std::string& operation) const { return operation + " by " + GetParam().name; }
    bool Aidl() const { return GetParam().transport == Transport::kAidl; }
};

TEST_P(FactoryQueryTest, AnswersComeFromTheServiceUnchanged) {
    BootWithFactory();
    handset().factory().update([](FactoryAnswers& a) {
        a.factoryVersion = false;
        a.manufactureFileName = {0, "line7.xml"};
        a.deviceInfo[0] = {0, "SN-0042"};
        a.deviceInfo[35] = {0, "com.corvex.mmitest.factory"};
        a.manufactureMode = 3;
        a.featuresCheckResult = -7;
        a.clearDeviceInfoResult = 12;
        a.releaseFactoryResourceResult = 9;
    });
    EXPECT_FALSE(Bool("isFactoryVersionNative", "()Z"));
    EXPECT_EQ(Str("getManufactureFileNameNative", "()Ljava/lang/String;"), "line7.xml");
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "SN-0042");
    EXPECT_EQ(Str("getTestApkPackageNameNative", "()Ljava/lang/String;"), "com.corvex.mmitest.factory");
    EXPECT_EQ(Int("getManufactureModeNative", "()I"), 3);
    EXPECT_EQ(Int("getMmiDeviceFeaturesCheckResultNative", "(I)I", 1234), -7);
    EXPECT_EQ(Int("nativeClearPackageName", "()I"), 12);
    EXPECT_EQ(Int("releaseFactoryHidlResourceNative", "()I"), 9);

    EXPECT_EQ(handset().factory().callsTo("getMmiDeviceFeaturesCheckResult")[0].args,
              std::vector<std::string>{"1234"});
    EXPECT_EQ(handset().factory().callsTo("clearDeviceInfo")[0].args, std::vector<std::string>{"4"});
    std::vector<std::string> items;
    for (const auto& call : handset().factory().callsTo("getDeviceInfo")) items.push_back(call.args[0]);
    EXPECT_EQ(items, (std::vector<std::string>{"0", "35"}));
    for (const auto& call : handset().factory().calls()) EXPECT_EQ(call.origin, GetParam().name);

    EXPECT_TRUE(Has(kInfo, Prefixed(By("IsFactoryVersion") + ": 0")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetManufactureFileName") + ", ret: 0, fileName: line7.xml")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetManufactureMode") + ", result: 3")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetMmiDeviceFeaturesCheckResult") + ", result: -7")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("ClearPackageName") + ", result: 12")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("ReleaseFactoryHidlResource") + ", result: 9")));
    // The serial number and the package name are logged only over AIDL.
    if (Aidl()) {
        EXPECT_TRUE(Has(kInfo, Prefixed("GetBsn by aidl, ret: 0, deviceInfo: SN-0042")));
        EXPECT_TRUE(Has(kInfo, Prefixed("GetTestApkPackageName by aidl, ret: 0, name: com.corvex.mmitest.factory")));
    } else {
        EXPECT_TRUE(Has(kInfo, Prefixed("GetBsn by hidl, ret: 0")));
        EXPECT_TRUE(Has(kInfo, Prefixed("GetTestApkPackageName by hidl, ret: 0")));
    }
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(FactoryQueryTest, SerialNumberIsReturnedWhateverTheStatus) {
    BootWithFactory();
    handset().factory().update([](FactoryAnswers& a) { a.deviceInfo[0] = {4, "SN-PARTIAL"}; });
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "SN-PARTIAL");
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(FactoryQueryTest, AutoStartFlagFailureAnswersDifferPerBackend) {
    BootWithFactory();
    handset().factory().update([](FactoryAnswers& a) { a.deviceInfo[5] = {3, "1"}; });
    const auto flag = Str("getMmiAutoStartFlagNative", "()Ljava/lang/String;");
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetMmiAutoStartFlag") + ", ret: 3, flag: 1")));
    if (Aidl()) {
        EXPECT_EQ(flag, "");
        EXPECT_TRUE(Has(kError, Prefixed("GetMmiAutoStartFlag by aidl failed, ret: 3")));
    } else {
        EXPECT_EQ(flag, "Error");
        EXPECT_TRUE(Has(kError, Prefixed("GetMmiAutoStartFlag by hidl failed")));
    }
    handset().factory().update([](FactoryAnswers& a) { a.deviceInfo[5] = {0, "1"}; });
    Mark();
    EXPECT_EQ(Str("getMmiAutoStartFlagNative", "()Ljava/lang/String;"), "1");
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(FactoryQueryTest, AutoStartFlagIsWrittenAsItem5) {
    BootWithFactory();
    handset().factory().update([](FactoryAnswers& a) { a.setDeviceInfoResult = 21; });
    EXPECT_EQ(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", J("0")), 21);
    EXPECT_EQ(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", J("\xc3\xa9t\xc3\xa9")), 21);
    const auto calls = handset().factory().callsTo("setDeviceInfo");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].args, (std::vector<std::string>{"5", "0"}));
    EXPECT_EQ(calls[1].args, (std::vector<std::string>{"5", "\xc3\xa9t\xc3\xa9"}));
    EXPECT_EQ(Count(kInfo, Prefixed(By("SetMmiAutoStartFlag") + ", result: 21")), 2);
}

TEST_P(FactoryQueryTest, NullFlagIsReportedAndNeverSent) {
    BootWithFactory();
    EXPECT_EQ(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", static_cast<jstring>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed(By("SetMmiAutoStartFlag") + " fail, flag is null")}}));
    EXPECT_TRUE(handset().factory().callsTo("setDeviceInfo").empty());
}

TEST_P(FactoryQueryTest, TextEndsAtTheFirstZeroByte) {
    BootWithFactory();
    handset().factory().update([](FactoryAnswers& a) { a.manufactureFileName = {0, std::string("ab\0cd", 5)}; });
    EXPECT_EQ(Str("getManufactureFileNameNative", "()Ljava/lang/String;"), "ab");
}

TEST_P(FactoryQueryTest, WithoutTheServiceEveryQueryFallsBackWithOneError) {
    Boot(DeviceProfile::Bare());
    struct Case {
        std::function<void()> call;
        std::string error;
    };
    const std::string hidlNull = "hidl fail, g_hwFactoryInterface is null";
    const std::vector<Case> cases{
            {[&] { EXPECT_FALSE(Bool("isFactoryVersionNative", "()Z")); }, Prefixed("IsFactoryVersion by " + hidlNull)},
            {[&] { EXPECT_EQ(Str("getManufactureFileNameNative", "()Ljava/lang/String;"), ""); },
             Prefixed("GetManufactureFileName by " + hidlNull)},
            {[&] { EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), ""); }, Prefixed("GetBsn by " + hidlNull)},
            {[&] { EXPECT_EQ(Str("getTestApkPackageNameNative", "()Ljava/lang/String;"), ""); },
             Prefixed("GetTestApkPackageName by " + hidlNull)},
            {[&] { EXPECT_EQ(Int("getManufactureModeNative", "()I"), -1); },
             Prefixed("GetManufactureMode by hidl, hwFactoryNew is null")},
            {[&] { EXPECT_EQ(Int("getMmiDeviceFeaturesCheckResultNative", "(I)I", 1), -1); },
             Prefixed("GetMmiDeviceFeaturesCheckResult by " + hidlNull)},
            {[&] { EXPECT_EQ(Int("nativeClearPackageName", "()I"), -1); }, Prefixed("ClearPackageName by " + hidlNull)},
            {[&] { EXPECT_EQ(Int("releaseFactoryHidlResourceNative", "()I"), -1); },
             Prefixed("ReleaseFactoryHidlResource by " + hidlNull)},
            {[&] { EXPECT_EQ(Str("getMmiAutoStartFlagNative", "()Ljava/lang/String;"), ""); },
             Prefixed("GetMmiAutoStartFlag by " + hidlNull)},
            // The flag is not even looked at: a null one gives no null-argument line.
            {[&] { EXPECT_EQ(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", static_cast<jstring>(nullptr)), -1); },
             Prefixed("SetMmiAutoStartFlag by " + hidlNull)},
    };
    for (const Case& c : cases) {
        Mark();
        c.call();
        EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, c.error}}));
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, FactoryQueryTest, ::testing::Values(kAidl, kHidl),
                         [](const ::testing::TestParamInfo<Backend>& info) { return std::string(info.param.name); });

class FactoryVersionTest : public MmiTest {};

TEST_F(FactoryVersionTest, VersionOneZeroServiceLacksTheNewerOperations) {
    DeviceProfile profile = DeviceProfile::Bare();
    profile[Family::kFactory].transport = Transport::kHidl;
    profile[Family::kFactory].hidlMinor = 0;
    Boot(profile);
    EXPECT_EQ(Int("getManufactureModeNative", "()I"), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetManufactureMode by hidl, hwFactoryNew is null")));
    Mark();
    EXPECT_EQ(Int("nativeClearPackageName", "()I"), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, "ClearPackageName by hidl, hwFactoryNew is null, HwFactoryV11 not support!"}}));
    // The 1.0 operations still work.
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "ZT26A0012345");
    EXPECT_TRUE(handset().factory().callsTo("getManufactureMode").empty());
    EXPECT_TRUE(handset().factory().callsTo("clearDeviceInfo").empty());
}

}  // namespace
}  // namespace mmitest
