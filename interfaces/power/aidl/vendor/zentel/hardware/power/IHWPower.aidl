package vendor.zentel.hardware.power;

import vendor.zentel.hardware.power.PowerOutInfo;

/**
 * Power test states. caller is the tag of the calling module.
 */
@VintfStability
interface IHWPower {
    int setPowerState(@utf8InCpp String caller, @utf8InCpp String testScene, @utf8InCpp String para);

    int getPowerState(@utf8InCpp String caller, @utf8InCpp String key, out PowerOutInfo info);
}
