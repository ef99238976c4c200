package com.corvex.mmitest.example;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.api.Assumptions.assumeTrue;

import com.corvex.mmitest.controller.MmiNativeManager;
import com.corvex.mmitest.sim.HandsetProfile;
import com.corvex.mmitest.sim.SimulatedHandset;
import com.corvex.mmitest.sim.SimulatedHandsetExtension;

import java.util.Arrays;

import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.extension.ExtendWith;

/** Video interpolation through the display processor's library, and camera always-on events. */
@ExtendWith(SimulatedHandsetExtension.class)
@HandsetProfile("aidl")
class CameraAndPanelTest {
    private final MmiNativeManager manager = new MmiNativeManager();

    @AfterEach
    void noScreenListens() {
        MmiNativeManager.setCameraEventListener(null);
    }

    @Test
    void videoInterpolationAsksThePanelLibrary() {
        assumeTrue(SimulatedHandset.hasPanelLibrary(), "libpixelworksMMITest.so is not on the loader's path");
        SimulatedHandset.setPanelModes("0:off;3:60to120", 15);
        SimulatedHandset.setPanelResults(0, 3, 0);

        assertEquals("0:off;3:60to120", manager.getVideoInterpolationModelNative());
        assertEquals(3, manager.getVideoInterpolationDefaultModelNative());
        assertEquals(0, manager.setVideoInterpolationModelNative(3, 120));
        assertArrayEquals(new String[] {"getModes()", "GetCurrentMode()", "setVideoInterpolationMode(3, 120)"},
                SimulatedHandset.panelCalls());

        // A library that reports no modes gives no text, whatever text it hands out.
        SimulatedHandset.setPanelModes("0:off", 0);
        assertEquals("", manager.getVideoInterpolationModelNative());
    }

    @Test
    void eventsReachTheScreenOnlyFromThreadsJavaKnowsWhileTheLibraryIsLoaded() {
        assertEquals(0, manager.registerClientNative(1));
        int before = MmiNativeManager.getRegisterSuccessCount();

        assertTrue(SimulatedHandset.notifyCameraEvent(3));
        assertEquals(before + 1, MmiNativeManager.getRegisterSuccessCount());

        assertTrue(SimulatedHandset.notifyCameraEventFromUnattachedThread(3));
        assertTrue(log().contains("E/java: ZtMmiTest_jni: RegisterClient fail, get env fail"), log());

        assertTrue(SimulatedHandset.notifyCameraEventAfterUnload(3));
        assertTrue(log().contains("E/java: RegisterClient fail, g_globalEnv is null or g_nativeClass is null"), log());
        assertEquals(before + 1, MmiNativeManager.getRegisterSuccessCount());

        // The application restarted: it registers again and hears the next event.
        assertNotNull(manager.getCapabilitiesNative());
        assertEquals(0, manager.registerClientNative(1));
        assertTrue(SimulatedHandset.notifyCameraEvent(4));
        assertEquals(before + 2, MmiNativeManager.getRegisterSuccessCount());
    }

    @Test
    void aScreenThatThrowsOnAnEventLeavesNoExceptionBehind() {
        MmiNativeManager.setCameraEventListener(() -> {
            throw new IllegalStateException("the screen is closed");
        });
        assertEquals(0, manager.registerClientNative(1));
        // notifyCameraEvent fails if the library leaves the exception pending on the thread.
        assertTrue(SimulatedHandset.notifyCameraEvent(3));
        assertTrue(log().contains("E/java: ZtMmiTest_jni: RegisterClient fail, RegisterSuccess threw an exception"),
                log());
    }

    private static String log() {
        return String.join("\n", Arrays.asList(SimulatedHandset.logLines()));
    }
}
