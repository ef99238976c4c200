package vendor.zentel.hardware.hwfactoryinterface;

/**
 * Big-data operation report: a command with its operation code, station and cycle.
 */
@VintfStability
parcelable FmdCmdData {
    int version = 0;
    int commandId = 0;
    int operation = 0;
    int cycle = 0;
    @utf8InCpp String station;
    @utf8InCpp String bsn;
    @utf8InCpp String spareText1;
    @utf8InCpp String spareText2;
    @utf8InCpp String spareText3;
    @utf8InCpp String spareText4;
    @utf8InCpp String spareText5;
}
