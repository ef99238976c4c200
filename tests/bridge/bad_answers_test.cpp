// Bad answers from the services: texts with zero bytes in them, texts and vectors of a
// million elements, empty vectors and lists, and HIDL services that return without ever
// calling their result callback. The library answers as designed: a text becomes a Java
// string up to its first zero byte (NewStringUTF of the C text), every element of a long
// answer arrives, an empty answer gives the operation's fallback, and a callback that never
// comes leaves the operation's presets.
#include <string>
#include <vector>

#include "device_support.h"

namespace mmitest {
namespace {

using mmisim::Family;

const std::string kZeroText("AB\0CD", 5);

std::string Million(char c) { return std::string(1 << 20, c) + "<end>"; }

class BadAnswersTest : public DeviceBackendCase {
protected:
    bool aidl() const { return GetParam().aidl(); }
};

// Over both generations a service text with a zero byte reaches Java cut at that byte.
TEST_P(BadAnswersTest, ServiceTextsEndAtTheirFirstZeroByte) {
    handset().factory().update([](mmisim::FactoryAnswers& a) {
        a.manufactureFileName = {0, kZeroText};
        a.deviceInfo = {{0, {0, kZeroText}},  {5, {0, kZeroText}},  {14, {0, kZeroText}},
                        {35, {0, kZeroText}}, {44, {0, kZeroText}}, {77, {0, kZeroText}}};
        a.stationFlags = {{1, {0, kZeroText}}};
        a.oeminfo = std::string("A\0B", 3);
    });
    handset().display().update([](mmisim::DisplayAnswers& a) {
        a.screenCurrentFps = {0, kZeroText};
        a.screenConfig = {0, kZeroText};
    });
    handset().touchScreen().update([](mmisim::TouchScreenAnswers& a) {
        a.capacitanceTest = {2, kZeroText};
        a.capacitanceCalibrate = {0, kZeroText};
        a.rotateCrown = {0, kZeroText};
    });
    handset().sensors().update([](mmisim::SensorAnswers& a) {
        a.calibrateType = {0, kZeroText};
        a.parameter = {0, kZeroText, {1}, false};
    });
    handset().power().update([](mmisim::PowerAnswers& a) { a.powerState = {0, kZeroText}; });

    EXPECT_EQ(Str("getManufactureFileNameNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getMmiAutoStartFlagNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getMockCardTestResultNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getTestApkPackageNameNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getRsaSignInfoNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", 77), "AB");
    EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", 1), "AB");
    // An OEM-info record holding 0x41 0x00 0x42 gives "A".
    EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), "A");
    EXPECT_EQ(Str("getScreenCurrentFpsNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getScreenConfigNative", "(I)Ljava/lang/String;", 1), "AB");
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), 2);
    EXPECT_EQ(CapacitanceFailInfo(mEnv), "AB");
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", 1), "AB");
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), "AB");
    EXPECT_EQ(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 1), "AB");
    EXPECT_EQ(Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", 1, 2, 3, 4), "AB");
    EXPECT_EQ(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J("key")), "AB");
    // The log lines end there too.
    EXPECT_TRUE(Has(kInfo, By("GetSensorCalibrateType", ", resultCode: 0, calibType: AB")));
}

// The vibrator's answer travels as UTF-16 and reaches Java as the same characters, U+0000
// included (a Java string can hold it; the harness reads it back in modified UTF-8).
class VibratorAnswerTest : public MmiTest {};

TEST_F(VibratorAnswerTest, ATextWithAZeroCharacterArrivesWhole) {
    Boot(mmisim::DeviceProfile::AllAidl());
    handset().vibrator().update([](mmisim::VibratorAnswers& a) { a.result = kZeroText; });
    EXPECT_EQ(Str("getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", J("f0")),
              "AB\xC0\x80"
              "CD");
}

TEST_P(BadAnswersTest, MillionElementTextsAndVectorsArriveWhole) {
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
    handset().sensors().update([](mmisim::SensorAnswers& a) {
        a.sensorData[5] = {0, {}};
        a.sensorData[6] = {0, {}};
        a.flickerSupported = true;
        a.parameter = {0, "", {}, false};
    });
    handset().factory().update([](mmisim::FactoryAnswers& a) { a.oeminfo.clear(); });
    EXPECT_EQ(Ints("getColorSensorNative", "(I)[I", 6), std::vector<int>{});
    EXPECT_EQ(Ints("getAmbientLightParameterNative", "(IIII)[I", 1, 2, 3, 4), std::vector<int>{});
    EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), "");
    Mark();
    EXPECT_EQ(Int("getFlickerFrequencyNative", "(I)I", 5), -1);
    if (aidl()) {
        EXPECT_TRUE(Has(kError, By("GetFlickerFrequency", " fail, get result fail, result: 0")));
        EXPECT_EQ(Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", 5), std::nullopt);
    } else {
        EXPECT_TRUE(Has(kError, By("GetFlickerFrequency", " fail, result data is illegal")));
    }
    // Raw samples one short of the 256 the detector needs.
    handset().sensors().update([](mmisim::SensorAnswers& a) {
        a.sensorData[5] = {0, std::vector<int32_t>(255, 1000)};
        a.flickerSupported = false;
    });
    Mark();
    EXPECT_EQ(Int("getFlickerFrequencyNative", "(I)I", 5), aidl() ? 1000 : -1);
    if (!aidl()) {
        EXPECT_TRUE(Has(kError, By("GetFlickerFrequency", " fail, original data is illegal")));
    }
}

INSTANTIATE_TEST_SUITE_P(Backends, BadAnswersTest, ::testing::Values(kAidlDevices, kHidlDevices), DeviceBackendName);

class BadCameraAnswersTest : public MmiTest {};

TEST_F(BadCameraAnswersTest, EmptyAndVeryLongCapabilityLists) {
    Boot(mmisim::DeviceProfile::AllAidl());
    handset().vaelon().update([](mmisim::VaelonAnswers& a) { a.capabilities.clear(); });
    EXPECT_EQ(Ints("getCapabilitiesNative", "()[I"), std::nullopt);
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 1), -1);

    // Types 0-6 in turn; every third record names no overtime.
    std::vector<mmisim::Capability> many;
    std::vector<int> types;
    int lastOvertimeOfType4 = -1;
    for (int i = 0; i < 100000; ++i) {
        const bool named = i % 3 != 0;
        many.push_back({i % 7, named ? std::vector<int32_t>{i, 1} : std::vector<int32_t>{}});
        types.push_back(i % 7);
        if (i % 7 == 4 && named) lastOvertimeOfType4 = i;
    }
    handset().vaelon().update([&](mmisim::VaelonAnswers& a) { a.capabilities = many; });
    EXPECT_TRUE(Ints("getCapabilitiesNative", "()[I") == types);
    // The first overtime of the last record of the type that names one.
    EXPECT_EQ(Int("getVaelonOvertimeNative", "(I)I", 4), lastOvertimeOfType4);
}

TEST_F(BadCameraAnswersTest, AmplitudeFromAOneElementAnswer) {
    Boot(mmisim::DeviceProfile::AllAidl());
    handset().sensors().update([](mmisim::SensorAnswers& a) { a.sensorData[5] = {0, {88}}; });
    EXPECT_EQ(Ints("getFlickerFrequencyAndAmplitudeNative", "(I)[I", 5), (std::vector<int>{88, -1}));
}

// A HIDL service that returns from a call without ever calling its result callback: every
// operation answers with the presets it set before the call.
class SilentHidlServicesTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        Boot(mmisim::DeviceProfile::AllHidl());
        mmisim::ServiceFaults silent;
        silent.skipCallbacks = true;
        for (mmisim::Family family : mmisim::kAllFamilies) handset().setFaults(family, silent);
        handset().sensors().update([](mmisim::SensorAnswers& a) { a.sensorData[5] = {0, {120}}; });
        SetCapacitanceFailInfo(mEnv, "before");
        Mark();
    }
};

TEST_F(SilentHidlServicesTest, FactoryTextsKeepTheirPresets) {
    EXPECT_EQ(Str("getManufactureFileNameNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(Str("getBsnNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(Str("getTestApkPackageNameNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(Str("getManufactureStationFlagNative", "(I)Ljava/lang/String;", 1), "");
    EXPECT_EQ(Str("getMockCardTestResultNative", "()Ljava/lang/String;"), "");
    // The flag's status stays -1: the fallback text.
    EXPECT_EQ(Str("getMmiAutoStartFlagNative", "()Ljava/lang/String;"), "Error");
    EXPECT_EQ(Str("getOeminfoNative", "(III)Ljava/lang/String;", 1, 2, 3), "");
    // The device-info items start from status 0: only the log shows it.
    EXPECT_EQ(Str("getRsaSignInfoNative", "()Ljava/lang/String;"), "");
    EXPECT_EQ(Str("getDeviceInfoNative", "(I)Ljava/lang/String;", 77), "");
    EXPECT_TRUE(Has(kInfo, Prefixed("GetManufactureFileName by hidl, ret: -1, fileName: ")));
    EXPECT_TRUE(Has(kInfo, Prefixed("GetBsn by hidl, ret: -1")));
    EXPECT_TRUE(Has(kError, Prefixed("GetMmiAutoStartFlag by hidl failed")));
    EXPECT_TRUE(Has(kError, Prefixed("GetOeminfo by hidl fail, read failed result: -1 ")));
    EXPECT_TRUE(Has(kInfo, "GetRsaSignInfo by hidl, ret = 0"));
    EXPECT_TRUE(Has(kInfo, "GetDeviceInfo by hidl, ret = 0"));
    // Operations whose result is the call's own value still answer.
    EXPECT_TRUE(Bool("isFactoryVersionNative", "()Z"));
    EXPECT_EQ(Int("getManufactureModeNative", "()I"), 1);
}

TEST_F(SilentHidlServicesTest, DisplayAndTouchKeepTheirPresets) {
    EXPECT_EQ(Str("getScreenCurrentFpsNative", "()Ljava/lang/String;"), "");
    EXPECT_TRUE(Has(kInfo, Prefixed("GetScreenCurrentFps by hidl, ret: -2, screenConfig: ")));
    // The station call's status stands when the configuration answer never comes.
    EXPECT_EQ(Str("getScreenConfigNative", "(I)Ljava/lang/String;", 1), "");
    EXPECT_TRUE(Has(kInfo, Prefixed("GetScreenConfig by hidl, station: 1, ret: 0, screenConfig: ")));
    EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 1, 2, J("d")), -1);
    // The preset panel type 0 when the service never calls back.
    EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), 0);
    EXPECT_TRUE(Has(kInfo, Prefixed("GetDisplayPanelType by hidl, result: -2, panelType: 0")));

    // Status -1 means the service never called back; the field gets the empty text.
    EXPECT_EQ(Int("getCapacitanceTestResultNative", "()I"), -1);
    EXPECT_EQ(CapacitanceFailInfo(mEnv), "");
    EXPECT_EQ(Str("getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", 1), "Capacitance Calibrate Failed");
    EXPECT_EQ(Str("getRotaryCrownSelfTestNative", "()Ljava/lang/String;"), "error");
}

TEST_F(SilentHidlServicesTest, SensorsAndPowerKeepTheirPresets) {
    EXPECT_EQ(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 1), "");
    EXPECT_TRUE(Has(kInfo, Prefixed("GetSensorCalibrateType by hidl, resultCode: -1, calibType: ")));
    EXPECT_EQ(Int("getFlickerFrequencyNative", "(I)I", 5), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetFlickerFrequency by hidl fail, result fail")));
    EXPECT_EQ(Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", 1, 2, 3, 4), "");
    EXPECT_EQ(Ints("getAmbientLightParameterNative", "(IIII)[I", 1, 2, 3, 4), std::vector<int>{});
    EXPECT_EQ(Int("setAmbientLightParameterNative", "(IIII)I", 1, 2, 3, 4), -1);
    EXPECT_EQ(Ints("getColorSensorNative", "(I)[I", 6), std::vector<int>{});
    EXPECT_EQ(Str("getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", J("key")), "");
    EXPECT_TRUE(Has(kInfo, Prefixed("GetPowerState by hidl, result code: -1, result info: ")));
    EXPECT_EQ(Int("checkUsbSpeedNative", "(Ljava/lang/String;)I", J("usb")), -1);
    // Calls that return their value directly still answer.
    EXPECT_EQ(Int("getSensorCalibrateDelayTimeNative", "(I)I", 1), 3000);
    EXPECT_EQ(Int("setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", J("s"), J("p")), 0);
}

}  // namespace
}  // namespace mmitest
