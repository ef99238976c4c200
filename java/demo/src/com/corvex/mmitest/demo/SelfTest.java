package com.corvex.mmitest.demo;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.model.BigDataOperation;
import com.corvex.mmitest.model.BigDataValue;
import com.corvex.mmitest.sim.SimulatedHandset;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Set;
import java.util.TreeMap;
import java.util.function.Supplier;

/**
 * The factory self-test sequence of the application: every native method of
 * MmiNativeManager with the arguments a test screen passes, grouped by the service family
 * that decides the backend. Each call is shown with the backend the library chose, read
 * from the dispatcher's log line of that call.
 */
final class SelfTest {
    static final int NATIVE_METHODS = 61;
    static final int DEFAULT_LIGHT_SENSOR = 5;
    static final int COLOR_SENSOR = 6;
    private static final int RESULT_WIDTH = 44;

    /** One native method call as a test screen makes it. */
    static final class Step {
        final String method;
        final String call;
        final Supplier<Object> invoke;

        Step(String method, String call, Supplier<Object> invoke) {
            this.method = method;
            this.call = call;
            this.invoke = invoke;
        }
    }

    /** The calls decided by one family (null family: no service decides them). */
    static final class Group {
        final String title;
        final String family;
        final List<Step> steps = new ArrayList<>();

        Group(String title, String family) {
            this.title = title;
            this.family = family;
        }

        Group add(String method, String arguments, Supplier<Object> invoke) {
            steps.add(new Step(method, method + "(" + arguments + ")", invoke));
            return this;
        }

        Group add(String method, String arguments, Runnable invoke) {
            return add(method, arguments, () -> {
                invoke.run();
                return Void.TYPE;
            });
        }
    }

    private final MmiNativeManager manager;
    private final int lightSensor;
    private final List<Group> groups = new ArrayList<>();
    private final Set<String> methodsCalled = new LinkedHashSet<>();
    private final TreeMap<String, Integer> backendCounts = new TreeMap<>();
    private int calls;
    private Integer measuredFlicker;

    SelfTest(MmiNativeManager manager, int lightSensor) {
        this.manager = manager;
        this.lightSensor = lightSensor;
        build();
    }

    List<Group> groups() {
        return groups;
    }

    int methodsCalled() {
        return methodsCalled.size();
    }

    /** What getFlickerFrequencyNative answered last, or null if it failed. */
    Integer measuredFlickerFrequency() {
        return measuredFlicker;
    }

    /** Runs the group's calls and prints a row for each; `phase` qualifies the heading. */
    void run(Group group, String phase) {
        System.out.println();
        System.out.println(group.title + (phase == null ? "" : " (" + phase + ")"));
        System.out.println(String.format("  %-64s %-8s %s", "method", "backend", "result"));
        for (Step step : group.steps) {
            long mark = SimulatedHandset.logMark();
            Object result = step.invoke.get();
            String[] lines = SimulatedHandset.logLinesSince(mark);
            String backend = backendOf(lines);
            String note = firstError(lines);
            methodsCalled.add(step.method);
            calls++;
            backendCounts.merge(backend, 1, Integer::sum);
            if (step.method.equals("getFlickerFrequencyNative") && result instanceof Integer) {
                int frequency = (Integer) result;
                measuredFlicker = frequency >= 0 ? frequency : null;
            }
            String shown = format(result);
            if (note != null) {
                shown = String.format("%-" + RESULT_WIDTH + "s ! %s", shown, note);
            }
            System.out.println(String.format("  %-64s %-8s %s", step.call, backend, shown));
        }
    }

    String summary() {
        StringBuilder text = new StringBuilder();
        text.append(methodsCalled.size()).append(" of ").append(NATIVE_METHODS).append(" native methods called (")
                .append(calls).append(" calls); backends:");
        backendCounts.forEach((backend, count) -> text.append(' ').append(backend).append(' ').append(count));
        return text.toString();
    }

    /**
     * The backend the dispatcher chose, from its log line: "NAME, Aidl Called" or
     * "NAME, Hidl Called"; "none" when it answered itself because no service of that kind
     * exists ("Aidl is null", "no Hidl Called").
     */
    static String backendOf(String[] lines) {
        for (String line : lines) {
            String message = messageOf(line);
            if (message.endsWith(", no Hidl Called") || message.endsWith(", Aidl is null")
                    || message.endsWith(" fail, Aidl is null")) {
                return "none";
            }
            if (message.endsWith(", Aidl Called")) {
                return "AIDL";
            }
            if (message.endsWith(", Hidl Called")) {
                return "HIDL";
            }
        }
        return "?";
    }

    /** The first ERROR line of the call, without the library's prefix. */
    static String firstError(String[] lines) {
        for (String line : lines) {
            if (line.startsWith("E/")) {
                String message = messageOf(line);
                String prefix = "ZtMmiTest_jni: ";
                return message.startsWith(prefix) ? message.substring(prefix.length()) : message;
            }
        }
        return null;
    }

    private static String messageOf(String briefLine) {
        int colon = briefLine.indexOf(": ");
        return colon < 0 ? briefLine : briefLine.substring(colon + 2);
    }

    static String format(Object result) {
        if (result == Void.TYPE) {
            return "(void)";
        }
        if (result == null) {
            return "null";
        }
        if (result instanceof Annotated) {
            Annotated annotated = (Annotated) result;
            return format(annotated.value()) + " (" + annotated.remark() + ")";
        }
        if (result instanceof String) {
            return "\"" + result + "\"";
        }
        if (result instanceof int[]) {
            int[] values = (int[]) result;
            if (values.length > 8) {
                return "int[" + values.length + "] " + Arrays.toString(Arrays.copyOf(values, 6)).replace("]", ", ...]");
            }
            return Arrays.toString(values);
        }
        return String.valueOf(result);
    }

    private void build() {
        MmiNativeManager m = manager;
        Group factory = new Group("Factory interface", "factory");
        factory.add("isFactoryVersionNative", "", () -> m.isFactoryVersionNative())
                .add("getManufactureFileNameNative", "", () -> m.getManufactureFileNameNative())
                .add("getBsnNative", "", () -> m.getBsnNative())
                .add("getTestApkPackageNameNative", "", () -> m.getTestApkPackageNameNative())
                .add("getManufactureModeNative", "", () -> m.getManufactureModeNative())
                .add("getMmiDeviceFeaturesCheckResultNative", "1", () -> m.getMmiDeviceFeaturesCheckResultNative(1))
                .add("getMmiAutoStartFlagNative", "", () -> m.getMmiAutoStartFlagNative())
                .add("getManufactureStationFlagNative", "1", () -> m.getManufactureStationFlagNative(1))
                .add("setTestCycleNative", "3, 7", () -> m.setTestCycleNative(3, 7))
                .add("setMmiResultNative", "12, 1", () -> m.setMmiResultNative(12, 1))
                .add("sendBigDataOperationNative", "{cmd 143, op 2, station MMI1}",
                        () -> m.sendBigDataOperationNative(new BigDataOperation(1, 143, 2, "ZT26A0012345", "MMI1", 1)))
                .add("sendBigDataValueNative", "{item 7, als_lux 312}", () -> m.sendBigDataValueNative(bigDataValue()))
                .add("getOeminfoNative", "1, 0, 64", () -> m.getOeminfoNative(1, 0, 64))
                .add("getVerifySignatureResultNative", "byte[4]",
                        () -> m.getVerifySignatureResultNative(new byte[] {(byte) 0x5f, (byte) 0x3a, (byte) 0x9c, 0x0e}))
                .add("setMockCardTestModeNative", "\"1\"", () -> m.setMockCardTestModeNative("1"))
                .add("getMockCardTestResultNative", "", () -> m.getMockCardTestResultNative())
                .add("getDeviceInfoNative", "35", () -> m.getDeviceInfoNative(35))
                .add("getRsaSignInfoNative", "", () -> m.getRsaSignInfoNative())
                .add("disableMmiAutoStartNative", "\"0\"", () -> m.disableMmiAutoStartNative("0"))
                .add("nativeClearPackageName", "", () -> m.nativeClearPackageName())
                .add("releaseFactoryHidlResourceNative", "", () -> m.releaseFactoryHidlResourceNative());
        groups.add(factory);

        Group display = new Group("Display", "display");
        display.add("getScreenCurrentFpsNative", "", () -> m.getScreenCurrentFpsNative())
                .add("getScreenConfigNative", "1", () -> m.getScreenConfigNative(1))
                .add("setDisplayParameterNative", "1, 50, \"gamma\"", () -> m.setDisplayParameterNative(1, 50, "gamma"))
                .add("nativeGetDisplayPanelType", "", () -> m.nativeGetDisplayPanelType())
                .add("setDisplaySelfAdaptMinFpsNative", "60", () -> m.setDisplaySelfAdaptMinFpsNative(60))
                .add("setBackLightBrightnessNative", "200", () -> m.setBackLightBrightnessNative(200));
        groups.add(display);

        Group touch = new Group("Touch screen", "touchscreen");
        touch.add("getCapacitanceTestResultNative", "", () -> m.getCapacitanceTestResultNative())
                .add("getCapacitanceCalibrateResultNative", "1", () -> m.getCapacitanceCalibrateResultNative(1))
                .add("setTouchScreenFeatureConfigNative", "1, \"glove=on\"",
                        () -> m.setTouchScreenFeatureConfigNative(1, "glove=on"))
                .add("getRotaryCrownSelfTestNative", "", () -> m.getRotaryCrownSelfTestNative());
        groups.add(touch);

        Group fingerprint = new Group("Fingerprint", "fingerprint");
        fingerprint.add("sendCmdToFingerprintHalNative", "1", () -> m.sendCmdToFingerprintHalNative(1));
        groups.add(fingerprint);

        int light = lightSensor;
        Group sensors = new Group("Sensors", "sensors");
        sensors.add("getSensorCalibrateDelayTimeNative", "1", () -> m.getSensorCalibrateDelayTimeNative(1))
                .add("startSensorCalibrateNative", "1, 1", () -> m.startSensorCalibrateNative(1, 1))
                .add("getSensorCalibrateResultNative", "1", () -> m.getSensorCalibrateResultNative(1))
                .add("getSensorCalibrateTypeNative", "1", () -> m.getSensorCalibrateTypeNative(1))
                .add("getSensorSelfTestDelayTimeNative", "1", () -> m.getSensorSelfTestDelayTimeNative(1))
                .add("startSensorSelfTestNative", "1, 1", () -> m.startSensorSelfTestNative(1, 1))
                .add("getSensorSelfTestResultNative", "1", () -> m.getSensorSelfTestResultNative(1))
                .add("sensorActivateNative", light + ", true, 20000", () -> m.sensorActivateNative(light, true, 20000))
                .add("getCompassRawValueLimitNative", "", () -> m.getCompassRawValueLimitNative())
                .add("getFlickerFrequencyNative", Integer.toString(light), () -> m.getFlickerFrequencyNative(light))
                .add("getFlickerFrequencyAndAmplitudeNative", Integer.toString(light),
                        () -> m.getFlickerFrequencyAndAmplitudeNative(light))
                .add("getColorSensorNative", Integer.toString(COLOR_SENSOR), () -> m.getColorSensorNative(COLOR_SENSOR))
                .add("handleSensorParameterNative", light + ", 1, 2, 64", () -> m.handleSensorParameterNative(light, 1, 2, 64))
                .add("getAmbientLightParameterNative", light + ", 1, 1, 16",
                        () -> m.getAmbientLightParameterNative(light, 1, 1, 16))
                .add("setAmbientLightParameterNative", light + ", 2, 1, 16",
                        () -> m.setAmbientLightParameterNative(light, 2, 1, 16));
        groups.add(sensors);

        Group power = new Group("Power and USB", "power");
        power.add("getPowerStateNative", "\"battery\"", () -> m.getPowerStateNative("battery"))
                .add("setPowerStateNative", "\"sleep\", \"1\"", () -> m.setPowerStateNative("sleep", "1"))
                .add("checkUsbSpeedNative", "\"usb3\"", () -> m.checkUsbSpeedNative("usb3"));
        groups.add(power);

        Group lights = new Group("Light", "light");
        lights.add("setLightBrightnessNative", "2, 100", () -> m.setLightBrightnessNative(2, 100));
        groups.add(lights);

        Group vibrator = new Group("Vibrator", "vibrator");
        vibrator.add("setVibratorParameterNative", "\"f0=170\"", () -> m.setVibratorParameterNative("f0=170"))
                .add("getVibratorCalibrateResultNative", "\"f0\"", () -> m.getVibratorCalibrateResultNative("f0"));
        groups.add(vibrator);

        Group camera = new Group("Camera always-on service", "camera");
        camera.add("getCapabilitiesNative", "", () -> m.getCapabilitiesNative())
                .add("getVaelonOvertimeNative", "1", () -> m.getVaelonOvertimeNative(1))
                .add("registerClientNative", "1", () -> registerAndReceiveEvent())
                .add("unregisterClientNative", "", () -> m.unregisterClientNative());
        groups.add(camera);

        Group panel = new Group("Video interpolation (panel-processor library)", null);
        panel.add("getVideoInterpolationDefaultModelNative", "", () -> m.getVideoInterpolationDefaultModelNative())
                .add("getVideoInterpolationModelNative", "", () -> m.getVideoInterpolationModelNative())
                .add("setVideoInterpolationModelNative", "1, 120", () -> m.setVideoInterpolationModelNative(1, 120))
                .add("recoverInperpolateFreshRateNative", "", () -> m.recoverInperpolateFreshRateNative());
        groups.add(panel);
    }

    /** A result with a remark of the demo's own. */
    record Annotated(Object value, String remark) {}

    /** Registers the camera client; once registered, the service reports one event to it. */
    private Object registerAndReceiveEvent() {
        int result = manager.registerClientNative(1);
        if (result != 0) {
            return result;
        }
        int before = MmiNativeManager.getRegisterSuccessCount();
        boolean delivered = SimulatedHandset.notifyCameraEvent(0);
        int received = MmiNativeManager.getRegisterSuccessCount() - before;
        return new Annotated(result, "camera event " + (delivered ? "delivered" : "not delivered")
                + ", RegisterSuccess called " + received + "x");
    }

    private static BigDataValue bigDataValue() {
        BigDataValue value = new BigDataValue();
        value.setVersion(1);
        value.setDataSource(2);
        value.setErrorCode(0);
        value.setItemId(7);
        value.setCycle(1);
        value.setDeviceName("als");
        value.setStation("MMI1");
        value.setTestName("als_lux");
        value.setBsn("ZT26A0012345");
        value.setValue("312");
        value.setThresholdMin("100");
        value.setThresholdMax("1000");
        value.setResult("PASS");
        value.setTime("2026-01-01 08:00:00");
        value.setFirmware("v1.2");
        value.setDescription("ambient light at the lamp");
        return value;
    }
}
