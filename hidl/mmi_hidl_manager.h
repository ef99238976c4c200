// The HIDL backend: connections to the HIDL hardware services and every operation the
// dispatchers forward to it when a family is not served over AIDL, plus the video
// interpolation operations of the panel-processor library.
#pragma once

#include <jni.h>

namespace native_hidl {

// Connections. A service that is not registered is skipped; it is connected later when a
// registration notice arrives.
void InitFactoryInterface();
void InitDisplay();
void InitTouchScreen();
void InitFingerprint();
void InitSensor();
void InitPower();
void InitLight();
void InitSensorsV20();

// Unlinks and clears every HIDL handle and closes the panel-processor library.
void ExitMmiManager();

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
jstring HandleSensorParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length);
jintArray GetAmbientLightParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length);
jint SetAmbientLightParameter(JNIEnv* env, jobject thiz, jint sensorId, jint mainCmd, jint subCmd, jint length);
jintArray GetColorSensorValues(JNIEnv* env, jobject thiz, jint sensorId);

// Power and USB.
jstring GetPowerState(JNIEnv* env, jobject thiz, jstring key);
jint SetPowerState(JNIEnv* env, jobject thiz, jstring testScene, jstring para);
jint CheckUsbSpeed(JNIEnv* env, jobject thiz, jstring scene);

// Light; also the HIDL path of the display backlight.
jint SetLightBrightness(JNIEnv* env, jobject thiz, jint id, jint brightness);

// Display.
jstring GetScreenCurrentFps(JNIEnv* env, jobject thiz);
jstring GetScreenConfig(JNIEnv* env, jobject thiz, jint station);
jint SetDisplayParameter(JNIEnv* env, jobject thiz, jint scene, jint dataInt, jstring dataString);
jint GetDisplayPanelType(JNIEnv* env, jobject thiz);
jint SetDisplaySelfAdaptMinFps(JNIEnv* env, jobject thiz, jint dataInt);

// Video interpolation through the panel-processor library.
jint GetVideoInterpolationDefaultModel(JNIEnv* env, jobject thiz);
jstring GetVideoInterpolationModel(JNIEnv* env, jobject thiz);
jint SetVideoInterpolationModel(JNIEnv* env, jobject thiz, jint mode, jint freshRate);
jint RecoverInperpolateFreshRate(JNIEnv* env, jobject thiz);

}  // namespace native_hidl
