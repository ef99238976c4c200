package com.corvex.mmitest.bench;

import com.corvex.mmitest.controller.MmiNativeManager;

import java.util.concurrent.CyclicBarrier;
import java.util.concurrent.atomic.AtomicLong;

/**
 * Drives the library from Java threads for the throughput benchmark: each thread calls
 * {@code getBsnNative()} on its own {@link MmiNativeManager} until the time is up, and checks
 * every answer.
 */
public final class ThroughputDriver {
    private ThroughputDriver() {}

    /**
     * Runs {@code threads} Java threads for {@code millis} milliseconds after a common start.
     * Returns {total calls, elapsed nanoseconds from the start to the last thread's end}, or
     * {-1, 0} when any answer was not {@code expected}.
     */
    public static long[] run(int threads, long millis, String expected) throws Exception {
        final CyclicBarrier start = new CyclicBarrier(threads + 1);
        final AtomicLong total = new AtomicLong();
        final AtomicLong wrong = new AtomicLong();
        Thread[] workers = new Thread[threads];
        for (int t = 0; t < threads; ++t) {
            workers[t] = new Thread(() -> {
                MmiNativeManager manager = new MmiNativeManager();
                long calls = 0;
                long bad = 0;
                try {
                    start.await();
                } catch (Exception e) {
                    wrong.incrementAndGet();
                    return;
                }
                final long deadline = System.nanoTime() + millis * 1_000_000L;
                do {
                    // Batches of 64 calls between clock reads.
                    for (int i = 0; i < 64; ++i) {
                        if (!expected.equals(manager.getBsnNative())) ++bad;
                    }
                    calls += 64;
                } while (System.nanoTime() < deadline);
                total.addAndGet(calls);
                wrong.addAndGet(bad);
            }, "throughput-" + t);
            workers[t].start();
        }
        start.await();
        final long startedAt = System.nanoTime();
        for (Thread worker : workers) worker.join();
        final long elapsed = System.nanoTime() - startedAt;
        if (wrong.get() != 0) return new long[] {-1, 0};
        return new long[] {total.get(), elapsed};
    }
}
