package com.corvex.mmitest.model;

/**
 * An operation report as another build of the application may declare it: the station is
 * missing, and the operation code and the cycle have other types.
 */
public class BigDataOperation {
    private int mVersion;
    private int mCommandId;
    private long mOperation;
    private String mBsn;
    private String mCycle;
}
