package vendor.zentel.hardware.tp;

import vendor.zentel.hardware.tp.ITPIntString;

@VintfStability
interface ITouchscreen {
    ITPIntString getCapacitanceTestResult();

    ITPIntString getCapacitanceCalibrateResult(int value);

    ITPIntString getRotateCrownTestResult();

    int setTouchScreenFeatureConfig(int feature, @utf8InCpp String config);
}
