// Bad input from Java: every native method that takes a Java reference is called with null
// for each of them, every text argument is sent empty, very long (a million characters),
// with characters outside ASCII and with an embedded U+0000, the signature as an empty and
// as a very long array, and every int argument at its extremes. Each call answers the
// operation's fallback or its designed answer, and what reaches the service is exactly the
// Java side's text (as the Java VM's modified UTF-8, or UTF-16 for the vibrator): nothing is
// cut, padded or read beyond the end.
#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "device_support.h"
#include "factory_records_support.h"

namespace mmitest {
namespace {

using mmisim::Family;

constexpr const char* kCaller = "ZtMmiTest_jni";
constexpr const char* kUsbParameter = "testTimes=,maxLimit=,minLimit=";
constexpr jint kExtremes[] = {INT_MIN, INT_MAX, -1, 0};

std::string Quote(const std::optional<std::string>& text) { return text ? "\"" + *text + "\"" : "null"; }

class BadInputTest : public DeviceBackendCase {
protected:
    void SetUp() override {
        DeviceBackendCase::SetUp();
        // Answers that no fallback equals.
        handset().factory().update([](mmisim::FactoryAnswers& a) {
            a.setDeviceInfoResult = 17;
            a.fmdCmdDataResult = 47;
            a.fmdMessageResult = 53;
        });
        handset().power().update([](mmisim::PowerAnswers& a) {
            a.setPowerStateResult = 103;
            a.powerState = {0, "power-state"};
            a.usbSpeed = {107, "usb3"};
        });
        handset().touchScreen().update([](mmisim::TouchScreenAnswers& a) { a.featureConfigResult = 71; });
        handset().display().update([](mmisim::DisplayAnswers& a) { a.displayParameter = {0, "param-ok"}; });
        handset().vibrator().update([](mmisim::VibratorAnswers& a) { a.result = "vib-result"; });
    }

    bool aidl() const { return GetParam().aidl(); }
    std::string origin() const { return GetParam().name; }

    void ClearCalls() {
        handset().factory().clearCalls();
        handset().display().clearCalls();
        handset().touchScreen().clearCalls();
        handset().fingerprint().clearCalls();
        handset().sensors().clearCalls();
        handset().power().clearCalls();
        handset().light().clearCalls();
        handset().vaelon().clearCalls();
        handset().vibrator().clearCalls();
    }

    size_t ServiceCalls() {
        return handset().factory().calls().size() + handset().display().calls().size() +
               handset().touchScreen().calls().size() + handset().fingerprint().calls().size() +
               handset().sensors().calls().size() + handset().power().calls().size() +
               handset().light().calls().size() + handset().vaelon().calls().size() +
               handset().vibrator().calls().size();
    }

    // A Java string of UTF-16 units (any character, U+0000 included).
    jstring J16(const std::u16string& text) {
        return mEnv->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    }

    jbyteArray Bytes(const std::vector<uint8_t>& bytes) {
        jbyteArray array = mEnv->NewByteArray(static_cast<jsize>(bytes.size()));
        if (!bytes.empty()) {
            mEnv->SetByteArrayRegion(array, 0, static_cast<jsize>(bytes.size()),
                                     reinterpret_cast<const jbyte*>(bytes.data()));
        }
        return array;
    }

    // Sends one Java text through every method that takes one, and checks the answers and
    // what each service received: `bytes` is the text as the Java VM hands it out (modified
    // UTF-8), `utf8` the same characters in standard UTF-8 (how the vibrator's UTF-16 arrives
    // in the recording of the simulated service).
    void SendTextEverywhere(const std::u16string& text, const std::string& bytes, const std::string& utf8) {
        const std::string o = origin();
        ClearCalls();
        EXPECT_EQ(Quote(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J16(text))),
                  Quote("power-state"));
        EXPECT_EQ(CallsTo(handset().power(), "getPowerState"), (aidl() ? Rows{{o, kCaller, bytes}} : Rows{{o, bytes}}));

        ClearCalls();
        EXPECT_EQ(Int("checkUsbSpeedNative", "(Ljava/lang/String;)I", J16(text)), aidl() ? 103 : 107);
        if (aidl()) {
            EXPECT_EQ(CallsTo(handset().power(), "setPowerState"), (Rows{{o, kCaller, bytes, kUsbParameter}}));
        } else {
            EXPECT_EQ(CallsTo(handset().power(), "checkUsbSpeed"), (Rows{{o, bytes, "", "", ""}}));
        }

        ClearCalls();
        EXPECT_EQ(Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", J16(text), J16(text)), 103);
        EXPECT_EQ(CallsTo(handset().power(), "setPowerState"),
                  (aidl() ? Rows{{o, kCaller, bytes, bytes}} : Rows{{o, bytes, bytes}}));

        ClearCalls();
        EXPECT_EQ(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", J16(text)), 17);
        EXPECT_EQ(Int("setMockCardTestModeNative", "(Ljava/lang/String;)I", J16(text)), 17);
        EXPECT_EQ(CallsTo(handset().factory(), "setDeviceInfo"), (Rows{{o, "5", bytes}, {o, "14", bytes}}));

        ClearCalls();
        EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I", 3, J16(text)), 71);
        EXPECT_EQ(CallsTo(handset().touchScreen(), "setTouchScreenFeatureConfig"), (Rows{{o, "3", bytes}}));

        ClearCalls();
        EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 2, 5, J16(text)), 0);
        EXPECT_EQ(CallsTo(handset().display(), "setDisplayParameter"), (Rows{{o, "2", "5", bytes}}));

        // The vibrator exists only over AIDL; it takes UTF-16.
        ClearCalls();
        Void("setVibratorParameterNative", "(Ljava/lang/String;)V", J16(text));
        EXPECT_EQ(Quote(Str("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", J16(text))),
                  Quote(aidl() ? "vib-result" : ""));
        if (aidl()) {
            EXPECT_EQ(CallsTo(handset().vibrator(), "setVibratorParameter"), (Rows{{o, utf8}}));
            EXPECT_EQ(CallsTo(handset().vibrator(), "getVibratorResult"), (Rows{{o, utf8}}));
        } else {
            EXPECT_TRUE(handset().vibrator().calls().empty());
        }

        // Texts of the big-data reports travel as they are.
        ClearCalls();
        jobject operation = NewModel(mEnv, "com/corvex/mmitest/model/BigDataOperation");
        jclass operationClass = mEnv->GetObjectClass(operation);
        mEnv->SetObjectField(operation, mEnv->GetFieldID(operationClass, "mStation", "Ljava/lang/String;"), J16(text));
        mEnv->DeleteLocalRef(operationClass);
        EXPECT_EQ(Int("sendBigDataOperationNative", kSendOperationSig, operation), 47);
        const auto inbox = handset().factoryInbox();
        ASSERT_FALSE(inbox.cmdData.empty());
        EXPECT_EQ(inbox.cmdData.back().station, bytes);
    }
};

TEST_P(BadInputTest, NullTextsAndArraysGiveTheFallbackOneErrorLineAndNoServiceCall) {
    const std::string vibratorSetLine =
            aidl() ? By("SetVibratorPar", " fail, command is null") : "SetVibratorPar fail, Aidl is null";
    const std::string vibratorGetLine =
            aidl() ? By("GetVibratorResult", " fail, command is null") : "GetVibratorResult fail, Aidl is null";
    const jstring none = nullptr;
    const jbyteArray noBytes = nullptr;
    struct NullCase {
        const char* what;
        std::function<std::string()> call;
        std::string fallback;
        std::string errorLine;
    };
    const std::vector<NullCase> cases = {
            {"getPowerStateNative(null)",
             [&] { return Quote(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", none)); },
             Quote(""), By("GetPowerState", " fail, key is null")},
            {"checkUsbSpeedNative(null)",
             [&] { return std::to_string(Int("checkUsbSpeedNative", "(Ljava/lang/String;)I", none)); }, "-1",
             By("CheckUsbSpeed", " fail, scene is null")},
            {"disableMmiAutoStartNative(null)",
             [&] { return std::to_string(Int("disableMmiAutoStartNative", "(Ljava/lang/String;)I", none)); }, "-1",
             By("SetMmiAutoStartFlag", " fail, flag is null")},
            {"setPowerStateNative(null, para)",
             [&] {
                 return std::to_string(
                         Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", none, J("para")));
             },
             "-1", By("SetPowerState", " fail, testScene is null")},
            {"setPowerStateNative(scene, null)",
             [&] {
                 return std::to_string(
                         Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", J("scene"), none));
             },
             "-1", By("SetPowerState", " fail, para is null")},
            {"setPowerStateNative(null, null)",
             [&] {
                 return std::to_string(
                         Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", none, none));
             },
             "-1", By("SetPowerState", " fail, testScene is null")},
            {"setVibratorParameterNative(null)",
             [&] {
                 Void("setVibratorParameterNative", "(Ljava/lang/String;)V", none);
                 return std::string("void");
             },
             "void", vibratorSetLine},
            {"getVibratorCalibrateResultNative(null)",
             [&] {
                 return Quote(Str("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", none));
             },
             Quote(""), vibratorGetLine},
            {"setTouchScreenFeatureConfigNative(3, null)",
             [&] {
                 return std::to_string(Int("setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I", 3, none));
             },
             "-1", By("SetTouchScreenFeatureConfig", " fail, config is null")},
            {"setDisplayParameterNative(2, 5, null)",
             [&] { return std::to_string(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 2, 5, none)); },
             "-1", By("SetDisplayParameter", " fail, dataString is null")},
            {"getVerifySignatureResultNative(null)",
             [&] { return std::to_string(Int("getVerifySignatureResultNative", "([B)I", noBytes)); }, "-1",
             By("GetVerifySignatureResult", " fail, signature is null")},
            {"setMockCardTestModeNative(null)",
             [&] { return std::to_string(Int("setMockCardTestModeNative", "(Ljava/lang/String;)I", none)); }, "-1",
             By("SetNmCardTestMode", " fail, mode is null")},
    };
    for (const NullCase& c : cases) {
        ClearCalls();
        Mark();
        EXPECT_EQ(c.call(), c.fallback) << c.what;
        EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, c.errorLine}})) << c.what;
        EXPECT_EQ(ServiceCalls(), 0u) << c.what;
    }
}

// A model object that is null is read field by field like one whose fields are all missing:
// every field read reports the invalid parameter, and the report goes out with -1 and empty
// texts (the report is not a text or array argument: it is sent as read).
TEST_P(BadInputTest, NullReportsAreSentWithEveryFieldMissing) {
    const jobject none = nullptr;
    const Line intLine{kError, Prefixed("GetIntFromObject fail, invalid parameter")};
    const Line textLine{kError, Prefixed("GetStringFromObject fail, invalid parameter")};

    EXPECT_EQ(Int("sendBigDataOperationNative", kSendOperationSig, none), 47);
    EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{intLine, intLine, intLine, textLine, textLine, intLine}));
    auto inbox = handset().factoryInbox();
    ASSERT_EQ(inbox.cmdData.size(), 1u);
    const auto& data = inbox.cmdData[0];
    EXPECT_EQ(std::vector<int>({data.version, data.commandId, data.operation, data.cycle}),
              std::vector<int>({-1, -1, -1, -1}));
    EXPECT_EQ(data.station, "");
    EXPECT_EQ(data.bsn, "");

    Mark();
    EXPECT_EQ(Int("sendBigDataValueNative", kSendValueSig, none), 53);
    std::vector<Line> expected(5, intLine);
    expected.insert(expected.end(), 11, textLine);
    EXPECT_EQ(LinesWithPriority(kError), expected);
    inbox = handset().factoryInbox();
    ASSERT_EQ(inbox.messages.size(), 1u);
    ASSERT_EQ(inbox.messages[0].events.size(), 1u);
    const auto& event = inbox.messages[0].events[0];
    EXPECT_EQ(std::vector<int>({inbox.messages[0].version, inbox.messages[0].dataSource, event.errorCode, event.itemId,
                                event.cycle}),
              std::vector<int>({-1, -1, -1, -1, -1}));
    EXPECT_EQ(event.description, "");
    EXPECT_EQ(event.deviceName, "");
}

TEST_P(BadInputTest, EmptyTextsReachTheServicesEmpty) { SendTextEverywhere(u"", "", ""); }

TEST_P(BadInputTest, AMillionCharacterTextReachesTheServicesWhole) {
    std::u16string text(1 << 20, u'x');
    text += u"<end>";
    const std::string bytes(text.begin(), text.end());
    SendTextEverywhere(text, bytes, bytes);
}

// Characters outside ASCII arrive in the Java VM's modified UTF-8: a character beyond the
// Basic Multilingual Plane as its two surrogates (three bytes each), and U+0000 as the two
// bytes C0 80, so that the text has no zero byte in it. The vibrator's UTF-16 carries the
// same characters.
TEST_P(BadInputTest, NonAsciiTextsArriveAsTheJavaVmEncodesThem) {
    SendTextEverywhere(u"Gr\u00fc\u00dfe \u65e5\u672c \U0001F600",
                       "Gr\xC3\xBC\xC3\x9F"
                       "e \xE6\x97\xA5\xE6\x9C\xAC \xED\xA0\xBD\xED\xB8\x80",
                       "Gr\xC3\xBC\xC3\x9F"
                       "e \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80");
}

TEST_P(BadInputTest, AnEmbeddedZeroCharacterDoesNotCutTheText) {
    const std::u16string text(u"ab\0cd", 5);
    SendTextEverywhere(text,
                       "ab\xC0\x80"
                       "cd",
                       std::string("ab\0cd", 5));
}

TEST_P(BadInputTest, SignatureArraysEmptyAndVeryLong) {
    Mark();
    EXPECT_EQ(Int("getVerifySignatureResultNative", "([B)I", Bytes({})), -1);
    // The hexadecimal conversion's own line, then the operation's.
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({Prefixed("ConvertBinToString fail, parameter is invalid, numLen: 0, strLen: 0"),
                      By("GetVerifySignatureResult", ", convertBinToString fail")}));
    EXPECT_TRUE(handset().factory().calls().empty());

    std::vector<uint8_t> bytes(1 << 20);
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 7);
    std::string hex;
    hex.reserve(bytes.size() * 2);
    for (uint8_t b : bytes) {
        hex += "0123456789abcdef"[b >> 4];
        hex += "0123456789abcdef"[b & 0x0f];
    }
    EXPECT_EQ(Int("getVerifySignatureResultNative", "([B)I", Bytes(bytes)), 17);
    const Rows calls = CallsTo(handset().factory(), "setDeviceInfo");
    ASSERT_EQ(calls.size(), 1u);
    ASSERT_EQ(calls[0].size(), 3u);
    EXPECT_EQ(calls[0][1], "11");
    EXPECT_EQ(calls[0][2].size(), hex.size());
    EXPECT_TRUE(calls[0][2] == hex) << "the signature text differs from the bytes' hexadecimal form";
}

// Every int argument of every method at INT_MIN, INT_MAX, -1 and 0: the services receive the
// values unchanged (the test cycle's fields are cut to two characters each, by
// design), and the answers are the services'.
TEST_P(BadInputTest, ExtremeIntegersPassThroughUnchanged) {
    auto text = [](jint v) { return std::to_string(v); };
    // The calls of one service method, each as its arguments.
    auto args = [](const auto& family, const char* method) {
        Rows rows;
        for (const mmisim::Call& call : family.callsTo(method)) rows.push_back(call.args);
        return rows;
    };
    for (jint v : kExtremes) {
        SCOPED_TRACE(v);
        ClearCalls();
        const std::string t = text(v);
        // Factory.
        EXPECT_EQ(Int("setMmiResultNative", "(II)I", v, v), 0);
        EXPECT_EQ(args(handset().factory(), "setMmiTestResult"), (Rows{{t, t}}));
        EXPECT_EQ(Int("getMmiDeviceFeaturesCheckResultNative", "(I)I", v), 0);
        EXPECT_EQ(args(handset().factory(), "getMmiDeviceFeaturesCheckResult"), (Rows{{t}}));
        EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", v), "");
        EXPECT_EQ(args(handset().factory(), "getManufactureStationFlag"), (Rows{{t}}));
        EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", v, v, v), "");
        EXPECT_EQ(args(handset().factory(), "getOeminfo"), (Rows{{t, t, t}}));
        EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", v), v == 0 ? "ZT26A0012345" : "");
        EXPECT_EQ(args(handset().factory(), "getDeviceInfo"), (Rows{{t}}));
        EXPECT_EQ(Int("setTestCycleNative", "(II)I", v, v), 0);
        // "%02d" cut to two characters: INT_MIN gives "-2", INT_MAX "21".
        const std::string field = t.size() < 2 ? "0" + t : t.substr(0, 2);
        EXPECT_EQ(args(handset().factory(), "setCommandData"), (Rows{{"143", "64", field + field}}));
        // Fingerprint, touch screen.
        EXPECT_EQ(Int("sendCmdToFingerprintHalNative", "(I)I", v), 0);
        EXPECT_EQ(args(handset().fingerprint(), "sendCmdToHal"), (Rows{{t}}));
        EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", v), "calibrated");
        EXPECT_EQ(args(handset().touchScreen(), "getCapacitanceCalibrateResult"), (Rows{{t}}));
        EXPECT_EQ(Int("setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I", v, J("cfg")), 71);
        EXPECT_EQ(args(handset().touchScreen(), "setTouchScreenFeatureConfig"), (Rows{{t, "cfg"}}));
        // Sensors.
        EXPECT_EQ(Int("getSensorCalibrateDelayTimeNative", "(I)I", v), 3000);
        EXPECT_EQ(Int("getSensorSelfTestDelayTimeNative", "(I)I", v), 2000);
        EXPECT_EQ(Int("getSensorCalibrateResultNative", "(I)I", v), 0);
        EXPECT_EQ(Int("getSensorSelfTestResultNative", "(I)I", v), 0);
        EXPECT_EQ(Int("startSensorCalibrateNative", "(II)I", v, v), 0);
        EXPECT_EQ(Int("startSensorSelfTestNative", "(II)I", v, v), 0);
        EXPECT_EQ(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", v), "factory");
        for (const char* method :
             {"getCalibrateDelayTime", "getSelfTestDelayTime", "getCalibrateResult", "getSelfTestResult"}) {
            EXPECT_EQ(args(handset().sensors(), method), (Rows{{t}})) << method;
        }
        EXPECT_EQ(args(handset().sensors(), "startCalibrate"), (Rows{{t, t}}));
        EXPECT_EQ(args(handset().sensors(), "startSelfTest"), (Rows{{t, t}}));
        EXPECT_EQ(args(handset().sensors(), "getCalibrateType"), (Rows{{t, "1024"}}));
        // The rate keeps its sign when widened to 64 bits.
        EXPECT_TRUE(Bool("sensorActivateNative", "(IZI)Z", v, JNI_TRUE, v));
        EXPECT_EQ(args(handset().sensors(), "activateSensor"), (Rows{{t, "true", t}}));
        // No data for these sensor ids: -1, null, an empty array.
        EXPECT_EQ(Int("getFlickerFrequencyNative", "(I)I", v), -1);
        EXPECT_EQ(Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", v), std::nullopt);
        EXPECT_EQ(Ints("getColorSensorNative", "(I)[I", v), std::vector<int>{});
        EXPECT_EQ(Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", v, v, v, v), "");
        EXPECT_EQ(Ints("getAmbientLightParameterNative", "(IIII)[I", v, v, v, v), std::vector<int>{});
        EXPECT_EQ(Int("setAmbientLightParameterNative", "(IIII)I", v, v, v, v), 0);
        // Over AIDL the last recorded value is the size the reply was given (64, 4096, 64).
        EXPECT_EQ(args(handset().sensors(), "processSensorParameter"),
                  (aidl() ? Rows{{t, t, t, t, "64"}, {t, t, t, t, "4096"}, {t, t, t, t, "64"}}
                          : Rows{{t, t, t, t}, {t, t, t, t}, {t, t, t, t}}));
        // Light and display.
        EXPECT_EQ(Int("setLightBrightnessNative", "(II)I", v, v), 0);
        EXPECT_EQ(args(handset().light(), "setLightBrightness"), (Rows{{t, t}}));
        EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", v), 0);
        if (aidl()) {
            EXPECT_EQ(args(handset().display(), "setBackLightBrightness"), (Rows{{t}}));
        } else {
            EXPECT_EQ(args(handset().light(), "setLightBrightness"), (Rows{{t, t}, {"1", t}}));
        }
        EXPECT_EQ(Str("getScreenConfigNative", "(I)Ljava/lang/String;", v), "1080x2400@60");
        EXPECT_EQ(args(handset().display(), aidl() ? "getScreenConfig" : "selectScreenConfigStation"), (Rows{{t}}));
        EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", v, v, J("d")), 0);
        EXPECT_EQ(args(handset().display(), "setDisplayParameter"), (Rows{{t, t, "d"}}));
        EXPECT_EQ(Int("setDisplaySelfAdaptMinFpsNative", "(I)I", v), 0);
        EXPECT_EQ(args(handset().display(), "setDisplaySelfAdaptMinFps"), (Rows{{t}}));
        // Camera: no capability names these types; registration passes the type through.
        EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", v), -1);
        EXPECT_EQ(Int("registerClientNative", "(I)I", v), aidl() ? 0 : -1);
        EXPECT_EQ(args(handset().vaelon(), "registerClient"), (aidl() ? Rows{{t, "0"}} : Rows{}));
        // No vendor library on this handset: the fallback.
        EXPECT_EQ(Int("setVideoInterpolationModelNative", "(II)I", v, v), -1);
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, BadInputTest, ::testing::Values(kAidlDevices, kHidlDevices), DeviceBackendName);

// Without any service the handle is looked at first: the missing service's line is the one
// ERROR line and the argument is never read, except by the NM-card mode, which takes the
// text before it looks at the service, and so reports the null argument.
class BadInputWithoutServicesTest : public MmiTest {};

TEST_F(BadInputWithoutServicesTest, NullArgumentsMeetTheMissingServiceFirst) {
    Boot(mmisim::DeviceProfile::Bare());
    const jstring none = nullptr;
    EXPECT_EQ(Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", none, none), -1);
    EXPECT_EQ(LinesWithPriority(kError), Errors({Prefixed("SetPowerState by hidl fail, g_hwPower is null")}));
    Mark();
    EXPECT_EQ(Int("getVerifySignatureResultNative", "([B)I", static_cast<jbyteArray>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({Prefixed("GetVerifySignatureResult by hidl fail, g_hwFactoryInterface is null")}));
    Mark();
    EXPECT_EQ(Int("setMockCardTestModeNative", "(Ljava/lang/String;)I", none), -1);
    EXPECT_EQ(LinesWithPriority(kError), Errors({Prefixed("SetNmCardTestMode by hidl fail, mode is null")}));
}

}  // namespace
}  // namespace mmitest
