package vendor.zentel.hardware.sensors;

import vendor.zentel.hardware.sensors.ZtSensorString;

@VintfStability
interface ISensors {
    int startCalibrate(int sensorId, int command);

    int startSelfTest(int sensorId, int command);

    int getCalibrateDelayTime(int sensorId);

    int getSelfTestDelayTime(int sensorId);

    int getCalibrateResult(int sensorId);

    int getSelfTestResult(int sensorId);

    int getCalibrateType(int sensorId, int size, out ZtSensorString calibType);

    /**
     * The sensor's ints: flicker frequency and amplitude, or colour values. The caller sizes
     * data; the service fills or resizes it.
     */
    int getSensorData(int sensorId, out int[] data);

    int processSensorParameter(int sensorId, int mainCmd, int subCmd, int length,
            out ZtSensorString para, out int[] data);

    int activateSensor(int sensorType, boolean enable, long samplingRate);

    int getCompassRawValueLimit();
}
