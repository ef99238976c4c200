package vendor.zentel.hardware.hwfactoryinterface;

import vendor.zentel.hardware.hwfactoryinterface.FmdEvent;

/**
 * Big-data value report.
 */
@VintfStability
parcelable FmdMsg {
    int version = 0;
    int dataSource = 0;
    int eventCount = 0;
    FmdEvent[] events;
}
