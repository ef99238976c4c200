package com.corvex.mmitest.sim;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.Objects;

/**
 * The simulated handset for JVM runs on a workstation: fake hardware services in this
 * process that libZtMmi_jni connects to instead of a device's.
 *
 * <p>A test serves a device profile first ({@link #useProfile}), then uses
 * {@code MmiNativeManager} as the application does. Between tests, {@link #reset()} brings
 * back the profile's services and answers and forgets the log. Serving another profile, or
 * resetting, once the library is loaded restarts the application on the handset: the
 * library in use unloads, whatever it registered with the services is dropped as the
 * process's death would drop it, and a fresh instance of the library (a private copy of
 * its file, with fresh state) loads and connects. {@code MmiNativeManager}'s static Java
 * fields are the application's own and keep their values. Call it while no native method
 * runs on another thread.
 *
 * <p>JUnit 5 tests can leave all this to {@link SimulatedHandsetExtension}.
 *
 * <p>Families are named {@link #FACTORY}, {@link #DISPLAY}, {@link #TOUCHSCREEN},
 * {@link #FINGERPRINT}, {@link #SENSORS}, {@link #POWER}, {@link #LIGHT}, {@link #CAMERA}
 * and {@link #VIBRATOR}. Answer keys are those of the profile format (see the README): a
 * path below the family's "answers" object with dots between levels, such as
 * {@code "serialNumber"}, {@code "stationFlags.3"} or {@code "flicker.frequencyHz"}.
 */
public final class SimulatedHandset {
    static {
        System.loadLibrary("mmi_sim_jni");
    }

    public static final String FACTORY = "factory";
    public static final String DISPLAY = "display";
    public static final String TOUCHSCREEN = "touchscreen";
    public static final String FINGERPRINT = "fingerprint";
    public static final String SENSORS = "sensors";
    public static final String POWER = "power";
    public static final String LIGHT = "light";
    public static final String CAMERA = "camera";
    public static final String VIBRATOR = "vibrator";

    /** Every family, in the order the library connects them. */
    public static final String[] FAMILIES = {
        FACTORY, DISPLAY, TOUCHSCREEN, FINGERPRINT, SENSORS, POWER, LIGHT, CAMERA, VIBRATOR
    };

    /**
     * One call as a family's service received it: the generation that served it ("aidl"
     * or "hidl"), for HIDL the interface version the service serves ("1.1"; empty over
     * AIDL), the method, and the arguments as the service saw them, as text.
     */
    public static final class ServiceCall {
        private final String generation;
        private final String version;
        private final String method;
        private final List<String> args;

        public ServiceCall(String generation, String version, String method, List<String> args) {
            this.generation = Objects.requireNonNull(generation);
            this.version = Objects.requireNonNull(version);
            this.method = Objects.requireNonNull(method);
            this.args = Collections.unmodifiableList(new ArrayList<>(args));
        }

        public String generation() {
            return generation;
        }

        public String version() {
            return version;
        }

        public String method() {
            return method;
        }

        public List<String> args() {
            return args;
        }

        @Override
        public boolean equals(Object other) {
            if (!(other instanceof ServiceCall)) {
                return false;
            }
            ServiceCall call = (ServiceCall) other;
            return generation.equals(call.generation) && version.equals(call.version) && method.equals(call.method)
                    && args.equals(call.args);
        }

        @Override
        public int hashCode() {
            return Objects.hash(generation, version, method, args);
        }

        /** For example {@code hidl@1.1 getDeviceInfo(0)} or {@code aidl setPowerState(mmi, sleep, 1)}. */
        @Override
        public String toString() {
            return generation + (version.isEmpty() ? "" : "@" + version) + " " + method + "(" + String.join(", ", args)
                    + ")";
        }
    }

    private SimulatedHandset() {}

    // --- profiles ---------------------------------------------------------------------

    /**
     * Serves a device profile: a shipped one by name ("aidl", "hidl", "legacy", "mixed",
     * "bare") or a profile file by path (anything containing '/' or ending in ".json").
     *
     * @throws IllegalArgumentException for an unknown name or a malformed file; the
     *     message names the file, the place in it and what is wrong
     */
    public static native void useProfile(String nameOrFile);

    /** The name of the profile in force, or null before the first {@link #useProfile}. */
    public static native String profileName();

    /** The file the profile in force came from, or null. */
    public static native String profileSource();

    /** The description of the profile in force, or null. */
    public static native String profileDescription();

    /** How the profile in force serves the family: "aidl", "hidl" or "none". */
    public static native String serviceOf(String family);

    /** Names of the shipped profiles, sorted. */
    public static native String[] shippedProfiles();

    /**
     * Brings back the services, answers and faults of the profile in force, as it was
     * loaded (the panel library's too), forgets the captured log, and restarts the
     * application on the handset.
     */
    public static native void reset();

    // --- answers ----------------------------------------------------------------------

    /**
     * Changes one answer; the value is JSON text in the profile format, for example
     * {@code setAnswerJson("factory", "serialNumber", "{\"ret\": 2, \"text\": \"\"}")}.
     * It takes effect at the next service call.
     *
     * @throws IllegalArgumentException for an unknown family or key, or a value of the
     *     wrong kind (the message says which)
     */
    public static native void setAnswerJson(String family, String key, String json);

    /** Changes a text answer. */
    public static void setAnswer(String family, String key, String text) {
        setAnswerJson(family, key, quote(text));
    }

    /** Changes an integer answer. */
    public static void setAnswer(String family, String key, int value) {
        setAnswerJson(family, key, Integer.toString(value));
    }

    /** Changes a number answer (such as "flicker.frequencyHz"). */
    public static void setAnswer(String family, String key, double value) {
        if (Double.isNaN(value) || Double.isInfinite(value)) {
            throw new IllegalArgumentException(family + "." + key + ": " + value + " is not a number an answer can be");
        }
        setAnswerJson(family, key, Double.toString(value));
    }

    /** Changes a true/false answer. */
    public static void setAnswer(String family, String key, boolean value) {
        setAnswerJson(family, key, Boolean.toString(value));
    }

    /** Changes an answer that is a list of integers (such as "sensorData.6"). */
    public static void setAnswer(String family, String key, int[] values) {
        StringBuilder json = new StringBuilder("[");
        for (int i = 0; i < values.length; i++) {
            if (i > 0) json.append(',');
            json.append(values[i]);
        }
        setAnswerJson(family, key, json.append(']').toString());
    }

    /** The answer in force at the key as JSON text; the empty key gives all of the family's. */
    public static native String answerJson(String family, String key);

    // --- services ---------------------------------------------------------------------

    /**
     * Kills a family's services: their calls fail from now on and death notices go out to
     * the library, which handles them on threads of its own; see
     * {@link #awaitDeathHandled}.
     */
    public static native void kill(String family);

    /** Starts a family's services again as the profile says; see {@link #awaitNoticesDelivered}. */
    public static native void start(String family);

    /** Whether the family's services run. */
    public static native boolean isRunning(String family);

    /**
     * Waits until the library has handled the death of the family's service (it has
     * dropped its connections), at most the given time. False when the time ran out.
     */
    public static native boolean awaitDeathHandled(String family, long timeoutMillis);

    /**
     * Waits until every death and registration notice sent so far has been handled (after
     * {@link #start}, the library has connected again), at most the given time. False when
     * the time ran out.
     */
    public static native boolean awaitNoticesDelivered(long timeoutMillis);

    /**
     * Makes the camera always-on service report an event to its registered client, from a
     * thread of its own that is attached to the Java VM (as the application's binder
     * threads are). True once the client handled it; false when the service is not
     * running or no client is registered.
     *
     * @throws IllegalStateException when the library left a Java exception pending on that
     *     thread (a device's runtime aborts on one), for example one thrown by
     *     {@code RegisterSuccess}
     */
    public static native boolean notifyCameraEvent(int serviceResult);

    /** The same from a thread the Java VM does not know (never attached to it). */
    public static native boolean notifyCameraEventFromUnattachedThread(int serviceResult);

    /**
     * The library unloads (as at a restart), then the camera service reports an event to
     * the client callback the library had registered, then the application restarts as
     * {@link #reset()} restarts it but with the services and answers as they are. True when
     * the event reached the callback; false when no client was registered.
     */
    public static native boolean notifyCameraEventAfterUnload(int serviceResult);

    // --- what the services received --------------------------------------------------

    /** Every call the family's services received since the profile was served or reset, in order. */
    public static List<ServiceCall> calls(String family) {
        List<ServiceCall> calls = new ArrayList<>();
        for (String[] row : callRecords(family)) {
            calls.add(new ServiceCall(row[0], row[1], row[2], Arrays.asList(row).subList(3, row.length)));
        }
        return calls;
    }

    /** The calls of {@link #calls} to one method. */
    public static List<ServiceCall> callsTo(String family, String method) {
        List<ServiceCall> calls = new ArrayList<>();
        for (ServiceCall call : calls(family)) {
            if (call.method().equals(method)) {
                calls.add(call);
            }
        }
        return calls;
    }

    private static native String[][] callRecords(String family);

    // --- faults -------------------------------------------------------------------------

    /**
     * Makes every call to the family's services fail in transport (on) while they stay up
     * and registered, or stops it (off). A failed call does not reach the service and is
     * not in {@link #calls}.
     *
     * @throws IllegalArgumentException when the family is not served
     */
    public static native void failCalls(String family, boolean on);

    /**
     * Makes the family's HIDL services return from every call that answers through a
     * result callback without calling it (on), or stops it (off).
     *
     * @throws IllegalArgumentException when the family is not served over HIDL
     */
    public static native void skipCallbacks(String family, boolean on);

    /** Makes every call to the family's services take this long before it is answered (0: none). */
    public static native void setLatency(String family, int millis);

    /**
     * Starts the family's services (killed, or not started yet) this long after the
     * library begins to wait for them, and returns at once. Over AIDL the library waits for
     * a declared service when it loads and when it recovers from a death; it never waits
     * for a HIDL service, which is then started this long after the call.
     */
    public static native void startLater(String family, int millis);

    // --- the display processor's vendor library -----------------------------------------

    /** Whether the handset has the panel library (libpixelworksMMITest.so on the loader's path). */
    public static native boolean hasPanelLibrary();

    /**
     * What the panel library's getModes answers: the text (null: a null pointer) and the
     * length it reports, which need not be the text's.
     *
     * @throws IllegalStateException when the handset has no panel library
     */
    public static native void setPanelModes(String text, int length);

    /** What setVideoInterpolationMode, GetCurrentMode and RecoverFreshRate answer. */
    public static native void setPanelResults(int setModeResult, int currentMode, int recoverResult);

    /**
     * The calls the panel library received (the newest 1024), in order, as text such as
     * {@code "setVideoInterpolationMode(1, 120)"} or {@code "getModes()"}.
     */
    public static native String[] panelCalls();

    // --- the log ----------------------------------------------------------------------

    /** Every log line captured so far (since the last clear), in logcat's brief format. */
    public static native String[] logLines();

    /** A mark for {@link #logLinesSince} and {@link #awaitLogLine}: the lines written so far. */
    public static native long logMark();

    /** The log lines written after the mark. */
    public static native String[] logLinesSince(long mark);

    /**
     * Waits until a line written after the mark contains the text, at most the given time.
     * False when the time ran out.
     */
    public static native boolean awaitLogLine(long mark, String text, long timeoutMillis);

    /** Forgets the log lines captured so far. */
    public static native void clearLog();

    // --- flicker ----------------------------------------------------------------------

    /**
     * The 256 raw samples (1000 Hz) of the profile's flicker light, or null when the
     * profile has no light in front of the sensor.
     */
    public static native int[] lightSamples();

    /**
     * The flicker detector's magnitudes of bins 0 to 499 for 256 raw samples (bin k is
     * k * 1000 / 1024 Hz).
     */
    public static native float[] flickerSpectrum(int[] samples);

    /** The frequency the flicker detector reports for 256 raw samples at 1000 Hz. */
    public static native int detectFlickerFrequency(int[] samples);

    /**
     * The frequency the flicker detector reports for 256 raw samples (the first 256 of the
     * array) when the first {@code windowLength} filtered samples are windowed and the
     * sampling rate is {@code sampleRate} (the library's own calls use 256 and 1000).
     *
     * @throws IllegalArgumentException for fewer than 256 samples or a window longer than 300
     */
    public static native int detectFlickerFrequency(int[] samples, int windowLength, float sampleRate);

    private static String quote(String text) {
        if (text == null) {
            throw new NullPointerException("text is null");
        }
        StringBuilder json = new StringBuilder("\"");
        for (int i = 0; i < text.length(); i++) {
            char c = text.charAt(i);
            switch (c) {
                case '"':
                    json.append("\\\"");
                    break;
                case '\\':
                    json.append("\\\\");
                    break;
                default:
                    // Escaped beyond ASCII too: the text crosses JNI as modified UTF-8.
                    if (c < 0x20 || c >= 0x7f) {
                        json.append(String.format("\\u%04x", (int) c));
                    } else {
                        json.append(c);
                    }
            }
        }
        return json.append('"').toString();
    }
}
