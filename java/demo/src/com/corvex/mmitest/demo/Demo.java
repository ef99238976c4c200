package com.corvex.mmitest.demo;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.SimulatedHandset;

import java.io.IOException;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * Runs the whole factory self-test an application runs, every native method of
 * MmiNativeManager grouped by service family, on a simulated handset: a table of the calls
 * (method, backend the library chose, result), then the log in logcat's brief format.
 *
 * <pre>
 * demo [--device NAME|FILE] [--kill FAMILY]... [--flicker-plot FILE.svg]
 * </pre>
 */
public final class Demo {
    private static final String USAGE =
            "usage: demo [--device NAME|FILE] [--kill FAMILY]... [--flicker-plot FILE.svg]\n"
                    + "  --device NAME|FILE     a shipped device profile (aidl, hidl, legacy, mixed, bare, flaky)\n"
                    + "                         or a profile file; default: aidl\n"
                    + "  --kill FAMILY          kill that family's service before its tests and start it\n"
                    + "                         again after them (repeatable); families: "
                    + String.join(", ", SimulatedHandset.FAMILIES) + "\n"
                    + "  --flicker-plot FILE    write the flicker detector's spectrum of the light as SVG";
    private static final long NOTICE_TIMEOUT_MILLIS = 10_000;

    private Demo() {}

    public static void main(String[] args) {
        Options options;
        try {
            options = Options.parse(args);
        } catch (IllegalArgumentException e) {
            System.err.println("demo: " + e.getMessage());
            System.err.println(USAGE);
            System.exit(2);
            return;
        }
        try {
            SimulatedHandset.useProfile(options.device);
        } catch (IllegalArgumentException e) {
            System.err.println("demo: bad device profile: " + e.getMessage());
            System.exit(1);
            return;
        }
        int[] lightSamples = SimulatedHandset.lightSamples();
        if (options.plotFile != null && lightSamples == null) {
            System.err.println("demo: profile " + SimulatedHandset.profileName()
                    + " has no flicker light (sensors answers, \"flicker\"): there is no spectrum to plot");
            System.exit(1);
            return;
        }

        printHeader(options);
        SelfTest selfTest = new SelfTest(new MmiNativeManager(), flickerSensorId());
        for (SelfTest.Group group : selfTest.groups()) {
            if (group.family != null && options.kills.contains(group.family)) {
                runWithServiceDeath(selfTest, group);
            } else {
                selfTest.run(group, null);
            }
        }
        System.out.println();
        System.out.println(selfTest.summary());

        if (options.plotFile != null) {
            try {
                FlickerPlot plot = FlickerPlot.of(lightSamples, SimulatedHandset.profileName(),
                        Double.parseDouble(SimulatedHandset.answerJson("sensors", "flicker.frequencyHz")),
                        selfTest.measuredFlickerFrequency());
                plot.write(options.plotFile);
                System.out.println("Flicker spectrum written to " + options.plotFile + ": " + plot.describe());
            } catch (IOException e) {
                System.err.println("demo: cannot write " + options.plotFile + ": " + e.getMessage());
                System.exit(1);
                return;
            }
        }

        System.out.println();
        System.out.println("Log (logcat -v brief)");
        for (String line : SimulatedHandset.logLines()) {
            System.out.println(line);
        }
        if (selfTest.methodsCalled() != SelfTest.NATIVE_METHODS) {
            System.err.println("demo: only " + selfTest.methodsCalled() + " of " + SelfTest.NATIVE_METHODS
                    + " native methods were called");
            System.exit(3);
        }
    }

    private static void printHeader(Options options) {
        System.out.println("Simulated handset: " + SimulatedHandset.profileName() + " (" + SimulatedHandset.profileSource()
                + ")");
        String description = SimulatedHandset.profileDescription();
        if (description != null && !description.isEmpty()) {
            System.out.println("  " + description);
        }
        StringBuilder services = new StringBuilder("  services:");
        for (String family : SimulatedHandset.FAMILIES) {
            services.append(' ').append(family).append('=').append(SimulatedHandset.serviceOf(family));
        }
        System.out.println(services);
        if (!options.kills.isEmpty()) {
            System.out.println("  killed during the run: " + String.join(", ", options.kills));
        }
    }

    private static void runWithServiceDeath(SelfTest selfTest, SelfTest.Group group) {
        String family = group.family;
        if (SimulatedHandset.serviceOf(family).equals("none")) {
            System.out.println();
            System.out.println("-- the " + family + " service is not served on this handset: nothing to kill --");
            selfTest.run(group, null);
            return;
        }
        System.out.println();
        System.out.println("-- killing the " + family + " service --");
        SimulatedHandset.kill(family);
        if (SimulatedHandset.awaitDeathHandled(family, NOTICE_TIMEOUT_MILLIS)) {
            System.out.println("-- the library handled the death and dropped its connections --");
        } else {
            System.out.println("-- the library did not handle the death within " + NOTICE_TIMEOUT_MILLIS / 1000
                    + " s --");
        }
        selfTest.run(group, "while the " + family + " service is dead");
        System.out.println();
        System.out.println("-- starting the " + family + " service again --");
        SimulatedHandset.start(family);
        if (!SimulatedHandset.awaitNoticesDelivered(NOTICE_TIMEOUT_MILLIS)) {
            System.out.println("-- notices still pending after " + NOTICE_TIMEOUT_MILLIS / 1000 + " s --");
        }
        selfTest.run(group, "after the " + family + " service came back");
    }

    private static int flickerSensorId() {
        String id = SimulatedHandset.answerJson("sensors", "flicker").equals("null")
                ? null
                : SimulatedHandset.answerJson("sensors", "flicker.sensorId");
        return id == null ? SelfTest.DEFAULT_LIGHT_SENSOR : Integer.parseInt(id);
    }

    /** The command line. */
    static final class Options {
        String device = "aidl";
        final List<String> kills = new ArrayList<>();
        String plotFile;

        static Options parse(String[] args) {
            Options options = new Options();
            Map<String, Boolean> seen = new LinkedHashMap<>();
            for (int i = 0; i < args.length; i++) {
                String arg = args[i];
                switch (arg) {
                    case "--device":
                    case "--kill":
                    case "--flicker-plot": {
                        if (i + 1 >= args.length || args[i + 1].isEmpty()) {
                            throw new IllegalArgumentException(arg + " needs a value");
                        }
                        String value = args[++i];
                        if (arg.equals("--kill")) {
                            if (!List.of(SimulatedHandset.FAMILIES).contains(value)) {
                                throw new IllegalArgumentException("unknown family for --kill: " + value);
                            }
                            if (!options.kills.contains(value)) {
                                options.kills.add(value);
                            }
                        } else if (seen.put(arg, true) != null) {
                            throw new IllegalArgumentException(arg + " given twice");
                        } else if (arg.equals("--device")) {
                            options.device = value;
                        } else {
                            options.plotFile = value;
                        }
                        break;
                    }
                    case "--help":
                    case "-h":
                        System.out.println(USAGE);
                        System.exit(0);
                        break;
                    default:
                        throw new IllegalArgumentException("unknown argument: " + arg);
                }
            }
            return options;
        }
    }
}
