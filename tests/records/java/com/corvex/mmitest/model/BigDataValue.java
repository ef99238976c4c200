package com.corvex.mmitest.model;

/**
 * A value report as another build of the application may declare it: the data source and
 * the test name are missing, the value is a number and the firmware is not a String.
 */
public class BigDataValue {
    private int mVersion;
    private int mErrorCode;
    private int mItemId;
    private int mCycle;
    private String mDeviceName;
    private String mStation;
    private String mBsn;
    private double mValue;
    private String mThresholdMin;
    private String mThresholdMax;
    private String mResult;
    private String mTime;
    private Object mFirmware;
    private String mDescription;
}
