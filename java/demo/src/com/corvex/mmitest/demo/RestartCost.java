package com.corvex.mmitest.demo;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.SimulatedHandset;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;

/**
 * What a restart of the application on the simulated handset costs: the time of each
 * {@link SimulatedHandset#reset()}, the process's resident memory before and after many of
 * them, and the copies of libZtMmi_jni.so that stay mapped.
 *
 * <pre>
 * restart-cost [--device NAME|FILE] [--restarts N]
 * </pre>
 */
public final class RestartCost {
    private RestartCost() {}

    public static void main(String[] args) throws IOException {
        String device = "aidl";
        int restarts = 500;
        for (int i = 0; i + 1 < args.length; i += 2) {
            if (args[i].equals("--device")) {
                device = args[i + 1];
            } else if (args[i].equals("--restarts")) {
                restarts = Integer.parseInt(args[i + 1]);
            } else {
                throw new IllegalArgumentException("usage: restart-cost [--device NAME|FILE] [--restarts N]");
            }
        }
        SimulatedHandset.useProfile(device);
        MmiNativeManager manager = new MmiNativeManager();
        manager.getBsnNative();
        for (int i = 0; i < 20; i++) {
            SimulatedHandset.reset();  // warm-up: the JIT, the loader's caches
        }
        System.gc();
        long residentBefore = residentKb();
        double[] millis = new double[restarts];
        for (int i = 0; i < restarts; i++) {
            long start = System.nanoTime();
            SimulatedHandset.reset();
            millis[i] = (System.nanoTime() - start) / 1e6;
            manager.getBsnNative();
        }
        System.gc();
        long residentAfter = residentKb();
        Arrays.sort(millis);
        double total = Arrays.stream(millis).sum();
        System.out.printf("%d restarts on %s: %.2f ms each on average (median %.2f, fastest %.2f, slowest %.2f)%n",
                restarts, SimulatedHandset.profileName(), total / restarts, millis[restarts / 2], millis[0],
                millis[restarts - 1]);
        System.out.printf("resident memory: %d kB before, %d kB after (%+d kB, %+.2f kB per restart)%n", residentBefore,
                residentAfter, residentAfter - residentBefore, (residentAfter - residentBefore) / (double) restarts);
        printMappedCopies();
    }

    private static long residentKb() throws IOException {
        for (String line : Files.readAllLines(Path.of("/proc/self/status"))) {
            if (line.startsWith("VmRSS:")) {
                return Long.parseLong(line.replaceAll("[^0-9]", ""));
            }
        }
        return -1;
    }

    // Each mapped file of the library with its resident and private (never shared) memory.
    private static void printMappedCopies() throws IOException {
        List<String> smaps = Files.readAllLines(Path.of("/proc/self/smaps"));
        String file = null;
        java.util.Map<String, long[]> files = new java.util.LinkedHashMap<>();
        for (String line : smaps) {
            if (line.matches("^[0-9a-f]+-[0-9a-f]+ .*")) {
                int slash = line.indexOf('/');
                file = slash >= 0 && line.contains("libZtMmi_jni") ? line.substring(slash) : null;
                if (file != null) {
                    files.putIfAbsent(file, new long[3]);
                }
            } else if (file != null) {
                long[] sizes = files.get(file);
                long kb = line.matches("^\\w+:\\s+\\d+ kB$") ? Long.parseLong(line.replaceAll("[^0-9]", "")) : 0;
                if (line.startsWith("Size:")) {
                    sizes[0] += kb;
                } else if (line.startsWith("Rss:")) {
                    sizes[1] += kb;
                } else if (line.startsWith("Private_Clean:") || line.startsWith("Private_Dirty:")) {
                    sizes[2] += kb;
                }
            }
        }
        System.out.println("libZtMmi_jni mapped " + files.size() + " times:");
        files.forEach((name, sizes) -> System.out.printf("  %s: %d kB mapped, %d kB resident, %d kB private%n", name,
                sizes[0], sizes[1], sizes[2]));
    }
}
