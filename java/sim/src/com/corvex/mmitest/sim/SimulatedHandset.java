package com.corvex.mmitest.sim;

/**
 * The simulated handset for JVM runs on a workstation: fake hardware services in this
 * process that libZtMmi_jni connects to instead of a device's. Configure it before
 * MmiNativeManager is first used, since the library connects when it loads.
 */
public final class SimulatedHandset {
    static {
        System.loadLibrary("mmi_sim_jni");
    }

    private SimulatedHandset() {}

    /** Serves the named device profile ("aidl", "hidl" or "bare"), replacing every service. */
    public static native void useProfile(String name);

    /** Kills a family's services ("factory", "display", "touchscreen", "fingerprint",
     *  "sensors", "power", "light", "camera", "vibrator"); death notices go out. */
    public static native void kill(String family);

    /** Starts a family's services again as the profile says. */
    public static native void start(String family);

    /** Every log line written so far, in logcat's brief format. */
    public static native String[] logLines();

    /** Forgets the log lines captured so far. */
    public static native void clearLog();
}
