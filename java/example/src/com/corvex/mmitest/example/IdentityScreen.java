package com.corvex.mmitest.example;

import com.corvex.mmitest.controller.MmiNativeManager;

/**
 * The model of a test screen as an application writes it: it shows the device's serial
 * number and says whether the device passed the earlier stations of the production line.
 * The test next to it runs it on the simulated handset.
 */
public final class IdentityScreen {
    static final String NO_SERIAL_NUMBER = "serial number unavailable";

    private final MmiNativeManager manager;

    public IdentityScreen(MmiNativeManager manager) {
        this.manager = manager;
    }

    /** The text of the serial-number line. */
    public String serialNumberLine() {
        String bsn = manager.getBsnNative();
        return bsn == null || bsn.isEmpty() ? NO_SERIAL_NUMBER : "S/N " + bsn;
    }

    /** Whether every station before `station` recorded a pass. */
    public boolean mayEnterStation(int station) {
        for (int earlier = 1; earlier < station; earlier++) {
            if (!"PASS".equals(manager.getManufactureStationFlagNative(earlier))) {
                return false;
            }
        }
        return true;
    }
}
