package vendor.zentel.hardware.hwdisplay;

import vendor.zentel.hardware.hwdisplay.DISPLAY_DATA;
import vendor.zentel.hardware.hwdisplay.DisplayOutInfo;

@VintfStability
interface IDisplay {
    DisplayOutInfo getScreenCurrentFps(int value);

    DisplayOutInfo getScreenConfig(int station);

    DisplayOutInfo setDisplayParameter(int scene, in DISPLAY_DATA data);

    int setBackLightBrightness(int brightness);

    int getDisplayPanelType();

    int setDisplaySelfAdaptMinFps(int dataInt);
}
