package vendor.zentel.hardware.light;

@VintfStability
interface ILight {
    int setLightBrightness(int id, int brightness);
}
