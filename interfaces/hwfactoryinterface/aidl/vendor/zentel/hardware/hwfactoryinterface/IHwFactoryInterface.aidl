package vendor.zentel.hardware.hwfactoryinterface;

import vendor.zentel.hardware.hwfactoryinterface.FmdCmdData;
import vendor.zentel.hardware.hwfactoryinterface.FmdMsg;
import vendor.zentel.hardware.hwfactoryinterface.IFacIntByte;
import vendor.zentel.hardware.hwfactoryinterface.IFacIntStr;

/**
 * The factory interface: build and manufacturing state, numbered device-info text items,
 * test records, big-data reports and OEM info.
 */
@VintfStability
interface IHwFactoryInterface {
    boolean isFactoryVersion();

    IFacIntStr getManufactureFileName();

    /** Text item by number (0 serial number, 5 MMI auto-start flag, 14 NM card, ...). */
    IFacIntStr getDeviceInfo(int id);

    int setDeviceInfo(int id, @utf8InCpp String info);

    int getManufactureMode();

    int getMmiDeviceFeaturesCheckResult(int feature);

    int clearDeviceInfo(int id);

    int releaseFactoryResource();

    int setMmiTestResult(int item, int result);

    IFacIntStr getManufactureStationFlag(int stationId);

    /** A command record; length is the size the record is declared with. */
    int setCommandData(int commandId, int length, in byte[] data);

    int sendFmdCmdData(in FmdCmdData data);

    int sendFmdMessage(in FmdMsg message);

    IFacIntByte getOeminfo(int type, int offset, int length);
}
