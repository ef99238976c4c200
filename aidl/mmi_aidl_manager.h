// The AIDL backend: connections to the AIDL hardware services and every operation the
// dispatchers forward to it. Each operation reads its family's handle, makes one service
// call and converts the answer; a missing service gives the operation's fallback value.
#pragma once

#include <jni.h>

namespace native_aidl {

// Connections. The Init functions block while a declared service is not up yet.
bool InitFactoryInterface();
bool InitDisplay();
bool InitTouchScreen();
bool InitFingerprint();
bool InitSensor();
bool InitPower();
bool InitLight();
void InitVaelon();
void InitVibrator();

// Whether the family is served over AIDL at this moment.
bool IsFactoryInterfaceAidlVersion();
bool IsDisplayAidlVersion();
bool IsTouchScreenAidlVersion();
bool IsFingerprintAidlVersion();
bool IsSensorAidlVersion();
bool IsPowerAidlVersion();
bool IsLightAidlVersion();
bool IsVaelonAidlVersion();
bool IsVibratorAidlVersion();

// Unlinks and clears every AIDL handle.
void ExitMmiManager();
// Drops the camera client's callback object and Java references.
void ReleaseGlobalValue(JNIEnv* env);

// Factory interface.
jboolean IsFactoryVersion(JNIEnv* env, jobject thiz);
jstring GetManufactureFileName(JNIEnv* env, jobject thiz);
jint ReleaseFactoryHidlResource(JNIEnv* env, jobject thiz);
jint SetMmiTestResult(JNIEnv* env, jobject thiz, jint item, jint result);
jstring GetBsn(JNIEnv* env, jobject thiz);
jstring GetTestApkPackageName(JNIEnv* env, jobject thiz);
jint SendBigDataOperation(JNIEnv* env, jobject thiz, jobject operation);
jint SendBigDataValue(JNIEnv* env, jobject thiz, jobject value);
jstring GetMmiAutoStartFlag(JNIEnv* env, jobject thiz);
jint SetMmiAutoStartFlag(JNIEnv* env, jobject thiz, jstring flag);
jstring GetManufactureStationFlag(JNIEnv* env, jobject thiz, jint stationId);
jint SetTestCycle(JNIEnv* env, jobject thiz, jint stationId, jint cycle);
jint GetManufactureMode(JNIEnv* env, jobject thiz);
jint GetMmiDeviceFeaturesCheckResult(JNIEnv* env, jobject thiz, jint feature);
jstring GetOeminfo(JNIEnv* env, jobject thiz, jint type, jint offset, jint length);
jint GetVerifySignatureResult(JNIEnv* env, jobject thiz, jbyteArray signature);
jint SetNmCardTestMode(JNIEnv* env, jobject thiz, jstring mode);
jstring GetNmCardTestResult(JNIEnv* env, jobject thiz);
jstring GetDeviceInfo(JNIEnv* env, jobject thiz, jint id);
jint ClearPackageName(JNIEnv* env, jobject thiz);
jstring GetRsaSignInfo(JNIEnv* env, jobject thiz);

// Fingerprint.
jint SendCmdToFingerprintHal(JNIEnv* env, jobject thiz, jint cmd);

// Touch screen. The third argument of the capacitance test carries no meaning.
jint GetCapacitanceTestResult(JNIEnv* env, jobject thiz, jint unused);
jstring GetCapacitanceCalibrateResult(JNIEnv* env, jobject thiz, jint value);
jint SetTouchScreenFeatureConfig(JNIEnv* env, jobject thiz, jint feature, jstring config);
jstring GetRotateCrownTestResult(JNIEnv* env, jobject thiz);

// Sensors.
jint GetSensorCalibrateDelayTime(JNIEnv* env, jobject thiz, jint sensorId);
jint GetSensorSelfTestDelayTime(JNIEnv* env, jobject thiz, jint sensorId);
jint StartSensorCalibrate(JNIEnv* env, jobject thiz, jint sensorId, jint command);
jint StartSensorSelfTest(JNIEnv* env, jobject thiz, jint sensorId, jint command);
jint GetSensorCalibrateResult(JNIEnv* env, jobject thiz, jint sensorId);
jint GetSensorSelfTestResult(JNIEnv* env, jobject thiz, jint sensorId);
jstring GetSensorCalibrateType(JNIEnv* env, jobject thiz, jint sensorId);
jint GetCompassRawValueLimit(JNIEnv* env, jobject thiz);
jboolean SensorActivate(JNIEnv* env, jobject thiz, jint sensorType, jboolean enable, jint samplingRate);
jint GetFlickerFrequency(JNIEnv* env, jobject thiz, jint sensorId);
jintArray GetFlickerFrequencyAndAmplitude(JNIEnv* env, jobject thiz, jint sensorId);
jstring HandleSensorParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length);
jintArray GetAmbientLightParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length);
jint SetAmbientLightParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length);
jintArray GetColorSensorValues(JNIEnv* env, jobject thiz, jint sensorId);

// Power and USB.
jstring GetPowerState(JNIEnv* env, jobject thiz, jstring key);
jint SetPowerState(JNIEnv* env, jobject thiz, jstring testScene, jstring para);
jint CheckUsbSpeed(JNIEnv* env, jobject thiz, jstring scene);

// Light and vibrator.
jint SetLightBrightness(JNIEnv* env, jobject thiz, jint id, jint brightness);
void SetVibratorPar(JNIEnv* env, jobject thiz, jstring command);
jstring GetVibratorResult(JNIEnv* env, jobject thiz, jstring command);

// Display.
jstring GetScreenCurrentFps(JNIEnv* env, jobject thiz);
jstring GetScreenConfig(JNIEnv* env, jobject thiz, jint station);
jint SetDisplayParameter(JNIEnv* env, jobject thiz, jint scene, jint dataInt, jstring dataString);
jint SetBackLightBrightness(JNIEnv* env, jobject thiz, jint brightness);
jint GetDisplayPanelType(JNIEnv* env, jobject thiz);
jint SetDisplaySelfAdaptMinFps(JNIEnv* env, jobject thiz, jint dataInt);

// Camera always-on service.
jintArray GetCapabilities(JNIEnv* env, jobject thiz);
jint GetVaelonOvertime(JNIEnv* env, jobject thiz, jint serviceType);
jint RegisterClient(JNIEnv* env, jobject thiz, jint serviceType);
jint UnregisterClient(JNIEnv* env, jobject thiz);

}  // namespace native_aidl
