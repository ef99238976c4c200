package com.corvex.mmitest.stress;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.model.BigDataOperation;
import com.corvex.mmitest.model.BigDataValue;

import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.ConcurrentLinkedQueue;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicIntegerArray;
import java.util.concurrent.atomic.AtomicLong;
import java.util.concurrent.atomic.AtomicLongArray;
import java.util.concurrent.atomic.LongAdder;
import java.util.concurrent.locks.LockSupport;

/**
 * Java threads of the application calling every native method of {@link MmiNativeManager}
 * continuously, each thread in its own seeded order, as the factory test screens do.
 *
 * <p>Every answer is written down as text (see {@link #encode}) and counted per method; the
 * native test reads the distinct answers between rounds and checks each against the answers
 * the services' states allow. A watchdog notes any call that has not returned within the
 * bound given to {@link #start}.
 */
public final class StressDriver {
    /** The 61 native methods, in the order of the library's method table. */
    public static final String[] METHODS = {
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
        "registerClientNative", "unregisterClientNative",
    };

    /** The command texts that the vibrator and NM-card operations keep (same length on purpose). */
    public static final String VIBRATOR_COMMAND = "intensity=3";
    public static final String NM_CARD_MODE = "nmcard=on:1";

    private final MmiNativeManager mManager;
    private final long mSeed;
    private final Thread[] mWorkers;
    private final AtomicLong mCalls = new AtomicLong();
    // Per worker: System.nanoTime() when its call in flight began (0: none), and which method.
    private final AtomicLongArray mStartedAt;
    private final AtomicIntegerArray mMethodInFlight;
    private final List<ConcurrentHashMap<String, LongAdder>> mAnswers = new ArrayList<>();
    private final ConcurrentLinkedQueue<String> mFailures = new ConcurrentLinkedQueue<>();

    // Progress: awaitCalls waits on it; a worker wakes it once the count reaches mWakeAt.
    private final Object mProgress = new Object();
    private volatile long mWakeAt = Long.MAX_VALUE;

    // The gate the workers pass between calls: open while running, shut while paused.
    private final Object mGate = new Object();
    private volatile boolean mOpen;
    private boolean mStopped;  // guarded by mGate
    private int mWaiting;      // workers waiting at the shut gate, guarded by mGate

    private volatile String mStall;
    private Thread mWatchdog;

    public StressDriver(MmiNativeManager manager, int threads, long seed) {
        mManager = manager;
        mSeed = seed;
        mWorkers = new Thread[threads];
        mStartedAt = new AtomicLongArray(threads);
        mMethodInFlight = new AtomicIntegerArray(threads);
        for (int i = 0; i < METHODS.length; ++i) mAnswers.add(new ConcurrentHashMap<>());
    }

    /** Starts the workers with the gate shut, and the watchdog with its bound. */
    public void start(long boundMillis) {
        for (int i = 0; i < mWorkers.length; ++i) {
            final int index = i;
            mWorkers[i] = new Thread(() -> work(index), "mmi-stress-" + i);
            mWorkers[i].start();
        }
        final long boundNanos = TimeUnit.MILLISECONDS.toNanos(boundMillis);
        mWatchdog = new Thread(() -> watch(boundNanos), "mmi-stress-watchdog");
        mWatchdog.setDaemon(true);
        mWatchdog.start();
    }

    /** Opens the gate: every worker calls continuously. */
    public void resume() {
        synchronized (mGate) {
            mOpen = true;
            mGate.notifyAll();
        }
    }

    /**
     * Shuts the gate and waits until every worker has finished its call in flight; false when
     * that takes longer than the time given (a call hangs).
     */
    public boolean pause(long timeoutMillis) throws InterruptedException {
        final long deadline = System.nanoTime() + TimeUnit.MILLISECONDS.toNanos(timeoutMillis);
        synchronized (mGate) {
            mOpen = false;
            while (mWaiting < mWorkers.length) {
                final long left = deadline - System.nanoTime();
                if (left <= 0) return false;
                TimeUnit.NANOSECONDS.timedWait(mGate, left);
            }
            return true;
        }
    }

    /** Ends the workers (call while paused); false when one does not end in time. */
    public boolean stop(long timeoutMillis) throws InterruptedException {
        synchronized (mGate) {
            mStopped = true;
            mOpen = false;
            mGate.notifyAll();
        }
        final long deadline = System.nanoTime() + TimeUnit.MILLISECONDS.toNanos(timeoutMillis);
        for (Thread worker : mWorkers) {
            worker.join(Math.max(1, TimeUnit.NANOSECONDS.toMillis(deadline - System.nanoTime())));
            if (worker.isAlive()) return false;
        }
        return true;
    }

    /** Calls made so far by all workers. */
    public long calls() {
        return mCalls.get();
    }

    /**
     * Waits until the workers have made `count` calls in all; false when the time is up first
     * or the watchdog has seen a call that does not return.
     */
    public boolean awaitCalls(long count, long timeoutMillis) throws InterruptedException {
        final long deadline = System.nanoTime() + TimeUnit.MILLISECONDS.toNanos(timeoutMillis);
        synchronized (mProgress) {
            mWakeAt = count;
            try {
                while (mCalls.get() < count && mStall == null) {
                    final long left = deadline - System.nanoTime();
                    if (left <= 0) return false;
                    TimeUnit.NANOSECONDS.timedWait(mProgress, left);
                }
            } finally {
                mWakeAt = Long.MAX_VALUE;
            }
            return mStall == null;
        }
    }

    /** The call the watchdog found running longer than its bound, or null. */
    public String stall() {
        return mStall;
    }

    /** Java exceptions the native methods threw (there should be none). */
    public String[] failures() {
        return mFailures.toArray(new String[0]);
    }

    /**
     * The distinct answers of one method since the last drain, each as "count TAB answer",
     * and forgets them (call while paused).
     */
    public String[] drainAnswers(int method) {
        final ConcurrentHashMap<String, LongAdder> answers = mAnswers.get(method);
        final List<String> drained = new ArrayList<>();
        for (Map.Entry<String, LongAdder> entry : answers.entrySet()) {
            drained.add(entry.getValue().sum() + "\t" + entry.getKey());
        }
        answers.clear();
        return drained.toArray(new String[0]);
    }

    /** One call of the method on the calling thread, with the workers' arguments. */
    public String callOnce(int method) {
        return call(method, new Arguments());
    }

    /** `times` calls of the method on the calling thread; the last answer. */
    public String callRepeatedly(int method, int times) {
        final Arguments arguments = new Arguments();
        String answer = null;
        for (int i = 0; i < times; ++i) answer = call(method, arguments);
        return answer;
    }

    private void work(int index) {
        final Random random = new Random(mSeed * 1_000_003L + index);
        final Arguments arguments = new Arguments();
        final int[] order = new int[METHODS.length];
        for (int i = 0; i < order.length; ++i) order[i] = i;
        while (waitForGate()) {
            // A new seeded order for every pass over all methods.
            for (int i = order.length - 1; i > 0; --i) {
                final int j = random.nextInt(i + 1);
                final int swap = order[i];
                order[i] = order[j];
                order[j] = swap;
            }
            for (int method : order) {
                if (!mOpen) break;
                mMethodInFlight.set(index, method);
                mStartedAt.set(index, System.nanoTime() | 1);
                String answer;
                try {
                    answer = call(method, arguments);
                } catch (Throwable t) {
                    mFailures.add(METHODS[method] + " threw " + t);
                    answer = "threw " + t.getClass().getName();
                }
                mStartedAt.set(index, 0);
                mAnswers.get(method).computeIfAbsent(answer, key -> new LongAdder()).increment();
                if (mCalls.incrementAndGet() >= mWakeAt) {
                    synchronized (mProgress) {
                        mProgress.notifyAll();
                    }
                }
            }
        }
    }

    // Waits while the gate is shut; false once the driver is stopped.
    private boolean waitForGate() {
        synchronized (mGate) {
            ++mWaiting;
            mGate.notifyAll();
            try {
                while (!mOpen && !mStopped) mGate.wait();
            } catch (InterruptedException e) {
                Thread.currentThread().interrupt();
                return false;
            } finally {
                --mWaiting;
            }
            return !mStopped;
        }
    }

    private void watch(long boundNanos) {
        while (mStall == null) {
            LockSupport.parkNanos(TimeUnit.MILLISECONDS.toNanos(100));
            final long now = System.nanoTime();
            for (int i = 0; i < mWorkers.length; ++i) {
                final long started = mStartedAt.get(i);
                if (started != 0 && now - started > boundNanos) {
                    mStall = METHODS[mMethodInFlight.get(i)] + " on " + mWorkers[i].getName() + " has not returned for "
                            + TimeUnit.NANOSECONDS.toMillis(now - started) + " ms";
                    synchronized (mProgress) {
                        mProgress.notifyAll();
                    }
                    return;
                }
            }
        }
    }

    /** The arguments one thread passes: plausible values as a test screen would send. */
    private static final class Arguments {
        final BigDataOperation operation = new BigDataOperation(1, 100, 2, "BSN-OP", "ST3", 4);
        final BigDataValue value = new BigDataValue();
        final byte[] signature = {(byte) 0xAB, 0x01};

        Arguments() {
            value.setVersion(1);
            value.setDataSource(2);
            value.setErrorCode(3);
            value.setItemId(4);
            value.setCycle(5);
            value.setDeviceName("als");
            value.setStation("ST3");
            value.setTestName("flicker");
            value.setBsn("BSN-VAL");
            value.setValue("240");
            value.setThresholdMin("50");
            value.setThresholdMax("500");
            value.setResult("pass");
            value.setTime("2024-05-01 10:00:00");
            value.setFirmware("fw-1.2");
            value.setDescription("stress");
        }
    }

    private String call(int method, Arguments a) {
        final MmiNativeManager m = mManager;
        switch (method) {
            case 0: return encode(m.isFactoryVersionNative());
            case 1: return encode(m.getManufactureFileNameNative());
            case 2: return encode(m.releaseFactoryHidlResourceNative());
            case 3: return encode(m.setMmiResultNative(7, 1));
            case 4: return encode(m.sendCmdToFingerprintHalNative(12));
            case 5: return encode(m.getCapacitanceTestResultNative());
            case 6: return encode(m.getCapacitanceCalibrateResultNative(5));
            case 7: return encode(m.getSensorCalibrateDelayTimeNative(2));
            case 8: return encode(m.getSensorSelfTestDelayTimeNative(2));
            case 9: return encode(m.startSensorCalibrateNative(2, 1));
            case 10: return encode(m.startSensorSelfTestNative(2, 1));
            case 11: return encode(m.getSensorCalibrateResultNative(2));
            case 12: return encode(m.getSensorSelfTestResultNative(2));
            case 13: return encode(m.setLightBrightnessNative(2, 128));
            case 14: return encode(m.getBsnNative());
            case 15: return encode(m.getTestApkPackageNameNative());
            case 16: return encode(m.getPowerStateNative("battery"));
            case 17: return encode(m.getSensorCalibrateTypeNative(2));
            case 18: return encode(m.sendBigDataOperationNative(a.operation));
            case 19: return encode(m.sendBigDataValueNative(a.value));
            case 20: return encode(m.checkUsbSpeedNative("usb-scene"));
            case 21: return encode(m.getMmiAutoStartFlagNative());
            case 22: return encode(m.disableMmiAutoStartNative("0"));
            case 23: return encode(m.getCompassRawValueLimitNative());
            case 24: return encode(m.getManufactureStationFlagNative(3));
            case 25: return encode(m.setTestCycleNative(3, 7));
            case 26: return encode(m.getManufactureModeNative());
            case 27: return encode(m.setPowerStateNative("scene", "para"));
            case 28:
                m.setVibratorParameterNative(VIBRATOR_COMMAND);
                return "void";
            case 29: return encode(m.getVibratorCalibrateResultNative("f0"));
            case 30: return encode(m.getMmiDeviceFeaturesCheckResultNative(9));
            case 31: return encode(m.getOeminfoNative(1, 0, 16));
            case 32: return encode(m.sensorActivateNative(4, true, 200));
            case 33: return encode(m.getFlickerFrequencyNative(5));
            case 34: return encode(m.handleSensorParameterNative(4, 1, 2, 16));
            case 35: return encode(m.getAmbientLightParameterNative(4, 1, 2, 16));
            case 36: return encode(m.setAmbientLightParameterNative(4, 1, 2, 16));
            case 37: return encode(m.setTouchScreenFeatureConfigNative(3, "glove=1"));
            case 38: return encode(m.getScreenCurrentFpsNative());
            case 39: return encode(m.getScreenConfigNative(1));
            case 40: return encode(m.setDisplayParameterNative(2, 5, "scene-data"));
            case 41: return encode(m.getVerifySignatureResultNative(a.signature));
            case 42: return encode(m.setMockCardTestModeNative(NM_CARD_MODE));
            case 43: return encode(m.getMockCardTestResultNative());
            case 44: return encode(m.getRotaryCrownSelfTestNative());
            case 45: return encode(m.getVideoInterpolationDefaultModelNative());
            case 46: return encode(m.getVideoInterpolationModelNative());
            case 47: return encode(m.setVideoInterpolationModelNative(1, 60));
            case 48: return encode(m.recoverInperpolateFreshRateNative());
            case 49: return encode(m.getColorSensorNative(6));
            case 50: return encode(m.getDeviceInfoNative(77));
            case 51: return encode(m.nativeClearPackageName());
            case 52: return encode(m.setBackLightBrightnessNative(200));
            case 53: return encode(m.nativeGetDisplayPanelType());
            case 54: return encode(m.getRsaSignInfoNative());
            case 55: return encode(m.setDisplaySelfAdaptMinFpsNative(30));
            case 56: return encode(m.getFlickerFrequencyAndAmplitudeNative(5));
            case 57: return encode(m.getCapabilitiesNative());
            case 58: return encode(m.getVaelonOvertimeNative(2));
            case 59: return encode(m.registerClientNative(2));
            case 60: return encode(m.unregisterClientNative());
            default: throw new IllegalArgumentException("no native method " + method);
        }
    }

    // Answers as text: booleans and ints as Java prints them, strings in double quotes, int
    // arrays as [a,b,c] (or [n x v] when longer than 8 and all equal); null as null.
    static String encode(boolean value) {
        return Boolean.toString(value);
    }

    static String encode(int value) {
        return Integer.toString(value);
    }

    static String encode(String value) {
        return value == null ? "null" : "\"" + value + "\"";
    }

    static String encode(int[] values) {
        if (values == null) return "null";
        if (values.length > 8) {
            boolean same = true;
            for (int v : values) same &= v == values[0];
            if (same) return "[" + values.length + " x " + values[0] + "]";
        }
        final StringBuilder text = new StringBuilder("[");
        for (int i = 0; i < values.length; ++i) {
            if (i > 0) text.append(',');
            text.append(values[i]);
        }
        return text.append(']').toString();
    }
}
