package com.corvex.mmitest.example;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.api.Assumptions.assumeTrue;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.HandsetProfile;
import com.corvex.mmitest.sim.SimulatedHandset;
import com.corvex.mmitest.sim.SimulatedHandsetExtension;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Collectors;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.condition.EnabledIfSystemProperty;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.platform.launcher.Launcher;
import org.junit.platform.launcher.LauncherDiscoveryRequest;
import org.junit.platform.launcher.TestExecutionListener;
import org.junit.platform.launcher.TestIdentifier;
import org.junit.platform.launcher.core.LauncherDiscoveryRequestBuilder;
import org.junit.platform.launcher.core.LauncherFactory;
import org.junit.platform.engine.TestExecutionResult;
import org.junit.platform.engine.discovery.DiscoverySelectors;

/**
 * Every test starts on a fresh application: nothing an earlier test did to the library
 * (on whatever handset) reaches it.
 */
@ExtendWith(SimulatedHandsetExtension.class)
@HandsetProfile("aidl")
class RestartTest {
    private final MmiNativeManager manager = new MmiNativeManager();

    @Test
    @HandsetProfile("flaky")
    void aFingerprintServiceWithoutSessionSendsNoCommand() {
        assertEquals(-1, manager.sendCmdToFingerprintHalNative(1));
    }

    @Test
    void theNextHandsetsFingerprintServiceTakesCommands() {
        assertEquals(0, manager.sendCmdToFingerprintHalNative(1));
    }

    @Test
    void restartsKeepVideoInterpolationAndAtMostThreeLibrariesMapped() throws IOException {
        assumeTrue(SimulatedHandset.hasPanelLibrary(), "libpixelworksMMITest.so is not on the loader's path");
        for (int restart = 0; restart < 30; restart++) {
            assertEquals(1, manager.getVideoInterpolationDefaultModelNative());
            SimulatedHandset.reset();
        }
        // The Java VM's own, the one in use and the one it replaced.
        List<String> mapped = Files.readAllLines(Path.of("/proc/self/maps")).stream()
                .filter(line -> line.contains("libZtMmi_jni"))
                .map(line -> line.substring(line.indexOf('/')))
                .distinct()
                .collect(Collectors.toList());
        assertTrue(mapped.size() <= 3, mapped.toString());
    }

    /** A failing test, run only by the test below. */
    @ExtendWith(SimulatedHandsetExtension.class)
    @EnabledIfSystemProperty(named = "mmi.example.failing", matches = "run")
    static class FailingScreenTest {
        @Test
        void failsAfterAskingForTheSerialNumber() {
            new MmiNativeManager().getBsnNative();
            throw new AssertionError("the screen showed the wrong serial number");
        }
    }

    @Test
    void aFailedTestCarriesItsLogLines() {
        LauncherDiscoveryRequest request = LauncherDiscoveryRequestBuilder.request()
                .selectors(DiscoverySelectors.selectClass(FailingScreenTest.class))
                .build();
        Throwable[] failure = new Throwable[1];
        Launcher launcher = LauncherFactory.create();
        System.setProperty("mmi.example.failing", "run");
        try {
            launcher.execute(request, new TestExecutionListener() {
                @Override
                public void executionFinished(TestIdentifier test, TestExecutionResult result) {
                    if (test.isTest()) {
                        failure[0] = result.getThrowable().orElse(null);
                    }
                }
            });
        } finally {
            System.clearProperty("mmi.example.failing");
        }
        assertTrue(failure[0] instanceof AssertionError, String.valueOf(failure[0]));
        assertEquals(1, failure[0].getSuppressed().length);
        String log = failure[0].getSuppressed()[0].getMessage();
        assertTrue(log.contains("I/java: ZtMmiTest_jni: GetBsn by aidl, ret: 0, deviceInfo: ZT26A0012345"), log);
    }
}
