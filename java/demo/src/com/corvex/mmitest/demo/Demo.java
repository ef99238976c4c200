package com.corvex.mmitest.demo;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.SimulatedHandset;

import java.util.function.Supplier;

/** Runs the factory queries of the self-test on a simulated handset and shows the answers and the log. */
public final class Demo {
    private Demo() {}

    public static void main(String[] args) {
        String device = "aidl";
        for (int i = 0; i < args.length; i++) {
            if (args[i].equals("--device") && i + 1 < args.length) {
                device = args[++i];
            } else {
                System.err.println("usage: demo [--device aidl|hidl|bare]");
                System.exit(2);
            }
        }
        SimulatedHandset.useProfile(device);
        MmiNativeManager manager = new MmiNativeManager();

        System.out.println("Simulated handset: " + device);
        System.out.println();
        System.out.println("Factory state queries");
        show("isFactoryVersionNative()", manager::isFactoryVersionNative);
        show("getManufactureFileNameNative()", manager::getManufactureFileNameNative);
        show("getBsnNative()", manager::getBsnNative);
        show("getTestApkPackageNameNative()", manager::getTestApkPackageNameNative);
        show("getManufactureModeNative()", manager::getManufactureModeNative);
        show("getMmiDeviceFeaturesCheckResultNative(1)", () -> manager.getMmiDeviceFeaturesCheckResultNative(1));
        show("getMmiAutoStartFlagNative()", manager::getMmiAutoStartFlagNative);
        show("disableMmiAutoStartNative(\"0\")", () -> manager.disableMmiAutoStartNative("0"));
        show("nativeClearPackageName()", manager::nativeClearPackageName);
        show("releaseFactoryHidlResourceNative()", manager::releaseFactoryHidlResourceNative);

        System.out.println();
        System.out.println("Log");
        for (String line : SimulatedHandset.logLines()) {
            System.out.println(line);
        }
    }

    private static void show(String call, Supplier<Object> method) {
        Object result = method.get();
        String text = result instanceof String ? "\"" + result + "\"" : String.valueOf(result);
        System.out.printf("  %-44s -> %s%n", call, text);
    }
}
