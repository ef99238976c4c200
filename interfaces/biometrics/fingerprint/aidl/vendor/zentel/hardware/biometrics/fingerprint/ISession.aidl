package vendor.zentel.hardware.biometrics.fingerprint;

@VintfStability
interface ISession {
    /** A factory command number; the answer is the service's. */
    int sendCmdToHal(int cmd);
}
