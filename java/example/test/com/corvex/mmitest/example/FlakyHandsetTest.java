package com.corvex.mmitest.example;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.HandsetProfile;
import com.corvex.mmitest.sim.SimulatedHandset;
import com.corvex.mmitest.sim.SimulatedHandset.ServiceCall;
import com.corvex.mmitest.sim.SimulatedHandsetExtension;

import java.util.List;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.TimeUnit;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** The screens on a handset whose services misbehave (the shipped "flaky" profile). */
@ExtendWith(SimulatedHandsetExtension.class)
@HandsetProfile("flaky")
class FlakyHandsetTest {
    private static final long TIMEOUT_MILLIS = 10_000;

    private final MmiNativeManager manager = new MmiNativeManager();

    @Test
    void callsFailingInTransportAndSilentCallbacksGiveTheFallbacks() {
        // The touch screen's calls fail in transport: none reaches the service.
        assertEquals(-1, manager.setTouchScreenFeatureConfigNative(1, "glove=on"));
        assertTrue(SimulatedHandset.calls(SimulatedHandset.TOUCHSCREEN).isEmpty());
        SimulatedHandset.failCalls(SimulatedHandset.TOUCHSCREEN, false);
        assertEquals(0, manager.setTouchScreenFeatureConfigNative(1, "glove=on"));
        assertEquals(List.of(new ServiceCall("aidl", "", "setTouchScreenFeatureConfig", List.of("1", "glove=on"))),
                SimulatedHandset.calls(SimulatedHandset.TOUCHSCREEN));

        // The HIDL display takes the call but never calls back.
        assertEquals("", manager.getScreenCurrentFpsNative());
        assertEquals("hidl@1.5 getScreenCurrentFps(0)", SimulatedHandset.calls(SimulatedHandset.DISPLAY).get(0).toString());
        SimulatedHandset.skipCallbacks(SimulatedHandset.DISPLAY, false);
        assertEquals("60", manager.getScreenCurrentFpsNative());
    }

    @Test
    void aSlowServiceThatDiesFailsTheCallItWasAnswering() throws Exception {
        SimulatedHandset.setLatency(SimulatedHandset.LIGHT, 600_000);
        CompletableFuture<Integer> brightness = CompletableFuture.supplyAsync(() -> manager.setLightBrightnessNative(2, 100));
        // The service has the call once it is recorded; it would answer ten minutes later.
        while (SimulatedHandset.callsTo(SimulatedHandset.LIGHT, "setLightBrightness").isEmpty()) {
            assertFalse(brightness.isDone());
            Thread.sleep(10);
        }
        SimulatedHandset.kill(SimulatedHandset.LIGHT);
        assertEquals(-1, brightness.get(TIMEOUT_MILLIS, TimeUnit.MILLISECONDS));
    }

    @Test
    void theLibraryWaitsForACameraServiceThatStartsLate() {
        // The profile starts the camera service after the library began to wait for it.
        assertNotNull(manager.getCapabilitiesNative());
        SimulatedHandset.kill(SimulatedHandset.CAMERA);
        assertTrue(SimulatedHandset.awaitDeathHandled(SimulatedHandset.CAMERA, TIMEOUT_MILLIS));
        SimulatedHandset.startLater(SimulatedHandset.CAMERA, 200);
        assertTrue(SimulatedHandset.awaitNoticesDelivered(TIMEOUT_MILLIS));
        assertNotNull(manager.getCapabilitiesNative());
    }
}
