package vendor.zentel.hardware.vibrator;

/**
 * The maker's extension of the platform vibrator service (android.hardware.vibrator.IVibrator
 * "default"), reached through its binder extension. Commands and results are texts.
 */
@VintfStability
interface ICustVibrator {
    void setVibratorParameter(String command);

    String getVibratorResult(String command);
}
