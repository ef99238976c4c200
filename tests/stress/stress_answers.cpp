#include "stress_answers.h"

#include <sim/light_source.h>

namespace mmistress {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;

const std::vector<std::string> kMethodNames = {
        "isFactoryVersionNative", "getManufactureFileNameNative", "releaseFactoryHidlResourceNative",
        "setMmiResultNative", "sendCmdToFingerprintHalNative", "getCapacitanceTestResultNative",
        "getCapacitanceCalibrateResultNative", "getSensorCalibrateDelayTimeNative",
        "getSensorSelfTestDelayTimeNative", "startSensorCalibrateNative", "startSensorSelfTestNative",
        "getSensorCalibrateResultNative", "getSensorSelfTestResultNative", "setLightBrightnessNative",
        "getBsnNative", "getTestApkPackageNameNative", "getPowerStateNative", "getSensorCalibrateTypeNative",
        "sendBigDataOperationNative", "sendBigDataValueNative", "checkUsbSpeedNative",
        "getMmiAutoStartFlagNative", "disableMmiAutoStartNative", "getCompassRawValueLimitNative",
        "getManufactureStationFlagNative", "setTestCycleNative", "getManufactureModeNative",
        "setPowerStateNative", "setVibratorParameterNative", "getVibratorCalibrateResultNative",
        "getMmiDeviceFeaturesCheckResultNative", "getOeminfoNative", "sensorActivateNative",
        "getFlickerFrequencyNative", "handleSensorParameterNative", "getAmbientLightParameterNative",
        "setAmbientLightParameterNative", "setTouchScreenFeatureConfigNative", "getScreenCurrentFpsNative",
        "getScreenConfigNative", "setDisplayParameterNative", "getVerifySignatureResultNative",
        "setMockCardTestModeNative", "getMockCardTestResultNative", "getRotaryCrownSelfTestNative",
        "getVideoInterpolationDefaultModelNative", "getVideoInterpolationModelNative",
        "setVideoInterpolationModelNative", "recoverInperpolateFreshRateNative", "getColorSensorNative",
        "getDeviceInfoNative", "nativeClearPackageName", "setBackLightBrightnessNative",
        "nativeGetDisplayPanelType", "getRsaSignInfoNative", "setDisplaySelfAdaptMinFpsNative",
        "getFlickerFrequencyAndAmplitudeNative", "getCapabilitiesNative", "getVaelonOvertimeNative",
        "registerClientNative", "unregisterClientNative"};

const char* const kCapacitanceFailInfo = "cap-stress-info";

namespace {

constexpr const char* kCalibrateFailed = "Capacitance Calibrate Failed";
// The simulated panel library's own answers (it is not scripted: a test holding it open
// would keep it mapped across the library's close).
constexpr const char* kPanelModes = "0:off;1:24to60;2:30to120";

std::string I(int value) { return std::to_string(value); }

const std::vector<int32_t> kAidlFlicker = {123, 456};
const std::vector<int32_t> kColourValues = {700, 760, 600, 2050};

// The answers of one operation: as the AIDL service gives it and what else it may give while
// that service dies under the call or its handle is being cleared; the same over HIDL; and
// the answer with no service at all (the HIDL backend's null path, or the dispatcher's).
struct Ways {
    std::string aidl;
    std::set<std::string> aidlFaults;
    std::string hidl;
    std::set<std::string> hidlFaults;
    std::string none;
};

Expectation For(Transport transport, const Ways& ways) {
    Expectation e;
    switch (transport) {
        case Transport::kAidl:
            e = {ways.aidl, ways.aidlFaults};
            break;
        case Transport::kHidl:
            e = {ways.hidl, ways.hidlFaults};
            break;
        case Transport::kNone:
            return {ways.none, {}};
    }
    // A served family's handle is null between a death and the reconnection.
    e.others.insert(ways.none);
    e.others.erase(e.served);
    return e;
}

}  // namespace

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

DeviceProfile MixedProfile() {
    DeviceProfile profile = DeviceProfile::AllAidl();
    profile.name = "mixed";
    for (Family family : {Family::kDisplay, Family::kTouchScreen, Family::kSensors, Family::kLight}) {
        profile[family].transport = Transport::kHidl;
    }
    profile[Family::kDisplay].hidlMinor = 4;
    profile[Family::kSensors].hidlMinor = 1;
    return profile;
}

void ScriptAnswers(mmisim::Handset& handset, const DeviceProfile& profile) {
    handset.factory().update([](mmisim::FactoryAnswers& a) {
        a.keepReceivedRecords = false;
        a.factoryVersion = true;
        a.manufactureFileName = {0, "mfn-stress.xml"};
        a.deviceInfo = {{0, {0, "BSN-STRESS-0001"}},    {5, {0, "autostart-stress"}}, {14, {0, "nmcard-stress"}},
                        {35, {0, "com.corvex.stress"}}, {44, {0, "rsa-stress"}},      {77, {0, "device-77"}}};
        a.setDeviceInfoResult = 17;
        a.manufactureMode = 23;
        a.featuresCheckResult = 29;
        a.clearDeviceInfoResult = 31;
        a.releaseFactoryResourceResult = 37;
        a.mmiTestResultResult = 41;
        a.stationFlags = {{3, {0, "station3-stress"}}};
        a.commandDataResult = 43;
        a.fmdCmdDataResult = 47;
        a.fmdMessageResult = 53;
        a.oeminfoRet = 0;
        a.oeminfo = "OEM-STRESS";
    });
    handset.display().update([](mmisim::DisplayAnswers& a) {
        a.screenCurrentFps = {0, "fps-stress"};
        a.selectStationResult = 0;
        a.screenConfig = {0, "cfg-stress"};
        a.displayParameter = {0, "param-stress"};
        a.backLightResult = 59;
        a.panelTypeRet = 0;
        a.panelType = 6;
        a.selfAdaptMinFpsResult = 67;
    });
    handset.touchScreen().update([](mmisim::TouchScreenAnswers& a) {
        a.capacitanceTest = {3, kCapacitanceFailInfo};
        a.capacitanceCalibrate = {0, "cal-stress"};
        a.rotateCrown = {0, "crown-stress"};
        a.featureConfigResult = 71;
    });
    handset.fingerprint().update([](mmisim::FingerprintAnswers& a) { a.cmdResult = 73; });
    const bool aidlSensors = profile[Family::kSensors].transport == Transport::kAidl;
    handset.sensors().update([aidlSensors](mmisim::SensorAnswers& a) {
        a.startCalibrateResult = 79;
        a.startSelfTestResult = 83;
        a.calibrateDelayTime = 3001;
        a.selfTestDelayTime = 2003;
        a.calibrateResult = 89;
        a.selfTestResult = 97;
        a.calibrateType = {0, "calib-stress"};
        // Over AIDL the service reports the frequency itself; over HIDL it hands over raw
        // samples and the library runs its detector on them.
        a.flickerSupported = false;
        a.sensorData[kFlickerSensorId] =
                aidlSensors ? mmisim::DataReply{0, kAidlFlicker}
                            : mmisim::DataReply{0, mmisim::LightSourceSamples({kFlickerLightHz, 2500, 5000, 40, 7})};
        a.sensorData[6] = {0, kColourValues};
        a.parameter = {101, "para-stress", {11, 22, 33}, false};
        a.activateResult = 0;
        a.compassRawValueLimit = 1201;
    });
    handset.power().update([](mmisim::PowerAnswers& a) {
        a.setPowerStateResult = 103;
        a.powerState = {0, "power-stress"};
        a.usbSpeed = {107, "usb-stress"};
    });
    handset.light().update([](mmisim::LightAnswers& a) { a.brightnessResult = 61; });
    handset.vaelon().update([](mmisim::VaelonAnswers& a) {
        a.capabilities = {{1, {30}}, {2, {60}}};
        a.registerResult = 0;
        a.clientHandle = 7;
        a.unregisterResult = 0;
    });
    handset.vibrator().update([](mmisim::VibratorAnswers& a) { a.result = "vib-stress"; });

    handset.factory().setRecordCalls(false);
    handset.display().setRecordCalls(false);
    handset.touchScreen().setRecordCalls(false);
    handset.fingerprint().setRecordCalls(false);
    handset.sensors().setRecordCalls(false);
    handset.power().setRecordCalls(false);
    handset.light().setRecordCalls(false);
    handset.vaelon().setRecordCalls(false);
    handset.vibrator().setRecordCalls(false);
}

bool IsPanelMethod(int method) {
    return method >= kGetVideoInterpolationDefaultModel && method <= kRecoverInperpolateFreshRate;
}

std::string PanelFallback(int method) { return method == kGetVideoInterpolationModel ? Quoted("") : "-1"; }

std::vector<Expectation> ExpectedAnswers(const DeviceProfile& p, int hidlFlickerHz) {
    auto transport = [&p](Family family) { return p[family].transport; };
    auto minor = [&p](Family family, int newest) { return p[family].hidlMinor < 0 ? newest : p[family].hidlMinor; };
    const int factoryMinor = minor(Family::kFactory, 1);
    const int displayMinor = minor(Family::kDisplay, 5);
    const int sensorsMinor = minor(Family::kSensors, 2);
    const bool sensorsV1 = p[Family::kSensors].sensorsV1;
    const bool sensorsV2 = p[Family::kSensors].sensorsV2;
    // The parameter channel: the generic command from sensors 1.1 on, the ambient-light
    // commands from 1.2 on; the 2.0 service takes both.
    const bool hidlParameter = (sensorsV1 && sensorsMinor >= 1) || sensorsV2;
    const bool hidlAmbient = (sensorsV1 && sensorsMinor >= 2) || sensorsV2;

    const std::string kFail = "-1";
    const std::string kEmpty = Quoted("");
    auto number = [&](Family family, int value) {
        return For(transport(family), {I(value), {kFail}, I(value), {kFail}, kFail});
    };
    auto text = [&](Family family, const std::string& value) {
        return For(transport(family), {Quoted(value), {kEmpty}, Quoted(value), {kEmpty}, kEmpty});
    };
    // Factory operations that only the 1.1 HIDL service offers.
    auto factoryV11 = [&](int value) {
        return For(transport(Family::kFactory),
                   {I(value), {kFail}, factoryMinor >= 1 ? I(value) : kFail, {kFail}, kFail});
    };
    auto displayText = [&](const std::string& value) {
        return For(transport(Family::kDisplay),
                   {Quoted(value), {kEmpty}, displayMinor >= 1 ? Quoted(value) : kEmpty, {kEmpty}, kEmpty});
    };
    const std::string ambient = "[11,22,33]";
    std::string colour = "[";
    for (size_t i = 0; i < kColourValues.size(); ++i) colour += (i > 0 ? "," : "") + I(kColourValues[i]);
    colour += "]";

    std::vector<Expectation> e(kMethodNames.size());
    e[0] = For(transport(Family::kFactory), {"true", {"false"}, "true", {"false"}, "false"});
    e[1] = text(Family::kFactory, "mfn-stress.xml");
    e[2] = number(Family::kFactory, 37);
    e[3] = number(Family::kFactory, 41);
    e[4] = number(Family::kFingerprint, 73);
    // A failed AIDL transaction leaves the fresh record's status 0; HIDL keeps the preset -1.
    e[5] = For(transport(Family::kTouchScreen), {"3", {"0", kFail}, "3", {kFail}, kFail});
    e[6] = For(transport(Family::kTouchScreen), {Quoted("cal-stress"),
                                                 {kEmpty},
                                                 Quoted("cal-stress"),
                                                 {Quoted(kCalibrateFailed)},
                                                 Quoted(kCalibrateFailed)});
    e[7] = number(Family::kSensors, 3001);
    e[8] = number(Family::kSensors, 2003);
    e[9] = number(Family::kSensors, 79);
    e[10] = number(Family::kSensors, 83);
    e[11] = number(Family::kSensors, 89);
    e[12] = number(Family::kSensors, 97);
    e[13] = number(Family::kLight, 61);
    e[14] = text(Family::kFactory, "BSN-STRESS-0001");
    e[15] = text(Family::kFactory, "com.corvex.stress");
    e[16] = text(Family::kPower, "power-stress");
    e[17] = text(Family::kSensors, "calib-stress");
    e[18] = number(Family::kFactory, 47);
    e[19] = number(Family::kFactory, 53);
    // AIDL: a power-state request; HIDL: the USB operation of its own.
    e[20] = For(transport(Family::kPower), {"103", {kFail}, "107", {kFail}, kFail});
    e[21] = For(transport(Family::kFactory),
                {Quoted("autostart-stress"), {kEmpty}, Quoted("autostart-stress"), {Quoted("Error")}, kEmpty});
    e[22] = number(Family::kFactory, 17);
    e[23] = number(Family::kSensors, 1201);
    e[24] = text(Family::kFactory, "station3-stress");
    e[25] = factoryV11(43);
    e[26] = factoryV11(23);
    e[27] = number(Family::kPower, 103);
    e[28] = {"void", {}};
    e[29] = For(transport(Family::kVibrator), {Quoted("vib-stress"), {kEmpty}, kEmpty, {}, kEmpty});
    e[30] = number(Family::kFactory, 29);
    e[31] = For(transport(Family::kFactory),
                {Quoted("OEM-STRESS"), {kEmpty}, factoryMinor >= 1 ? Quoted("OEM-STRESS") : kEmpty, {kEmpty}, kEmpty});
    e[32] = For(transport(Family::kSensors), {"true", {"false"}, "true", {"false"}, "false"});
    e[33] = For(transport(Family::kSensors), {"123", {kFail}, I(hidlFlickerHz), {kFail}, kFail});
    e[34] = For(transport(Family::kSensors),
                {Quoted("para-stress"), {kEmpty}, hidlParameter ? Quoted("para-stress") : kEmpty, {kEmpty}, kEmpty});
    // A failed AIDL transaction leaves the 4096 ints the reply was pre-sized with; a HIDL
    // callback that never ran leaves none.
    e[35] = For(transport(Family::kSensors),
                {ambient, {"[4096 x 0]", "null"}, hidlAmbient ? ambient : "null", {"[]", "null"}, "null"});
    e[36] = For(transport(Family::kSensors), {"101", {kFail}, hidlAmbient ? "101" : kFail, {kFail}, kFail});
    e[37] = number(Family::kTouchScreen, 71);
    e[38] = displayText("fps-stress");
    e[39] = displayText("cfg-stress");
    // AIDL: a failed transaction leaves status 0 (success); HIDL: the preset -2 gives -1.
    e[40] = For(transport(Family::kDisplay), {"0", {kFail}, displayMinor >= 5 ? "0" : kFail, {kFail}, kFail});
    e[41] = number(Family::kFactory, 17);
    e[42] = number(Family::kFactory, 17);
    e[43] = text(Family::kFactory, "nmcard-stress");
    e[44] = For(transport(Family::kTouchScreen),
                {Quoted("crown-stress"), {kEmpty}, Quoted("crown-stress"), {Quoted("error")}, kEmpty});
    e[45] = {"1", {kFail}};
    e[46] = {Quoted(kPanelModes), {kEmpty}};
    e[47] = {"0", {kFail}};
    e[48] = {"0", {kFail}};
    e[49] = For(transport(Family::kSensors), {colour, {"[]"}, sensorsV1 ? colour : "[]", {"[]"}, "[]"});
    e[50] = text(Family::kFactory, "device-77");
    e[51] = factoryV11(31);
    // The backlight follows the display family; without an AIDL display it is light 1 of the
    // HIDL light service.
    const bool hidlLight = transport(Family::kLight) == Transport::kHidl;
    if (transport(Family::kDisplay) == Transport::kAidl) {
        e[52] = {"59", {"-2", kFail}};
        if (hidlLight) e[52].others.insert("61");
    } else {
        e[52] = {hidlLight ? "61" : kFail, {kFail}};
        e[52].others.erase(e[52].served);
    }
    e[53] = For(transport(Family::kDisplay), {"6", {kFail}, "6", {"0"}, kFail});
    e[54] = text(Family::kFactory, "rsa-stress");
    e[55] = For(transport(Family::kDisplay),
                {"67", {"-2", kFail}, displayMinor >= 4 ? "67" : kFail, {"-2", kFail}, kFail});
    e[56] = For(transport(Family::kSensors) == Transport::kAidl ? Transport::kAidl : Transport::kNone,
                {"[123,456]", {"null"}, "", {}, "null"});
    e[57] = For(transport(Family::kVaelon), {"[1,2]", {"null"}, "", {}, "null"});
    e[58] = For(transport(Family::kVaelon), {"60", {kFail}, "", {}, kFail});
    e[59] = For(transport(Family::kVaelon), {"0", {kFail}, "", {}, kFail});
    e[60] = For(transport(Family::kVaelon), {"0", {kFail}, "", {}, kFail});
    return e;
}

}  // namespace mmistress
