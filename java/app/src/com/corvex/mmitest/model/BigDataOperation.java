package com.corvex.mmitest.model;

/** A production-line operation report: a command with its operation code, station and cycle. */
public class BigDataOperation {
    private int mVersion;
    private int mCommandId;
    private int mOperation;
    private String mBsn;
    private String mStation;
    private int mCycle;

    public BigDataOperation() {}

    public BigDataOperation(int version, int commandId, int operation, String bsn, String station, int cycle) {
        mVersion = version;
        mCommandId = commandId;
        mOperation = operation;
        mBsn = bsn;
        mStation = station;
        mCycle = cycle;
    }

    public int getVersion() { return mVersion; }
    public void setVersion(int version) { mVersion = version; }
    public int getCommandId() { return mCommandId; }
    public void setCommandId(int commandId) { mCommandId = commandId; }
    public int getOperation() { return mOperation; }
    public void setOperation(int operation) { mOperation = operation; }
    public String getBsn() { return mBsn; }
    public void setBsn(String bsn) { mBsn = bsn; }
    public String getStation() { return mStation; }
    public void setStation(String station) { mStation = station; }
    public int getCycle() { return mCycle; }
    public void setCycle(int cycle) { mCycle = cycle; }
}
