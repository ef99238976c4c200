package com.corvex.mmitest.sim;

/**
 * The simulated handset for JVM runs on a workstation: fake hardware services in this
 * process that libZtMmi_jni connects to instead of a device's.
 *
 * <p>A test serves a device profile first ({@link #useProfile}), then uses
 * {@code MmiNativeManager} as the application does. Between tests, {@link #reset()} brings
 * back the profile's services and answers and forgets the log. Serving another profile, or
 * resetting, while the library is loaded unloads and loads it again, as a restart of the
 * application on another handset would.
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
     * Brings back the services and answers of the profile in force, as it was loaded, and
     * forgets the captured log.
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
     * thread of its own. True once the client handled it; false when the service is not
     * running or no client is registered.
     */
    public static native boolean notifyCameraEvent(int serviceResult);

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
