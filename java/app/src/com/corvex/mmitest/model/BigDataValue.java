package com.corvex.mmitest.model;

/** A production-line measurement report: one measured item with thresholds, result and context. */
public class BigDataValue {
    private int mVersion;
    private int mDataSource;
    private int mErrorCode;
    private int mItemId;
    private int mCycle;
    private String mDeviceName;
    private String mStation;
    private String mTestName;
    private String mBsn;
    private String mValue;
    private String mThresholdMin;
    private String mThresholdMax;
    private String mResult;
    private String mTime;
    private String mFirmware;
    private String mDescription;

    public int getVersion() { return mVersion; }
    public void setVersion(int version) { mVersion = version; }
    public int getDataSource() { return mDataSource; }
    public void setDataSource(int dataSource) { mDataSource = dataSource; }
    public int getErrorCode() { return mErrorCode; }
    public void setErrorCode(int errorCode) { mErrorCode = errorCode; }
    public int getItemId() { return mItemId; }
    public void setItemId(int itemId) { mItemId = itemId; }
    public int getCycle() { return mCycle; }
    public void setCycle(int cycle) { mCycle = cycle; }
    public String getDeviceName() { return mDeviceName; }
    public void setDeviceName(String deviceName) { mDeviceName = deviceName; }
    public String getStation() { return mStation; }
    public void setStation(String station) { mStation = station; }
    public String getTestName() { return mTestName; }
    public void setTestName(String testName) { mTestName = testName; }
    public String getBsn() { return mBsn; }
    public void setBsn(String bsn) { mBsn = bsn; }
    public String getValue() { return mValue; }
    public void setValue(String value) { mValue = value; }
    public String getThresholdMin() { return mThresholdMin; }
    public void setThresholdMin(String thresholdMin) { mThresholdMin = thresholdMin; }
    public String getThresholdMax() { return mThresholdMax; }
    public void setThresholdMax(String thresholdMax) { mThresholdMax = thresholdMax; }
    public String getResult() { return mResult; }
    public void setResult(String result) { mResult = result; }
    public String getTime() { return mTime; }
    public void setTime(String time) { mTime = time; }
    public String getFirmware() { return mFirmware; }
    public void setFirmware(String firmware) { mFirmware = firmware; }
    public String getDescription() { return mDescription; }
    public void setDescription(String description) { mDescription = description; }
}
