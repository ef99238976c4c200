// Bad input from Java beyond null references (native_methods_test): texts empty, of a
// million characters, outside ASCII and with an embedded U+0000, the signature as an empty
// and a very long array, and every int argument at its extremes. The services receive
// exactly the Java side's text (the Java VM's modified UTF-8; UTF-16 for the vibrator) and
// the ints unchanged.
// Bad answers from the services: texts with zero bytes in them, texts and int vectors of a
// million elements, and empty vectors. A text becomes a Java string up to its first zero
// byte (the vibrator's UTF-16 answer arrives whole), every element of a long answer
// arrives, and an empty answer gives the operation's fallback. (Services that never call
// their HIDL result callback: native_methods_test.)
#include <climits>

#include "mmi_fixture.h"
#include "native_methods.h"

namespace mmitest {
namespace {

using mmisim::Family;
using Fields = std::vector<std::string>;
using Rows = std::vector<Fields>;

constexpr const char* kCaller = "ZtMmiTest_jni";

class BadInputTest : public BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        BootBackend();
        ScriptAnswers(handset(), EveryFamilyOver(GetParam()));
    }
    // A Java string of UTF-16 units (any character, U+0000 included).
    jstring J16(const std::u16string& text) {
        return mEnv->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    }
    jbyteArray Bytes(const std::vector<uint8_t>& bytes) {
        jbyteArray array = mEnv->NewByteArray(static_cast<jsize>(bytes.size()));
        mEnv->SetByteArrayRegion(array, 0, static_cast<jsize>(bytes.size()), reinterpret_cast<const jbyte*>(bytes.data()));
        return array;
    }
    // Rows of a service's calls over AIDL; over HIDL without the caller's tag.
    Rows Tagged(Rows rows) {
        if (aidl()) {
            for (auto& row : rows) row.insert(row.begin(), kCaller);
        }
        return rows;
    }
};

// Each text as the Java VM hands it out (modified UTF-8: U+0000 as C0 80, a character
// beyond the Basic Multilingual Plane as its two surrogates) and as standard UTF-8 (how the
// vibrator's UTF-16 shows in the recording of the simulated service).
TEST_P(BadInputTest, TextsReachTheServicesWhole) {
    const std::u16string million = std::u16string(1 << 20, u'x') + u"<end>";
    const std::string millionBytes(million.begin(), million.end());
    const std::vector<std::tuple<std::u16string, std::string, std::string>> texts = {
            {u"", "", ""},
            {million, millionBytes, millionBytes},
            {u"Gr\u00fc\u00dfe \u65e5\u672c \U0001F600", "Gr\xC3\xBC\xC3\x9F" "e \xE6\x97\xA5\xE6\x9C\xAC \xED\xA0\xBD\xED\xB8\x80",
             "Gr\xC3\xBC\xC3\x9F" "e \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80"},
            {std::u16string(u"ab\0cd", 5), "ab\xC0\x80" "cd", std::string("ab\0cd", 5)}};
    for (const auto& [text, bytes, utf8] : texts) {
        SCOPED_TRACE(utf8.substr(0, 20));
        ClearCalls();
        EXPECT_EQ(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J16(text)), "power-1");
        EXPECT_EQ(Int("checkUsbSpeedNative", "(Ljava/lang/String;)I", J16(text)), aidl() ? 103 : 107);
        EXPECT_EQ(Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", J16(text), J16(text)), 103);
        EXPECT_EQ(Received(Family::kPower, "getPowerState"), Tagged({{bytes}}));
        EXPECT_EQ(Received(Family::kPower, "setPowerState"),
                  aidl() ? Tagged({{bytes, "testTimes=,maxLimit=,minLimit="}, {bytes, bytes}}) : Tagged({{bytes, bytes}}));
        EXPECT_EQ(Received(Family::kPower, "checkUsbSpeed"), aidl() ? Rows{} : (Rows{{bytes, "", "", ""}}));
        EXPECT_EQ(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", J16(text)), 17);
        EXPECT_EQ(Int("setMockCardTestModeNative", "(Ljava/lang/String;)I", J16(text)), 17);
        EXPECT_EQ(Received(Family::kFactory, "setDeviceInfo"), (Rows{{"5", bytes}, {"14", bytes}}));
        EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I", 3, J16(text)), 71);
        EXPECT_EQ(Received(Family::kTouchScreen, "setTouchScreenFeatureConfig"), (Rows{{"3", bytes}}));
        EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 2, 5, J16(text)), 0);
        EXPECT_EQ(Received(Family::kDisplay, "setDisplayParameter"), (Rows{{"2", "5", bytes}}));
        // The vibrator exists only over AIDL; it takes UTF-16.
        Void("setVibratorParameterNative", "(Ljava/lang/String;)V", J16(text));
        EXPECT_EQ(Str("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", J16(text)),
                  aidl() ? "vib-1" : "");
        EXPECT_EQ(Received(Family::kVibrator, "setVibratorParameter"), aidl() ? Rows{{utf8}} : Rows{});
        EXPECT_EQ(Received(Family::kVibrator, "getVibratorResult"), aidl() ? Rows{{utf8}} : Rows{});
        // Texts of the big-data reports travel as they are.
        jobject operation = NewModel(mEnv, kOperationClass);
        mEnv->SetObjectField(operation, mEnv->GetFieldID(mEnv->GetObjectClass(operation), "mStation", "Ljava/lang/String;"),
                             J16(text));
        EXPECT_EQ(Int("sendBigDataOperationNative", "(Lcom/corvex/mmitest/model/BigDataOperation;)I", operation), 47);
        EXPECT_EQ(handset().factoryInbox().cmdData.back().station, bytes);
    }
}

TEST_P(BadInputTest, SignatureArraysEmptyAndVeryLong) {
    Mark();
    EXPECT_EQ(Int("getVerifySignatureResultNative", "([B)I", Bytes({})), -1);
    // The hexadecimal conversion's own line, then the operation's.
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("ConvertBinToString fail, parameter is invalid, numLen: 0, strLen: 0")},
                                 {kError, By("GetVerifySignatureResult", ", convertBinToString fail")}}));
    EXPECT_TRUE(handset().factory().calls().empty());
    // A megabyte of every byte value, as two lower-case hexadecimal characters each.
    std::vector<uint8_t> bytes(1 << 20);
    std::string hex;
    for (size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<uint8_t>(i * 7);
        hex += "0123456789abcdef"[bytes[i] >> 4];
        hex += "0123456789abcdef"[bytes[i] & 0x0f];
    }
    EXPECT_EQ(Int("getVerifySignatureResultNative", "([B)I", Bytes(bytes)), 17);
    const Rows calls = Received(Family::kFactory, "setDeviceInfo");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].at(0), "11");
    EXPECT_TRUE(calls[0].at(1) == hex) << "the signature text differs from the bytes' hexadecimal form";
}

// Every int argument of every method at INT_MIN, INT_MAX, -1 and 0 reaches the service
// unchanged (the test cycle's fields cut to two characters each, by design).
TEST_P(BadInputTest, ExtremeIntegersPassThroughUnchanged) {
    NativeCalls calls(mEnv, mManager);
    for (jint v : {INT_MIN, INT_MAX, -1, 0}) {
        SCOPED_TRACE(v);
        ClearCalls();
        for (size_t i = 0; i < NativeMethods().size(); ++i) EXPECT_NE(calls.Call(i, -1, v), "threw");
        const std::string t = std::to_string(v);
        // "%02d" cut to two characters: INT_MIN gives "-2", INT_MAX "21".
        const std::string field = t.size() < 2 ? "0" + t : t.substr(0, 2);
        const std::vector<std::pair<Family, std::pair<std::string, Rows>>> expected = {
                {Family::kFactory, {"setMmiTestResult", {{t, t}}}},
                {Family::kFactory, {"getMmiDeviceFeaturesCheckResult", {{t}}}},
                {Family::kFactory, {"getManufactureStationFlag", {{t}}}},
                {Family::kFactory, {"getOeminfo", {{t, t, t}}}},
                // Serial number, package, auto-start flag, NM card, the item asked, RSA information.
                {Family::kFactory, {"getDeviceInfo", {{"0"}, {"35"}, {"5"}, {"14"}, {t}, {"44"}}}},
                {Family::kFactory, {"setCommandData", {{"143", "64", field + field}}}},
                {Family::kFingerprint, {"sendCmdToHal", {{t}}}},
                {Family::kTouchScreen, {"getCapacitanceCalibrateResult", {{t}}}},
                {Family::kTouchScreen, {"setTouchScreenFeatureConfig", {{t, "glove=1"}}}},
                {Family::kSensors, {"getCalibrateDelayTime", {{t}}}},
                {Family::kSensors, {"getSelfTestDelayTime", {{t}}}},
                {Family::kSensors, {"startCalibrate", {{t, t}}}},
                {Family::kSensors, {"startSelfTest", {{t, t}}}},
                {Family::kSensors, {"getCalibrateResult", {{t}}}},
                {Family::kSensors, {"getSelfTestResult", {{t}}}},
                {Family::kSensors, {"getCalibrateType", {{t, "1024"}}}},
                {Family::kSensors, {"activateSensor", {{t, "true", t}}}},  // the rate keeps its sign
                // Flicker, colour values and (AIDL only) flicker amplitude.
                {Family::kSensors, {"getSensorData", aidl() ? Rows(3, {t}) : Rows(2, {t})}},
                // Over AIDL the last value is the size of the reply buffer offered.
                {Family::kSensors, {"processSensorParameter", aidl() ? Rows{{t, t, t, t, "64"}, {t, t, t, t, "4096"},
                                                                            {t, t, t, t, "64"}}
                                                                      : Rows(3, {t, t, t, t})}},
                {Family::kLight, {"setLightBrightness", aidl() ? Rows{{t, t}} : Rows{{t, t}, {"1", t}}}},
                {Family::kDisplay, {"setBackLightBrightness", aidl() ? Rows{{t}} : Rows{}}},
                {Family::kDisplay, {aidl() ? "getScreenConfig" : "selectScreenConfigStation", {{t}}}},
                {Family::kDisplay, {"setDisplayParameter", {{t, t, "scene-data"}}}},
                {Family::kDisplay, {"setDisplaySelfAdaptMinFps", {{t}}}},
                {Family::kVaelon, {"getCapabilities", aidl() ? Rows(2, Fields{}) : Rows{}}},
                {Family::kVaelon, {"registerClient", aidl() ? Rows{{t, "0"}} : Rows{}}}};
        for (const auto& [family, call] : expected) EXPECT_EQ(Received(family, call.first), call.second) << call.first;
    }
}

MMI_ON_BOTH_BACKENDS(BadInputTest);

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
