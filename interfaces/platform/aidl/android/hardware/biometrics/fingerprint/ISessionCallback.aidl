package android.hardware.biometrics.fingerprint;

/**
 * Stand-in for the platform's fingerprint session callback, for the interface compiler on a
 * workstation: the library only passes an empty reference of this type, so none of its
 * methods are declared. On a device the platform's interface is used.
 */
@VintfStability
interface ISessionCallback {
}
