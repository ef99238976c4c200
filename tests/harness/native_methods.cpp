#include "native_methods.h"

#include "mmi_fixture.h"

#include <sim/light_source.h>

#include <cstdlib>
#include <map>
#include <sstream>

namespace mmitest {

using mmisim::Family;

std::string operator""_p(const char* text, size_t length) {
    const bool error = length > 0 && text[0] == '!';
    return (error ? "!" : "") + std::string("ZtMmiTest_jni: ") + std::string(text + error, length - error);
}

namespace {

constexpr Family kFactory = Family::kFactory;
constexpr Family kDisplay = Family::kDisplay;
constexpr Family kTouch = Family::kTouchScreen;
constexpr Family kFingerprint = Family::kFingerprint;
constexpr Family kSensors = Family::kSensors;
constexpr Family kPower = Family::kPower;
constexpr Family kLight = Family::kLight;
constexpr Family kCamera = Family::kVaelon;
constexpr Family kVibrator = Family::kVibrator;
constexpr std::nullopt_t kPanel = std::nullopt;

const char* const kCalibrateFailed = "Capacitance Calibrate Failed";

std::vector<NativeMethod> Table() {
    return {
            {"isFactoryVersionNative", "()Z", "IsFactoryVersion", kFactory, "", "true", "false", "false", "false", false,
             {"IsFactoryVersion by aidl: 1"_p, "> isFactoryVersion()"}, {"="}},
            {"getManufactureFileNameNative", "()Ljava/lang/String;", "GetManufactureFileName", kFactory, "", "mfn.xml",
             "", "", "", true, {"GetManufactureFileName by aidl, ret: 0, fileName: mfn.xml"_p, "> getManufactureFileName()"},
             {"="}},
            {"releaseFactoryHidlResourceNative", "()I", "ReleaseFactoryHidlResource", kFactory, "", "37", "-1", "-1",
             "-1", false, {"ReleaseFactoryHidlResource by aidl, result: 37"_p, "> releaseFactoryResource()"}, {"="}},
            {"setMmiResultNative", "(II)I", "SetMmiTestResult", kFactory, "7,1", "41", "-1", "-1", "-1", false,
             {"SetMmiTestResult by aidl ret = 41"_p, "> setMmiTestResult(7,1)"}, {"="}},
            {"sendCmdToFingerprintHalNative", "(I)I", "SendCmdToFingerprintHal", kFingerprint, "12", "73", "-1", "-1",
             "-1", false, {"SetCmdToFingerprintHal by aidl, cmd = 12 ret = 73"_p, "> sendCmdToHal(12)"}, {"="},
             {{"!SetCmdToFingerprintHal by hidl fail, g_hwFingerprint is null"_p}}},
            // A failed AIDL transaction leaves the fresh record's status 0.
            {"getCapacitanceTestResultNative", "()I", "GetCapacitanceTestResult", kTouch, "", "3", "-1", "0", "-1", true,
             {"GetCapacitanceTestResult by aidl, ret: 3, info: cap-info"_p, "> getCapacitanceTestResult()"}, {"="}},
            {"getCapacitanceCalibrateResultNative", "(I)Ljava/lang/String;", "GetCapacitanceCalibrateResult", kTouch, "5",
             "cal-1", kCalibrateFailed, "", kCalibrateFailed, true,
             {"GetCapacitanceCalibrateResult by aidl, ret: 0, info: cal-1"_p, "> getCapacitanceCalibrateResult(5)"},
             {"="}},
            {"getSensorCalibrateDelayTimeNative", "(I)I", "GetSensorCalibrateDelayTime", kSensors, "2", "3001", "-1",
             "-1", "-1", false,
             {"GetSensorCalibrateDelayTime by aidl, g_aidlSensors sensorId: 2, delayTime: 3001"_p,
              "> getCalibrateDelayTime(2)"}, {"="}},
            {"getSensorSelfTestDelayTimeNative", "(I)I", "GetSensorSelfTestDelayTime", kSensors, "3", "2003", "-1", "-1",
             "-1", false,
             {"GetSensorSelfTestDelayTime by aidl, g_aidlSensors sensorId: 3, delayTime: 2003"_p,
              "> getSelfTestDelayTime(3)"}, {"="}},
            {"startSensorCalibrateNative", "(II)I", "StartSensorCalibrate", kSensors, "2,1", "79", "-1", "-1", "-1", false,
             {"StartSensorCalibrate by aidl, g_aidlSensors sensorId: 2, command: 1, result: 79"_p, "> startCalibrate(2,1)"},
             {"="}},
            {"startSensorSelfTestNative", "(II)I", "StartSensorSelfTest", kSensors, "3,4", "83", "-1", "-1", "-1", false,
             {"StartSensorSelfTest by aidl, g_aidlSensors sensorId: 3, command: 4, result: 83"_p, "> startSelfTest(3,4)"},
             {"="},
             {{"!StartSensorSelfTest fail by hidl, g_hwSensors and g_zentelSensors are null"_p}}},
            // Over HIDL this line ends in a newline.
            {"getSensorCalibrateResultNative", "(I)I", "GetSensorCalibrateResult", kSensors, "2", "89", "-1", "-1", "-1",
             false, {"GetSensorCalibrateResult by aidl, g_aidlSensors sensorId: 2, result: 89"_p, "> getCalibrateResult(2)"},
             {"GetSensorCalibrateResult by hidl, g_hwSensors sensorId: 2, result: 89\n"_p, "> getCalibrateResult(2)"}},
            {"getSensorSelfTestResultNative", "(I)I", "GetSensorSelfTestResult", kSensors, "3", "97", "-1", "-1", "-1",
             false, {"GetSensorSelfTestResult by aidl, g_aidlSensors sensorId: 3, result: 97"_p, "> getSelfTestResult(3)"},
             {"="}},
            {"setLightBrightnessNative", "(II)I", "SetLightBrightness", kLight, "2,128", "61", "-1", "-1", "-1", false,
             {"SetLightBrightness by aidl, Id: 2, brightness: 128, result: 61"_p, "> setLightBrightness(2,128)"},
             {"="}},
            // Item 0 of the device information, whatever its status; only AIDL logs it.
            {"getBsnNative", "()Ljava/lang/String;", "GetBsn", kFactory, "", "BSN-1", "", "", "", true,
             {"GetBsn by aidl, ret: 4, deviceInfo: BSN-1"_p, "> getDeviceInfo(0)"},
             {"GetBsn by hidl, ret: 4"_p, "> getDeviceInfo(0)"}},
            {"getTestApkPackageNameNative", "()Ljava/lang/String;", "GetTestApkPackageName", kFactory, "",
             "com.corvex.pkg", "", "", "", true,
             {"GetTestApkPackageName by aidl, ret: 0, name: com.corvex.pkg"_p, "> getDeviceInfo(35)"},
             {"GetTestApkPackageName by hidl, ret: 0"_p, "> getDeviceInfo(35)"}},
            // Over AIDL the caller's tag goes first.
            {"getPowerStateNative", "(Ljava/lang/String;)Ljava/lang/String;", "GetPowerState", kPower, "'battery'",
             "power-1", "", "", "", true,
             {"GetPowerState by aidl, result code: 0, result info: power-1"_p, "> getPowerState(ZtMmiTest_jni,battery)"},
             {"GetPowerState by hidl, result code: 0, result info: power-1"_p, "> getPowerState(battery)"},
             std::nullopt, "", {"key"}},
            {"getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", "GetSensorCalibrateType", kSensors, "2", "calib-1",
             "", "", "", true,
             {"GetSensorCalibrateType by aidl, resultCode: -4, calibType: calib-1"_p, "> getCalibrateType(2,1024)"},
             {"="},
             std::nullopt, "!GetSensorCalibrateType by aidl fail, g_aidlSensors are null"_p},
            // The serial numbers of the reports are sent, never logged.
            {"sendBigDataOperationNative", "(Lcom/corvex/mmitest/model/BigDataOperation;)I", "SendBigDataOperation",
             kFactory, "op", "47", "-1", "-1", "-1", false,
             {"SendBigDataOperation by aidl, version: 1; commandId: 100; operation: 2; station: ST3; cycle: 4"_p,
              "SendBigDataOperation by aidl, result: 47"_p, "> sendFmdCmdData()"},
             {"SendBigDataOperation by hidl, version: 1; commandId: 100; operation: 2; station: ST3; cycle: 4"_p,
              "> sendFmdCmdData()"},
             {{"!SendBigDataOperation by hidl fail, env or g_hwFactoryInterface is null"_p}},
             "!SendBigDataOperation by aidl fail, env or g_aidlFactoryInterface is null"_p},
            {"sendBigDataValueNative", "(Lcom/corvex/mmitest/model/BigDataValue;)I", "SendBigDataValue", kFactory,
             "value", "53", "-1", "-1", "-1", false,
             {"SendBigDataValue by aidl, version: 1; dataSource: 2; errorCode: 3; itemId: 4; station: ST3; cycle: 5; "
              "deviceName: als; testName: flicker; value: 240; minThreshold: 50; maxThreshold: 500; result: pass; "
              "time: 2024-05-01; firmware: fw-1.2; description: stress"_p,
              "SendBigDataValue by aidl, result: 53"_p, "> sendFmdMessage()"},
             {"SendBigDataValue by hidl, version: 1; dataSource: 2; errorCode: 3; itemId: 4; station: ST3; cycle: 5; "
              "deviceName: als; testName: flicker; value: 240; minThreshold: 50; maxThreshold: 500; result: pass; "
              "time: 2024-05-01; firmware: fw-1.2; description: stress"_p,
              "> sendFmdMessage()"},
             {{"!SendBigDataValue by hidl fail, env or g_hwFactoryInterface is null"_p}},
             "!SendBigDataValue by aidl fail, env or g_aidlFactoryInterface is null"_p},
            // Over AIDL a power-state request with fixed parameters; over HIDL the service's own check.
            {"checkUsbSpeedNative", "(Ljava/lang/String;)I", "CheckUsbSpeed", kPower, "'usb-scene'", "103", "-1", "-1",
             "-1", true,
             {"CheckUsbSpeed by aidl, scene: usb-scene, resultCode: 103"_p,
              "> setPowerState(ZtMmiTest_jni,usb-scene,testTimes=,maxLimit=,minLimit=)"},
             {"CheckUsbSpeed by hidl, scene: usb-scene, resultCode: 107, resultInfo: usb-1"_p,
              "> checkUsbSpeed(usb-scene,,,)"},
             std::nullopt, "", {"scene"}, "107"},
            {"getMmiAutoStartFlagNative", "()Ljava/lang/String;", "GetMmiAutoStartFlag", kFactory, "", "autostart-1", "",
             "", "Error", true, {"GetMmiAutoStartFlag by aidl, ret: 0, flag: autostart-1"_p, "> getDeviceInfo(5)"},
             {"="}},
            {"disableMmiAutoStartNative", "(Ljava/lang/String;)I", "SetMmiAutoStartFlag", kFactory, "'0'", "17", "-1",
             "-1", "-1", false, {"SetMmiAutoStartFlag by aidl, result: 17"_p, "> setDeviceInfo(5,0)"},
             {"="}, std::nullopt, "", {"flag"}},
            // Both HIDL handles were tried; the line names only the first.
            {"getCompassRawValueLimitNative", "()I", "GetCompassRawValueLimit", kSensors, "", "1201", "-1", "-1", "-1",
             false, {"GetCompassRawValueLimit by aidl, g_aidlSensors result: 1201"_p, "> getCompassRawValueLimit()"},
             {"="},
             {{"!GetCompassRawValueLimit by hidl fail, g_hwSensors is null"_p}}},
            {"getManufactureStationFlagNative", "(I)Ljava/lang/String;", "GetManufactureStationFlag", kFactory, "3",
             "station-3", "", "", "", true,
             {"GetManufactureStationFlag by aidl, station id: 3, result: 7, stationFlag: station-3"_p,
              "> getManufactureStationFlag(3)"}, {"="}},
            // Command 143: the station and the cycle, two characters each, in a record of 64.
            {"setTestCycleNative", "(II)I", "SetTestCycle", kFactory, "3,7", "43", "-1", "-1", "-1", false,
             {"SetTestCycle by aidl, stationID: 3, cycle: 7"_p, "SetTestCycle by aidl, qrcodeInfo: 0307"_p,
              "SetTestCycle by aidl, result: 43"_p, "> setCommandData(143,64,0307)"}, {"="},
             {{"SetTestCycle by hidl, stationID: 3, cycle: 7"_p, "!SetTestCycle by hidl fail, hwFactoryNew is null"_p}},
             "", {}, nullptr, 1},
            {"getManufactureModeNative", "()I", "GetManufactureMode", kFactory, "", "23", "-1", "-1", "-1", false,
             {"GetManufactureMode by aidl, result: 23"_p, "> getManufactureMode()"}, {"="},
             {{"!GetManufactureMode by hidl, hwFactoryNew is null"_p}},
             "!GetManufactureMode by aidl, g_aidlFactoryInterface is null"_p, {}, nullptr, 1},
            {"setPowerStateNative", "(Ljava/lang/String;Ljava/lang/String;)I", "SetPowerState", kPower, "'scene','para'",
             "103", "-1", "-1", "-1", false,
             {"SetPowerState by aidl, testScene:scene, para:para, result:103"_p,
              "> setPowerState(ZtMmiTest_jni,scene,para)"},
             {"SetPowerState by hidl, testScene:scene, para:para, result:103"_p, "> setPowerState(scene,para)"},
             std::nullopt, "", {"testScene", "para"}},
            // The vibrator keeps every command's characters taken, as it always has.
            {"setVibratorParameterNative", "(Ljava/lang/String;)V", "SetVibratorPar", kVibrator, "'intensity=3'", "void",
             "void", "void", "void", false,
             {"SetVibratorPar by aidl, strCmd = intensity=3"_p, "> setVibratorParameter(intensity=3)"}, {},
             std::nullopt, "", {"command"}, nullptr, 0, true},
            {"getVibratorCalibrateResultNative", "(Ljava/lang/String;)Ljava/lang/String;", "GetVibratorResult", kVibrator,
             "'f0'", "vib-1", "", "", "", false, {"GetVibratorResult by aidl, result:vib-1"_p, "> getVibratorResult(f0)"},
             {}, std::nullopt, "", {"command"}, nullptr, 0, true},
            {"getMmiDeviceFeaturesCheckResultNative", "(I)I", "GetMmiDeviceFeaturesCheckResult", kFactory, "9", "29",
             "-1", "-1", "-1", false,
             {"GetMmiDeviceFeaturesCheckResult by aidl, result: 29"_p, "> getMmiDeviceFeaturesCheckResult(9)"}, {"="}},
            {"getOeminfoNative", "(III)Ljava/lang/String;", "GetOeminfo", kFactory, "1,0,16", "OEM-1", "", "", "", true,
             {"GetOeminfo by aidl, read result: 0, oemInfo: OEM-1"_p, "> getOeminfo(1,0,16)"}, {"="},
             {{"!GetOeminfo by hidl fail, hwFactoryNew is null"_p}}, "", {}, nullptr, 1},
            {"sensorActivateNative", "(IZI)Z", "SensorActivate", kSensors, "4,true,200", "true", "false", "false",
             "false", false,
             {"SensorActivate by aidl, g_aidlSensors sensorType: 4, switch: 1, samplingRate: 200, result: 0"_p,
              "> activateSensor(4,true,200)"},
             {"SensorActivate by hidl, g_hwSensors sensorType: 4, switch: 1, samplingRate: 200, activeResult: 0"_p,
              "> activateSensor(4,true,200)"}},
            // Over HIDL the service hands over raw samples and the library's detector runs.
            {"getFlickerFrequencyNative", "(I)I", "GetFlickerFrequency", kSensors, "5", "123", "-1", "-1", "-1", true,
             {"GetFlickerFrequency by aidl, frequenceDetected: 123"_p, "> getSensorData(5)"},
             {"GetFlickerFrequency by hidl, isFlickerSupported: 0"_p, "GetFlickerFrequency by hidl, frequenceDetected: 99"_p,
              "> getSensorData(5)", "> isFlickerSupported(5)"},
             std::nullopt, "", {}, "99"},
            // Over AIDL the last argument is the size of the reply buffer the library offers.
            {"handleSensorParameterNative", "(IIII)Ljava/lang/String;", "HandleSensorParameter", kSensors, "4,1,2,16",
             "para-1", "", "", "", true,
             {"HandleSensorParameter by aidl, ret: 101, resultInfo: para-1, sensorId: 4, mainCmd: 1, subCmd: 2, "
              "length: 16 "_p,
              "> processSensorParameter(4,1,2,16,64)"},
             {"HandleSensorParameter by hidl, ret: 101, resultInfo: para-1, sensorId: 4, mainCmd: 1, subCmd: 2, "
              "length: 16"_p,
              "> processSensorParameter(4,1,2,16)"},
             {{"!HandleSensorParameter by hidl fail, sensorNewVer and g_zentelSensors are null"_p}}},
            // A failed AIDL transaction leaves the 4096 ints the reply was given; the length
            // logged is the count that came back.
            {"getAmbientLightParameterNative", "(IIII)[I", "GetAmbientLightParameter", kSensors, "4,1,2,16",
             "[11,22,33]", "null", "[4096 x 0]", "[]", true,
             {"GetAmbientLightParameter by aidl, length: 16"_p,
              "GetAmbientLightParameter by aidl, ret: 101, para: para-1, sensorId: 4, mainCmd: 1, subCmd: 2, length: 3"_p,
              "> processSensorParameter(4,1,2,16,4096)"},
             {"GetAmbientLightParameter by hidl, length: 16"_p, "GetAmbientLightParameter by hidl, use sensorNewVer",
              "GetAmbientLightParameter by hidl, ret: 101, para: para-1, sensorId: 4, mainCmd: 1, subCmd: 2, length: 3"_p,
              "> processSensorParameter(4,1,2,16)"},
             {{"GetAmbientLightParameter by hidl, length: 16"_p,
               "!GetAmbientLightParameter by hidl fail, no sensor version can be used"_p}},
             "!GetAmbientLightParameter by aidl fail, "_p},
            {"setAmbientLightParameterNative", "(IIII)I", "SetAmbientLightParameter", kSensors, "4,3,5,8", "101", "-1",
             "-1", "-1", true,
             {"SetAmbientLightParameter by aidl, length: 8"_p,
              "SetAmbientLightParameter by aidl, ret: 101, para: para-1, sensorId: 4, mainCmd: 3, subCmd: 5"_p,
              "> processSensorParameter(4,3,5,8,64)"},
             {"SetAmbientLightParameter by hidl, length: 8"_p, "SetAmbientLightParameter by hidl, use sensorNewVer",
              "SetAmbientLightParameter by hidl, ret: 101, para: para-1, sensorId: 4, mainCmd: 3, subCmd: 5"_p,
              "> processSensorParameter(4,3,5,8)"},
             {{"SetAmbientLightParameter by hidl, length: 8"_p,
               "!SetAmbientLightParameter by hidl fail, no sensor version can be used"_p}}},
            {"setTouchScreenFeatureConfigNative", "(ILjava/lang/String;)I", "SetTouchScreenFeatureConfig", kTouch,
             "3,'glove=1'", "71", "-1", "-1", "-1", false,
             {"SetTouchScreenFeatureConfig by aidl, feature: 3, config: glove=1, result: 71"_p,
              "> setTouchScreenFeatureConfig(3,glove=1)"},
             {"SetTouchScreenFeatureConfig by hidl, feature: 3, config: glove=1"_p,
              "> setTouchScreenFeatureConfig(3,glove=1)"},
             std::nullopt, "", {"config"}},
            {"getScreenCurrentFpsNative", "()Ljava/lang/String;", "GetScreenCurrentFps", kDisplay, "", "fps-1", "", "",
             "", true, {"GetScreenCurrentFps by aidl, ret: 3, screenConfig: fps-1"_p, "> getScreenCurrentFps(0)"},
             {"="},
             std::nullopt, "", {}, nullptr, 1},
            // Over HIDL the station is selected first; the configuration answer's status is logged.
            {"getScreenConfigNative", "(I)Ljava/lang/String;", "GetScreenConfig", kDisplay, "1", "cfg-1", "", "", "", true,
             {"GetScreenConfig by aidl, station: 1, ret: 0, screenConfig: cfg-1"_p, "> getScreenConfig(1)"},
             {"GetScreenConfig by hidl, station: 1, ret: 0, screenConfig: cfg-1"_p, "> selectScreenConfigStation(1)",
              "> getScreenConfig()"},
             std::nullopt, "", {}, nullptr, 1},
            {"setDisplayParameterNative", "(IILjava/lang/String;)I", "SetDisplayParameter", kDisplay, "2,5,'scene-data'",
             "0", "-1", "0", "-1", true,
             {"SetDisplayParameter scence: 2, dataInt: 5, dataString: scene-data, ret: 0, result info: param-1"_p,
              "> setDisplayParameter(2,5,scene-data)"}, {"="},
             {{"!SetDisplayParameter by hidl, g_hwDisplay is null"_p}}, "!SetDisplayParameter, g_aidlDisplay is null"_p,
             {"dataString"}, nullptr, 5},
            // The signature goes as lower-case hexadecimal text under item 11.
            {"getVerifySignatureResultNative", "([B)I", "GetVerifySignatureResult", kFactory, "#ab01", "17", "-1", "-1",
             "-1", false, {"GetVerifySignatureResult by aidl, ret: 17"_p, "> setDeviceInfo(11,ab01)"},
             {"="}, std::nullopt, "",
             {"signature"}},
            // Without the factory service the mode's characters stay taken.
            {"setMockCardTestModeNative", "(Ljava/lang/String;)I", "SetNmCardTestMode", kFactory, "'nmcard=on:1'", "17",
             "-1", "-1", "-1", false, {"SetNmCardTestMode by aidl, ret: 17"_p, "> setDeviceInfo(14,nmcard=on:1)"},
             {"="}, std::nullopt, "", {"mode"},
             nullptr, 0, true},
            {"getMockCardTestResultNative", "()Ljava/lang/String;", "GetNmCardTestResult", kFactory, "", "nmcard-1", "",
             "", "", true, {"GetNmCardTestResult by aidl, ret: 3, testResultArray = nmcard-1"_p, "> getDeviceInfo(14)"},
             {"="}},
            {"getRotaryCrownSelfTestNative", "()Ljava/lang/String;", "GetRotateCrownTestResult", kTouch, "", "crown-1", "",
             "", "error", true, {"GetRotateCrownTestResult by aidl, ret: 0, info: crown-1"_p, "> getRotateCrownTestResult()"},
             {"GetRotateCrownTestResult by hidl, info: crown-1"_p, "> getRotateCrownTestResult()"}},
            // The display processor's library (not on the loader's path of the bridge tests).
            {"getVideoInterpolationDefaultModelNative", "()I", "GetVideoInterpolationDefaultModel", kPanel, "", "1", "-1",
             "-1", "-1", false, {}, {}},
            {"getVideoInterpolationModelNative", "()Ljava/lang/String;", "GetVideoInterpolationModel", kPanel, "",
             "0:off;1:24to60;2:30to120", "", "", "", false, {}, {}},
            {"setVideoInterpolationModelNative", "(II)I", "SetVideoInterpolationModel", kPanel, "1,60", "0", "-1", "-1",
             "-1", false, {}, {}},
            {"recoverInperpolateFreshRateNative", "()I", "RecoverInperpolateFreshRate", kPanel, "", "0", "-1", "-1", "-1",
             false, {}, {}},
            // Colour values come back whatever the status.
            {"getColorSensorNative", "(I)[I", "GetColorSensorValues", kSensors, "6", "[700,760,600,2050]", "[]", "[]",
             "[]", true, {"GetColorSensorValues by aidl success, return 4 ints."_p, "> getSensorData(6)"}, {"="},
             {{"!GetColorSensorValues by hidl fail, g_hwSensors and g_zentelSensors are null."_p}},
             "!GetColorSensorValues by aidl fail, g_aidlSensors is null."_p},
            {"getDeviceInfoNative", "(I)Ljava/lang/String;", "GetDeviceInfo", kFactory, "77", "device-77", "", "", "", true,
             {"GetDeviceInfo by aidl, ret = -9, info: device-77", "> getDeviceInfo(77)"},
             {"GetDeviceInfo by hidl, ret = -9", "> getDeviceInfo(77)"},
             {{"!GetDeviceInfo by hidl, g_hwFactoryInterface is null"}},
             "!GetDeviceInfo by aidl, g_aidlFactoryInterface is null"},
            {"nativeClearPackageName", "()I", "ClearPackageName", kFactory, "", "31", "-1", "-1", "-1", false,
             {"ClearPackageName by aidl, result: 31"_p, "> clearDeviceInfo(4)"},
             {"="}, std::nullopt, "", {}, nullptr, 1},
            // Steered by the display family; without an AIDL display, light 1 of the HIDL light service.
            {"setBackLightBrightnessNative", "(I)I", "SetBackLightBrightness", kDisplay, "200", "59", "-1", "-2", "-1",
             false, {"SetBackLightBrightness by aidl, brightness: 200, ret: 59"_p, "> setBackLightBrightness(200)"},
             {"SetLightBrightness by hidl, Id: 1, brightness: 200, result: 61"_p, "> setLightBrightness(1,200)"},
             {{"!SetLightBrightness by hidl fail, g_hwLight is null"_p}}, "", {}, "61"},
            {"nativeGetDisplayPanelType", "()I", "GetDisplayPanelType", kDisplay, "", "6", "-1", "-1", "0", true,
             {"GetDisplayPanelType by aidl, result: 6"_p, "> getDisplayPanelType()"},
             {"GetDisplayPanelType by hidl, result: 0, panelType: 6"_p, "> getDisplayPanelType()"}},
            // Item 44, whatever its status; over AIDL the device-information line.
            {"getRsaSignInfoNative", "()Ljava/lang/String;", "GetRsaSignInfo", kFactory, "", "rsa-1", "", "", "", true,
             {"GetDeviceInfo by aidl, ret = 3, info: rsa-1", "> getDeviceInfo(44)"},
             {"GetRsaSignInfo by hidl, ret = 3", "> getDeviceInfo(44)"},
             {{"!GetRsaSignInfo by hidl, g_hwFactoryInterface is null"}},
             "!GetRsaSignInfo by aidl, g_aidlFactoryInterface is null"},
            {"setDisplaySelfAdaptMinFpsNative", "(I)I", "SetDisplaySelfAdaptMinFps", kDisplay, "30", "67", "-1", "-2",
             "-2", false, {"SetDisplaySelfAdaptMinFps dataInt: 30, ret: 67"_p, "> setDisplaySelfAdaptMinFps(30)"},
             {"SetDisplaySelfAdaptMinFps by hidl dataInt: 30, ret: 67"_p, "> setDisplaySelfAdaptMinFps(30)"},
             {{"!SetDisplaySelfAdaptMinFps by hidl, g_hwDisplay is null"_p}},
             "!SetDisplaySelfAdaptMinFps, g_aidlDisplay is null"_p, {}, nullptr, 4},
            // AIDL only: without an AIDL sensors service the dispatcher answers null.
            {"getFlickerFrequencyAndAmplitudeNative", "(I)[I", "GetFlickerFrequencyAndAmplitude", kSensors, "5",
             "[123,456]", "null", "null", "null", false,
             {"GetFlickerFrequencyAndAmplitude by aidl, frequenceDetected: 123, amplitude: 456"_p, "> getSensorData(5)"},
             {}, std::vector<std::string>{}, "", {}, "null"},
            {"getCapabilitiesNative", "()[I", "GetCapabilities", kCamera, "", "[1,2]", "null", "null", "null", false,
             {"GetCapabilities by aidl success, return 2 ints."_p, "> getCapabilities()"}, {}},
            {"getVaelonOvertimeNative", "(I)I", "GetVaelonOvertime", kCamera, "2", "60", "-1", "-1", "-1", false,
             {"GetVaelonOvertime by aidl success, overtime 60."_p, "> getCapabilities()"}, {}},
            // Every registration keeps a global reference to MmiNativeManager's class.
            {"registerClientNative", "(I)I", "RegisterClient", kCamera, "2", "0", "-1", "-1", "-1", false,
             {"RegisterClient by aidl success, return 0, serviceType: 2, clientHandle: 7"_p, "> registerClient(2,0)"}, {},
             std::nullopt, "", {}, nullptr, 0, true},
            // Sends back the handle of the registration before (the table's previous row).
            {"unregisterClientNative", "()I", "UnregisterClient", kCamera, "", "0", "-1", "-1", "-1", false,
             {"UnregisterClient by aidl, clear g_aidlVaelonNotifier"_p,
              "UnregisterClient by aidl success, return 0, clientHandle: 7"_p, "> unregisterClient(7)"},
             {}},
    };
}

const std::vector<int32_t> kColourValues = {700, 760, 600, 2050};

std::string Encode(JNIEnv* env, char type, const jvalue& result) {
    switch (type) {
        case 'V': return "void";
        case 'Z': return result.z ? "true" : "false";
        case 'I': return std::to_string(result.i);
        default: break;
    }
    if (result.l == nullptr) return "null";
    std::string text;
    if (type == 'L') {
        auto string = static_cast<jstring>(result.l);
        const char* chars = env->GetStringUTFChars(string, nullptr);
        text = chars;
        env->ReleaseStringUTFChars(string, chars);
    } else {
        auto array = static_cast<jintArray>(result.l);
        std::vector<jint> values(static_cast<size_t>(env->GetArrayLength(array)));
        if (!values.empty()) env->GetIntArrayRegion(array, 0, static_cast<jsize>(values.size()), values.data());
        bool same = values.size() > 8;
        for (jint v : values) same = same && v == values[0];
        if (same) {
            text = "[" + std::to_string(values.size()) + " x " + std::to_string(values[0]) + "]";
        } else {
            for (jint v : values) text += (text.empty() ? "" : ",") + std::to_string(v);
            text = "[" + text + "]";
        }
    }
    env->DeleteLocalRef(result.l);
    return text;
}

}  // namespace

const std::vector<NativeMethod>& NativeMethods() {
    static const std::vector<NativeMethod> methods = [] {
        std::vector<NativeMethod> table = Table();
        // "=": the HIDL backend writes the AIDL backend's lines, with its own name and handle.
        for (NativeMethod& m : table) {
            if (m.hidlLines != std::vector<std::string>{"="}) continue;
            m.hidlLines = m.aidlLines;
            for (std::string& line : m.hidlLines) {
                for (const auto& [from, to] : {std::pair<std::string, std::string>{" by aidl", " by hidl"},
                                               {"g_aidlSensors", "g_hwSensors"}}) {
                    if (const size_t at = line.find(from); at != std::string::npos) line.replace(at, from.size(), to);
                }
            }
        }
        return table;
    }();
    return methods;
}

std::vector<std::string> NoServiceLines(const NativeMethod& method) {
    if (method.noServiceLines) return *method.noServiceLines;
    if (!method.family || method.family == kVibrator || method.family == kCamera) return {};  // the dispatcher's
    static const std::map<Family, std::string> kHandles = {
            {kFactory, "g_hwFactoryInterface is null"}, {kDisplay, "g_hwDisplay is null"},
            {kTouch, "g_hwTouchScreen is null"},        {kFingerprint, "g_hwFingerprint is null"},
            {kSensors, "g_hwSensors and g_zentelSensors are null"}, {kPower, "g_hwPower is null"},
            {kLight, "g_hwLight is null"}};
    return {"!ZtMmiTest_jni: " + std::string(method.dispatcher) + " by hidl fail, " + kHandles.at(*method.family)};
}

std::string AidlNullLine(const NativeMethod& method) {
    if (!method.aidlNull.empty()) return method.aidlNull;
    static const std::map<Family, std::string> kHandles = {
            {kFactory, "g_aidlFactoryInterface"}, {kDisplay, "g_aidlDisplay"}, {kTouch, "g_aidlTouchScreen"},
            {kFingerprint, "g_aidlFingerprintSession"}, {kSensors, "g_aidlSensors"}, {kPower, "g_aidlPower"},
            {kLight, "g_aidlLight"}, {kCamera, "g_aidlVaelon"}, {kVibrator, "g_aidlVibrator"}};
    return "!ZtMmiTest_jni: " + std::string(method.dispatcher) + " by aidl fail, " + kHandles.at(*method.family) +
           " is null";
}

const NativeMethod& MethodNamed(const std::string& java) {
    for (const NativeMethod& method : NativeMethods()) {
        if (method.java == java) return method;
    }
    std::abort();
}

void ScriptAnswers(mmisim::Handset& handset, const mmisim::DeviceProfile& profile) {
    handset.factory().update([](mmisim::FactoryAnswers& a) {
        a.manufactureFileName = {0, "mfn.xml"};
        a.deviceInfo = {{0, {4, "BSN-1"}},          {5, {0, "autostart-1"}}, {14, {3, "nmcard-1"}},
                        {35, {0, "com.corvex.pkg"}}, {44, {3, "rsa-1"}},     {77, {-9, "device-77"}}};
        a.setDeviceInfoResult = 17;
        a.manufactureMode = 23;
        a.featuresCheckResult = 29;
        a.clearDeviceInfoResult = 31;
        a.releaseFactoryResourceResult = 37;
        a.mmiTestResultResult = 41;
        a.stationFlags = {{3, {7, "station-3"}}};
        a.commandDataResult = 43;
        a.fmdCmdDataResult = 47;
        a.fmdMessageResult = 53;
        a.oeminfo = "OEM-1";
    });
    handset.display().update([](mmisim::DisplayAnswers& a) {
        a.screenCurrentFps = {3, "fps-1"};
        a.selectStationResult = 5;  // HIDL: the configuration answer's status replaces it
        a.screenConfig = {0, "cfg-1"};
        a.displayParameter = {0, "param-1"};
        a.backLightResult = 59;
        a.panelType = 6;
        a.selfAdaptMinFpsResult = 67;
    });
    handset.touchScreen().update([](mmisim::TouchScreenAnswers& a) {
        a.capacitanceTest = {3, "cap-info"};
        a.capacitanceCalibrate = {0, "cal-1"};
        a.rotateCrown = {0, "crown-1"};
        a.featureConfigResult = 71;
    });
    handset.fingerprint().update([](mmisim::FingerprintAnswers& a) { a.cmdResult = 73; });
    const bool aidlSensors = profile[Family::kSensors].transport == mmisim::Transport::kAidl;
    handset.sensors().update([aidlSensors](mmisim::SensorAnswers& a) {
        a.startCalibrateResult = 79;
        a.startSelfTestResult = 83;
        a.calibrateDelayTime = 3001;
        a.selfTestDelayTime = 2003;
        a.calibrateResult = 89;
        a.selfTestResult = 97;
        a.calibrateType = {-4, "calib-1"};
        // Over AIDL the service reports the frequency and amplitude itself; over HIDL it hands
        // over the raw samples of a lamp flickering at 100 Hz and the library's detector runs.
        a.flickerSupported = false;
        a.sensorData[5] = aidlSensors ? mmisim::DataReply{0, {123, 456}}
                                      : mmisim::DataReply{0, mmisim::LightSourceSamples({100, 2500, 5000, 40, 7})};
        a.sensorData[6] = {-5, kColourValues};
        a.parameter = {101, "para-1", {11, 22, 33}, false};
        a.compassRawValueLimit = 1201;
    });
    handset.power().update([](mmisim::PowerAnswers& a) {
        a.setPowerStateResult = 103;
        a.powerState = {0, "power-1"};
        a.usbSpeed = {107, "usb-1"};
    });
    handset.light().update([](mmisim::LightAnswers& a) { a.brightnessResult = 61; });
    handset.vaelon().update([](mmisim::VaelonAnswers& a) { a.capabilities = {{1, {30}}, {2, {60}}}; });
    handset.vibrator().update([](mmisim::VibratorAnswers& a) { a.result = "vib-1"; });
}

NativeCalls::NativeCalls(JNIEnv* env, jobject manager) : mEnv(env), mManager(manager) {
    auto global = [this](jobject local) {
        jobject ref = mEnv->NewGlobalRef(local);
        mEnv->DeleteLocalRef(local);
        mGlobals.push_back(ref);
        return ref;
    };
    jclass clazz = env->GetObjectClass(manager);
    for (const NativeMethod& method : NativeMethods()) {
        mIds.push_back(env->GetMethodID(clazz, method.java, method.signature));
        std::vector<jvalue> args;
        std::stringstream list(method.args);
        for (std::string token; std::getline(list, token, ',');) {
            jvalue value{};
            if (token == "true") {
                value.z = JNI_TRUE;
            } else if (token.front() == '\'') {
                value.l = global(env->NewStringUTF(token.substr(1, token.size() - 2).c_str()));
            } else if (token.front() == '#') {
                std::vector<jbyte> bytes;
                for (size_t i = 1; i + 1 < token.size(); i += 2) {
                    bytes.push_back(static_cast<jbyte>(std::stoi(token.substr(i, 2), nullptr, 16)));
                }
                jbyteArray array = env->NewByteArray(static_cast<jsize>(bytes.size()));
                env->SetByteArrayRegion(array, 0, static_cast<jsize>(bytes.size()), bytes.data());
                value.l = global(array);
            } else if (token == "op") {
                value.l = global(NewModel(env, kOperationClass,
                                          {{"mVersion", 1}, {"mCommandId", 100}, {"mOperation", 2}, {"mBsn", "BSN-OP"},
                                           {"mStation", "ST3"}, {"mCycle", 4}}));
            } else if (token == "value") {
                value.l = global(NewModel(env, kValueClass,
                                          {{"mVersion", 1}, {"mDataSource", 2}, {"mErrorCode", 3}, {"mItemId", 4},
                                           {"mCycle", 5}, {"mDeviceName", "als"}, {"mStation", "ST3"},
                                           {"mTestName", "flicker"}, {"mBsn", "BSN-VAL"}, {"mValue", "240"},
                                           {"mThresholdMin", "50"}, {"mThresholdMax", "500"}, {"mResult", "pass"},
                                           {"mTime", "2024-05-01"}, {"mFirmware", "fw-1.2"}, {"mDescription", "stress"}}));
            } else {
                value.i = std::atoi(token.c_str());
            }
            args.push_back(value);
        }
        mArgs.push_back(args);
    }
    env->DeleteLocalRef(clazz);
}

NativeCalls::~NativeCalls() {
    for (jobject ref : mGlobals) mEnv->DeleteGlobalRef(ref);
}

std::string NativeCalls::Call(size_t method, int nullReference, std::optional<jint> everyInt) {
    std::vector<jvalue> args = mArgs[method];
    const std::string signature = NativeMethods()[method].signature;
    int reference = 0;
    size_t arg = 0;
    for (size_t i = 1; signature[i] != ')'; ++i, ++arg) {
        if (signature[i] == 'I' && everyInt) args[arg].i = *everyInt;
        if (signature[i] == 'L' || signature[i] == '[') {
            if (reference++ == nullReference) args[arg].l = nullptr;
            i = signature[i] == 'L' ? signature.find(';', i) : i + 1;
        }
    }
    const char type = signature[signature.find(')') + 1];
    jvalue result{};
    switch (type) {
        case 'V': mEnv->CallVoidMethodA(mManager, mIds[method], args.data()); break;
        case 'Z': result.z = mEnv->CallBooleanMethodA(mManager, mIds[method], args.data()); break;
        case 'I': result.i = mEnv->CallIntMethodA(mManager, mIds[method], args.data()); break;
        default: result.l = mEnv->CallObjectMethodA(mManager, mIds[method], args.data()); break;
    }
    if (mEnv->ExceptionCheck()) {
        mEnv->ExceptionClear();
        return "threw";
    }
    return Encode(mEnv, type, result);
}

}  // namespace mmitest
