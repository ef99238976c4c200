package vendor.zentel.hardware.biometrics.fingerprint;

import android.hardware.biometrics.fingerprint.ISessionCallback;
import vendor.zentel.hardware.biometrics.fingerprint.ISession;

@VintfStability
interface IFingerprint {
    ISession createSession(int sensorId, int userId, ISessionCallback cb);
}
