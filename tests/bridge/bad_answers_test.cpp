// Bad answers from the services: texts with zero bytes in them, texts and int vectors of a
// million elements, and empty vectors. A text becomes a Java string up to its first zero
// byte (the vibrator's UTF-16 answer arrives whole), every element of a long answer
// arrives, and an empty answer gives the operation's fallback. (Services that never call
// their HIDL result callback: native_methods_test.)
#include "mmi_fixture.h"

namespace mmitest {
namespace {

const std::string kZeroText("AB\0CD", 5);

std::string Million(char c) { return std::string(1 << 20, c) + "<end>"; }

class BadAnswersTest : public BackendTest {};

TEST_P(BadAnswersTest, ServiceTextsEndAtTheirFirstZeroByte) {
    BootBackend();
    const mmisim::TextReply zero{0, kZeroText};
    handset().factory().update([&](mmisim::FactoryAnswers& a) {
        a.manufactureFileName = zero;
        a.deviceInfo = {{0, zero}, {5, zero}, {14, zero}, {35, zero}, {44, zero}, {77, zero}};
        a.stationFlags = {{1, zero}};
        a.oeminfo = std::string("A\0B", 3);
    });
    handset().display().update([&](mmisim::DisplayAnswers& a) { a.screenCurrentFps = a.screenConfig = zero; });
    handset().touchScreen().update([&](mmisim::TouchScreenAnswers& a) {
        a.capacitanceTest = {2, kZeroText};
        a.capacitanceCalibrate = a.rotateCrown = zero;
    });
    handset().sensors().update([&](mmisim::SensorAnswers& a) {
        a.calibrateType = zero;
        a.parameter = {0, kZeroText, {1}, false};
    });
    handset().power().update([&](mmisim::PowerAnswers& a) { a.powerState = zero; });
    for (const char* method : {"getManufactureFileNameNative", "getBsnNative", "getMmiAutoStartFlagNative",
                               "getMockCardTestResultNative", "getTestApkPackageNameNative", "getRsaSignInfoNative",
                               "getScreenCurrentFpsNative", "getRotaryCrownSelfTestNative"}) {
        EXPECT_EQ(Str(method, "()Ljava/lang/String;"), "AB") << method;
    }
    for (const char* method : {"getDeviceInfoNative", "getManufactureStationFlagNative", "getScreenConfigNative",
                               "getCapacitanceCalibrateResultNative", "getSensorCalibrateTypeNative"}) {
        EXPECT_EQ(Str(method, "(I)Ljava/lang/String;", method[3] == 'D' ? 77 : 1), "AB") << method;
    }
    EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), "A");  // the block 0x41 0x00 0x42
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), 2);
    EXPECT_EQ(FailInfo(), "AB");
    EXPECT_EQ(Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", 1, 2, 3, 4), "AB");
    EXPECT_EQ(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J("key")), "AB");
    // The log lines end there too.
    EXPECT_TRUE(Has(kInfo, By("GetSensorCalibrateType", ", resultCode: 0, calibType: AB")));
}

// The vibrator's answer travels as UTF-16 and reaches Java as the same characters, U+0000
// included (read back here in the Java VM's modified UTF-8).
class VibratorAnswerTest : public MmiTest {};

TEST_F(VibratorAnswerTest, AZeroCharacterAndOneBeyondTheBasicPlaneArriveWhole) {
    Boot(mmisim::DeviceProfile::AllAidl());
    handset().vibrator().update([](mmisim::VibratorAnswers& a) { a.result = kZeroText + "\xF0\x9F\x93\xB3"; });
    EXPECT_EQ(Str("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", J("f0")),
              "AB\xC0\x80" "CD\xED\xA0\xBD\xED\xB3\xB3");
}

TEST_P(BadAnswersTest, MillionElementTextsAndVectorsArriveWhole) {
    BootBackend();
    const std::string text = Million('t');
    std::vector<int32_t> ints(1 << 20);
    for (size_t i = 0; i < ints.size(); ++i) ints[i] = static_cast<int32_t>(i * 2654435761u);
    handset().factory().update([&](mmisim::FactoryAnswers& a) {
        a.deviceInfo = {{0, {0, text}}};
        a.oeminfo = Million('o');
    });
    handset().display().update([&](mmisim::DisplayAnswers& a) { a.screenCurrentFps = {0, text}; });
    handset().sensors().update([&](mmisim::SensorAnswers& a) {
        a.sensorData[6] = {0, ints};
        a.parameter = {0, text, ints, false};
        a.calibrateType = {0, text};
    });
    handset().power().update([&](mmisim::PowerAnswers& a) { a.powerState = {0, text}; });
    EXPECT_TRUE(Str("getBsnNative", "()Ljava/lang/String;") == text);
    EXPECT_TRUE(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3) == Million('o'));
    EXPECT_TRUE(Str("getScreenCurrentFpsNative", "()Ljava/lang/String;") == text);
    EXPECT_TRUE(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 1) == text);
    EXPECT_TRUE(Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", 1, 2, 3, 4) == text);
    EXPECT_TRUE(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J("key")) == text);
    const std::vector<int> expected(ints.begin(), ints.end());
    EXPECT_TRUE(Ints("getColorSensorNative", "(I)[I", 6) == expected);
    EXPECT_TRUE(Ints("getAmbientLightParameterNative", "(IIII)[I", 1, 2, 3, 4) == expected);
}

TEST_P(BadAnswersTest, EmptyVectorsGiveTheOperationsFallbacks) {
    BootBackend();
    handset().sensors().update([](mmisim::SensorAnswers& a) {
        a.sensorData[6] = {0, {}};
        a.parameter = {0, "", {}, false};
    });
    handset().factory().update([](mmisim::FactoryAnswers& a) { a.oeminfo.clear(); });
    EXPECT_EQ(Ints("getColorSensorNative", "(I)[I", 6), std::vector<int>{});
    EXPECT_EQ(Ints("getAmbientLightParameterNative", "(IIII)[I", 1, 2, 3, 4), std::vector<int>{});
    EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), "");
    EXPECT_TRUE(Has(kInfo, By("GetOeminfo", ", read result: 0, oemInfo: ")));
}

MMI_ON_BOTH_BACKENDS(BadAnswersTest);

}  // namespace
}  // namespace mmitest
