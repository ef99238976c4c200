package com.corvex.mmitest.example;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.HandsetProfile;
import com.corvex.mmitest.sim.SimulatedHandset;
import com.corvex.mmitest.sim.SimulatedHandset.ServiceCall;
import com.corvex.mmitest.sim.SimulatedHandsetExtension;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/**
 * The identity screen on simulated handsets, as an application's own JVM test runs it. The
 * extension starts each test on the shipped AIDL handset, with its answers and an empty log.
 */
@ExtendWith(SimulatedHandsetExtension.class)
@HandsetProfile("aidl")
class IdentityScreenTest {
    private static final long TIMEOUT_MILLIS = 10_000;

    private final MmiNativeManager manager = new MmiNativeManager();
    private final IdentityScreen screen = new IdentityScreen(manager);

    @Test
    void showsTheSerialNumberTheHandsetReports() {
        SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "serialNumber", "ZT00TEST0001");
        assertEquals("S/N ZT00TEST0001", screen.serialNumberLine());
    }

    @ParameterizedTest
    @ValueSource(strings = {"aidl", "hidl", "legacy", "mixed"})
    void showsTheSerialNumberWhicheverGenerationServesTheFactoryInterface(String profile) {
        SimulatedHandset.useProfile(profile);
        SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "serialNumber", "ZT-" + profile);
        long mark = SimulatedHandset.logMark();

        assertEquals("S/N ZT-" + profile, screen.serialNumberLine());

        String backend = SimulatedHandset.serviceOf(SimulatedHandset.FACTORY).equals("aidl") ? "Aidl" : "Hidl";
        String[] lines = SimulatedHandset.logLinesSince(mark);
        assertTrue(Arrays.asList(lines).contains("I/java: GetBsn, " + backend + " Called"), Arrays.toString(lines));
    }

    @Test
    void aHandsetWithoutTheFactoryInterfaceHasNoSerialNumber() {
        SimulatedHandset.useProfile("bare");
        assertEquals(IdentityScreen.NO_SERIAL_NUMBER, screen.serialNumberLine());
    }

    @Test
    void aFailedStationKeepsTheDeviceOut() {
        assertTrue(screen.mayEnterStation(3));
        SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "stationFlags.2", "FAIL");
        assertFalse(screen.mayEnterStation(3));
        assertTrue(screen.mayEnterStation(2));
    }

    @Test
    @HandsetProfile("legacy")
    void theScreenAsksForEachEarlierStationInTurn() {
        assertFalse(screen.mayEnterStation(3));  // station 2 has no flag on this handset
        // The legacy handset's factory interface is HIDL 1.0.
        assertEquals(List.of(new ServiceCall("hidl", "1.0", "getManufactureStationFlag", List.of("1")),
                        new ServiceCall("hidl", "1.0", "getManufactureStationFlag", List.of("2"))),
                SimulatedHandset.callsTo(SimulatedHandset.FACTORY, "getManufactureStationFlag"));
        assertEquals("hidl@1.0 getManufactureStationFlag(1)",
                SimulatedHandset.calls(SimulatedHandset.FACTORY).get(0).toString());
    }

    @Test
    void aSerialNumberOutsideTheBasicPlaneComesBackWhole() {
        String serial = "ZT\uD83D\uDE00";  // an emoji: two UTF-16 units, four bytes of UTF-8
        SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "serialNumber", serial);
        assertEquals("\"" + serial + "\"", SimulatedHandset.answerJson(SimulatedHandset.FACTORY, "serialNumber"));
        screen.serialNumberLine();
        assertTrue(Arrays.asList(SimulatedHandset.logLines())
                        .contains("I/java: ZtMmiTest_jni: GetBsn by aidl, ret: 0, deviceInfo: " + serial),
                Arrays.toString(SimulatedHandset.logLines()));
    }

    @Test
    void aStationFlagTheServiceCannotReadCountsAsNotPassed() {
        SimulatedHandset.setAnswerJson(SimulatedHandset.FACTORY, "stationFlags.1", "{\"ret\": -5, \"text\": \"\"}");
        assertFalse(screen.mayEnterStation(2));
    }

    @Test
    void theScreenCopesWithTheFactoryServiceDyingAndComingBack() {
        assertEquals("S/N ZT26A0012345", screen.serialNumberLine());

        SimulatedHandset.kill(SimulatedHandset.FACTORY);
        assertTrue(SimulatedHandset.awaitDeathHandled(SimulatedHandset.FACTORY, TIMEOUT_MILLIS));
        assertEquals(IdentityScreen.NO_SERIAL_NUMBER, screen.serialNumberLine());
        assertFalse(screen.mayEnterStation(2));

        long mark = SimulatedHandset.logMark();
        SimulatedHandset.start(SimulatedHandset.FACTORY);
        assertTrue(SimulatedHandset.awaitNoticesDelivered(TIMEOUT_MILLIS));
        assertTrue(SimulatedHandset.awaitLogLine(mark, "g_aidlFactoryInterface init success", TIMEOUT_MILLIS));
        assertEquals("S/N ZT26A0012345", screen.serialNumberLine());
        assertTrue(screen.mayEnterStation(3));
    }

    @Test
    void theLogShowsTheDeathAndTheRecovery() {
        long mark = SimulatedHandset.logMark();
        SimulatedHandset.kill(SimulatedHandset.FACTORY);
        assertTrue(SimulatedHandset.awaitDeathHandled(SimulatedHandset.FACTORY, TIMEOUT_MILLIS));
        SimulatedHandset.start(SimulatedHandset.FACTORY);
        assertTrue(SimulatedHandset.awaitNoticesDelivered(TIMEOUT_MILLIS));

        String log = String.join("\n", SimulatedHandset.logLinesSince(mark));
        assertTrue(log.contains("W/java: ServiceDied, remote hal service died"), log);
        assertTrue(log.contains("E/java: RestartAidl"), log);
    }

    @Test
    void resetBringsBackTheProfilesAnswersAndForgetsTheLog() {
        SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "serialNumber", "CHANGED");
        assertEquals("S/N CHANGED", screen.serialNumberLine());

        SimulatedHandset.reset();

        assertEquals(0, SimulatedHandset.logLines().length);
        assertEquals("\"ZT26A0012345\"", SimulatedHandset.answerJson(SimulatedHandset.FACTORY, "serialNumber"));
        assertEquals("S/N ZT26A0012345", screen.serialNumberLine());
    }

    @Test
    void anAnswerOfTheWrongKindIsRejectedAndChangesNothing() {
        IllegalArgumentException error = assertThrows(IllegalArgumentException.class,
                () -> SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "manufactureMode", "one"));
        assertTrue(error.getMessage().contains("factory.manufactureMode"), error.getMessage());
        assertTrue(error.getMessage().contains("expected an integer"), error.getMessage());
        assertEquals(1, manager.getManufactureModeNative());

        assertThrows(IllegalArgumentException.class,
                () -> SimulatedHandset.setAnswer(SimulatedHandset.FACTORY, "serialNumbr", "x"));
        assertThrows(IllegalArgumentException.class, () -> SimulatedHandset.kill("modem"));
    }

    @Test
    void aBrokenProfileFileIsRejectedWithItsNameAndThePlace(@TempDir Path folder) throws IOException {
        Path file = folder.resolve("prototype.json");
        String aidl = Files.readString(Path.of(SimulatedHandset.profileSource()));
        String broken = aidl.replace("\"display\": {\n      \"service\": \"aidl\",",
                "\"display\": {\n      \"service\": \"hidl\", \"version\": \"1.9\",");
        assertNotEquals(aidl, broken, "the display's service line was found");
        Files.writeString(file, broken);

        IllegalArgumentException error =
                assertThrows(IllegalArgumentException.class, () -> SimulatedHandset.useProfile(file.toString()));

        assertEquals(file + ": families.display.version: HIDL display has no version 1.9 (served versions: 1.0 to 1.5)",
                error.getMessage());
        // The handset still serves the profile it had.
        assertEquals("aidl", SimulatedHandset.profileName());
        assertEquals("S/N ZT26A0012345", screen.serialNumberLine());
    }

    @Test
    void theLampsFlickerIsWhatTheDetectorFinds() {
        SimulatedHandset.setAnswer(SimulatedHandset.SENSORS, "flicker.frequencyHz", 150.0);
        int[] samples = SimulatedHandset.lightSamples();
        assertNotNull(samples);
        assertEquals(256, samples.length);
        int detected = SimulatedHandset.detectFlickerFrequency(samples);
        assertTrue(Math.abs(detected - 150) <= 2, "detected " + detected + " Hz");
        // Bin 154 is 150.4 Hz: the spectrum peaks there.
        float[] spectrum = SimulatedHandset.flickerSpectrum(samples);
        assertEquals(500, spectrum.length);
        int peak = 20;
        for (int bin = 20; bin <= 498; bin++) {
            if (spectrum[bin] > spectrum[peak]) {
                peak = bin;
            }
        }
        assertEquals(detected, (int) (peak * (1000.0f / 1024)));
        assertArrayEquals(samples, SimulatedHandset.lightSamples(), "the same light gives the same samples");
        // The same samples taken at twice the rate are a flicker of twice the frequency.
        assertEquals(detected, SimulatedHandset.detectFlickerFrequency(samples, 256, 1000.0f));
        int twiceAsFast = SimulatedHandset.detectFlickerFrequency(samples, 256, 2000.0f);
        assertTrue(Math.abs(twiceAsFast - 2 * detected) <= 2, "detected " + twiceAsFast + " Hz at 2000 Hz");
        assertThrows(IllegalArgumentException.class, () -> SimulatedHandset.detectFlickerFrequency(samples, 301, 1000.0f));
    }
}
