package com.corvex.mmitest.controller;

import com.corvex.mmitest.model.BigDataOperation;
import com.corvex.mmitest.model.BigDataValue;

import java.util.concurrent.atomic.AtomicInteger;

/**
 * The native half of the factory self-test: every method is implemented by libZtMmi_jni,
 * which answers through the handset's hardware services.
 */
public class MmiNativeManager {
    static {
        System.loadLibrary("ZtMmi_jni");
    }

    /** Failure details of the last touch-screen capacitance test, written by the library. */
    public static String sTpCapacitanceFailInfo = "";

    private static final AtomicInteger sRegisterSuccessCount = new AtomicInteger();

    private static volatile Runnable sCameraEventListener;

    /** Called by the library when the camera always-on service reports an event. */
    public static void RegisterSuccess() {
        sRegisterSuccessCount.incrementAndGet();
        Runnable listener = sCameraEventListener;
        if (listener != null) {
            listener.run();
        }
    }

    /** The screen that waits for camera always-on events (null: none); it runs in RegisterSuccess. */
    public static void setCameraEventListener(Runnable listener) {
        sCameraEventListener = listener;
    }

    /** How many camera always-on events have reached {@link #RegisterSuccess()}. */
    public static int getRegisterSuccessCount() {
        return sRegisterSuccessCount.get();
    }

    public native boolean isFactoryVersionNative();
    public native String getManufactureFileNameNative();
    public native int releaseFactoryHidlResourceNative();
    public native int setMmiResultNative(int item, int result);
    public native int sendCmdToFingerprintHalNative(int cmd);
    public native int getCapacitanceTestResultNative();
    public native String getCapacitanceCalibrateResultNative(int value);
    public native int getSensorCalibrateDelayTimeNative(int sensorId);
    public native int getSensorSelfTestDelayTimeNative(int sensorId);
    public native int startSensorCalibrateNative(int sensorId, int command);
    public native int startSensorSelfTestNative(int sensorId, int command);
    public native int getSensorCalibrateResultNative(int sensorId);
    public native int getSensorSelfTestResultNative(int sensorId);
    public native int setLightBrightnessNative(int id, int brightness);
    public native String getBsnNative();
    public native String getTestApkPackageNameNative();
    public native String getPowerStateNative(String key);
    public native String getSensorCalibrateTypeNative(int sensorId);
    public native int sendBigDataOperationNative(BigDataOperation operation);
    public native int sendBigDataValueNative(BigDataValue value);
    public native int checkUsbSpeedNative(String scene);
    public native String getMmiAutoStartFlagNative();
    public native int disableMmiAutoStartNative(String flag);
    public native int getCompassRawValueLimitNative();
    public native String getManufactureStationFlagNative(int stationId);
    public native int setTestCycleNative(int stationId, int cycle);
    public native int getManufactureModeNative();
    public native int setPowerStateNative(String testScene, String para);
    public native void setVibratorParameterNative(String command);
    public native String getVibratorCalibrateResultNative(String command);
    public native int getMmiDeviceFeaturesCheckResultNative(int feature);
    public native String getOeminfoNative(int type, int offset, int length);
    public native boolean sensorActivateNative(int sensorType, boolean enable, int samplingRate);
    public native int getFlickerFrequencyNative(int sensorId);
    public native String handleSensorParameterNative(int sensorId, int mainCmd, int subCmd, int length);
    public native int[] getAmbientLightParameterNative(int sensorId, int mainCmd, int subCmd, int length);
    public native int setAmbientLightParameterNative(int sensorId, int mainCmd, int subCmd, int length);
    public native int setTouchScreenFeatureConfigNative(int feature, String config);
    public native String getScreenCurrentFpsNative();
    public native String getScreenConfigNative(int station);
    public native int setDisplayParameterNative(int scene, int dataInt, String dataString);
    public native int getVerifySignatureResultNative(byte[] signature);
    public native int setMockCardTestModeNative(String mode);
    public native String getMockCardTestResultNative();
    public native String getRotaryCrownSelfTestNative();
    public native int getVideoInterpolationDefaultModelNative();
    public native String getVideoInterpolationModelNative();
    public native int setVideoInterpolationModelNative(int mode, int freshRate);
    public native int recoverInperpolateFreshRateNative();
    public native int[] getColorSensorNative(int sensorId);
    public native String getDeviceInfoNative(int id);
    public native int nativeClearPackageName();
    public native int setBackLightBrightnessNative(int brightness);
    public native int nativeGetDisplayPanelType();
    public native String getRsaSignInfoNative();
    public native int setDisplaySelfAdaptMinFpsNative(int dataInt);
    public native int[] getFlickerFrequencyAndAmplitudeNative(int sensorId);
    public native int[] getCapabilitiesNative();
    public native int getVaelonOvertimeNative(int serviceType);
    public native int registerClientNative(int serviceType);
    public native int unregisterClientNative();
}
