package android.hardware.vibrator;

/**
 * Stand-in for the platform vibrator service, for the interface compiler on a workstation:
 * only the part the library and the simulated handset touch. On a device the platform's
 * interface is used.
 */
@VintfStability
interface IVibrator {
    int getCapabilities();

    void off();
}
