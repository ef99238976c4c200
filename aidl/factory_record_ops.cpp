// Station, cycle and test-result records, big-data fault reports, OEM info, signatures and
// numbered device-info items over the AIDL factory interface.
#include <factory_items.h>
#include <mmi_log.h>
#include <service_access.h>
#include <securec.h>
#include <test_cycle_record.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using mmi::NewJavaString;
using vendor::zentel::hardware::hwfactoryinterface::FmdCmdData;
using vendor::zentel::hardware::hwfactoryinterface::FmdEvent;
using vendor::zentel::hardware::hwfactoryinterface::FmdMsg;
using vendor::zentel::hardware::hwfactoryinterface::IFacIntByte;
using vendor::zentel::hardware::hwfactoryinterface::IFacIntStr;
using vendor::zentel::hardware::hwfactoryinterface::IHwFactoryInterface;

namespace native_aidl {
namespace {


// The station/cycle record: command 143, always declared with the buffer's full size.
constexpr int32_t CMD_TEST_CYCLE = 143;

constexpr const char* kOperationClass = "com/corvex/mmitest/model/BigDataOperation";
constexpr const char* kValueClass = "com/corvex/mmitest/model/BigDataValue";

// A text item; the binder status is not looked at, so a failed call leaves (0, "").
IFacIntStr DeviceInfo(IHwFactoryInterface& factory, int32_t item) {
    IFacIntStr info;
    factory.getDeviceInfo(item, &info);
    return info;
}

// A value report carries exactly one event.
void InitFmdMessage(FmdMsg& message, int32_t version, int32_t dataSource, FmdEvent event) {
    message.version = version;
    message.dataSource = dataSource;
    message.eventCount = 1;
    message.events = std::vector<FmdEvent>{std::move(event)};
}

}  // namespace

jint SetMmiTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint item, jint result) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: SetMmiTestResult by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    int32_t ret = -1;
    factory->setMmiTestResult(item, result, &ret);
    MMI_LOGI("%s: SetMmiTestResult by aidl ret = %d", kLogPrefix, ret);
    return ret;
}

jstring GetManufactureStationFlag(JNIEnv* env, jobject /*thiz*/, jint stationId) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetManufactureStationFlag by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntStr flag;
    factory->getManufactureStationFlag(stationId, &flag);
    MMI_LOGI("%s: GetManufactureStationFlag by aidl, station id: %d, result: %d, stationFlag: %s", kLogPrefix,
             stationId, flag.ret, flag.value.c_str());
    return NewJavaString(env, flag.value);
}

jint SetTestCycle(JNIEnv* /*env*/, jobject /*thiz*/, jint stationId, jint cycle) {
    MMI_LOGI("%s: SetTestCycle by aidl, stationID: %d, cycle: %d", kLogPrefix, stationId, cycle);
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: SetTestCycle by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;

    mmi::TestCycleRecord qrcodeInfo;
    const errno_t cleared = mmi::FormatTestCycleRecord(stationId, cycle, qrcodeInfo);
    if (cleared != EOK) {
        MMI_LOGE("%s: SetTestCycle by aidl, memset_s error, ret =0x%x", kLogPrefix, static_cast<unsigned>(cleared));
        return -1;
    }
    if (cycle != mmi::kTestCycleNotFormatted) {
        MMI_LOGI("%s: SetTestCycle by aidl, qrcodeInfo: %s", kLogPrefix, qrcodeInfo.data());
    }
    const size_t length = mmi::TestCycleRecordLength(qrcodeInfo);
    const std::vector<uint8_t> payload(qrcodeInfo.begin(), qrcodeInfo.begin() + length);

    int32_t result = -1;
    factory->setCommandData(CMD_TEST_CYCLE, static_cast<int32_t>(mmi::kTestCycleRecordSize), payload, &result);
    MMI_LOGI("%s: SetTestCycle by aidl, result: %d", kLogPrefix, result);
    return result;
}

jint SetNmCardTestMode(JNIEnv* env, jobject /*thiz*/, jstring mode) {
    // The text is taken before the service is looked at.
    mmi::JavaUtfChars chars(env, mode);
    if (chars.isNull()) {
        mmi::LogNullArgument("SetNmCardTestMode by aidl", "mode");
        return -1;
    }
    sp<IHwFactoryInterface> factory = g_aidlFactoryInterface.get();
    if (factory == nullptr) {
        // Without a service the text is not given back.
        chars.keepTaken();
        MMI_LOGE("%s: SetNmCardTestMode by aidl fail, g_aidlFactoryInterface is null", kLogPrefix);
        return -1;
    }
    int32_t ret = -1;
    factory->setDeviceInfo(mmi::DEVICE_INFO_NM_CARD, chars.c_str(), &ret);
    MMI_LOGI("%s: SetNmCardTestMode by aidl, ret: %d", kLogPrefix, ret);
    return ret;
}

jstring GetNmCardTestResult(JNIEnv* env, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetNmCardTestResult by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntStr info = DeviceInfo(*factory, mmi::DEVICE_INFO_NM_CARD);
    MMI_LOGI("%s: GetNmCardTestResult by aidl, ret: %d, testResultArray = %s", kLogPrefix, info.ret,
             info.value.c_str());
    return NewJavaString(env, info.value);
}

jint SendBigDataOperation(JNIEnv* env, jobject /*thiz*/, jobject operation) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: SendBigDataOperation by aidl fail, env or g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;

    const int version = GetIntFromObject(env, operation, kOperationClass, "mVersion");
    const int commandId = GetIntFromObject(env, operation, kOperationClass, "mCommandId");
    const int operationCode = GetIntFromObject(env, operation, kOperationClass, "mOperation");
    std::string bsn = GetStringFromObject(env, operation, kOperationClass, "mBsn");
    std::string station = GetStringFromObject(env, operation, kOperationClass, "mStation");
    const int cycle = GetIntFromObject(env, operation, kOperationClass, "mCycle");
    MMI_LOGI("%s: SendBigDataOperation by aidl, version: %d; commandId: %d; operation: %d; station: %s; cycle: %d",
             kLogPrefix, version, commandId, operationCode, station.c_str(), cycle);

    FmdCmdData data;
    data.version = version;
    data.commandId = commandId;
    data.operation = operationCode;
    data.cycle = cycle;
    data.station = std::move(station);
    data.bsn = std::move(bsn);

    int32_t result = -1;
    factory->sendFmdCmdData(data, &result);
    MMI_LOGI("%s: SendBigDataOperation by aidl, result: %d", kLogPrefix, result);
    return result;
}

jint SendBigDataValue(JNIEnv* env, jobject /*thiz*/, jobject value) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: SendBigDataValue by aidl fail, env or g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;

    const int version = GetIntFromObject(env, value, kValueClass, "mVersion");
    const int dataSource = GetIntFromObject(env, value, kValueClass, "mDataSource");
    FmdEvent event;
    event.errorCode = GetIntFromObject(env, value, kValueClass, "mErrorCode");
    event.itemId = GetIntFromObject(env, value, kValueClass, "mItemId");
    event.cycle = GetIntFromObject(env, value, kValueClass, "mCycle");
    event.deviceName = GetStringFromObject(env, value, kValueClass, "mDeviceName");
    event.station = GetStringFromObject(env, value, kValueClass, "mStation");
    event.testName = GetStringFromObject(env, value, kValueClass, "mTestName");
    event.bsn = GetStringFromObject(env, value, kValueClass, "mBsn");
    event.value = GetStringFromObject(env, value, kValueClass, "mValue");
    event.thresholdMin = GetStringFromObject(env, value, kValueClass, "mThresholdMin");
    event.thresholdMax = GetStringFromObject(env, value, kValueClass, "mThresholdMax");
    event.result = GetStringFromObject(env, value, kValueClass, "mResult");
    event.time = GetStringFromObject(env, value, kValueClass, "mTime");
    event.firmware = GetStringFromObject(env, value, kValueClass, "mFirmware");
    event.description = GetStringFromObject(env, value, kValueClass, "mDescription");
    MMI_LOGI(
            "%s: SendBigDataValue by aidl, version: %d; dataSource: %d; errorCode: %d; itemId: %d; station: %s; "
            "cycle: %d; deviceName: %s; testName: %s; value: %s; minThreshold: %s; maxThreshold: %s; result: %s; "
            "time: %s; firmware: %s; description: %s",
            kLogPrefix, version, dataSource, event.errorCode, event.itemId, event.station.c_str(), event.cycle,
            event.deviceName.c_str(), event.testName.c_str(), event.value.c_str(), event.thresholdMin.c_str(),
            event.thresholdMax.c_str(), event.result.c_str(), event.time.c_str(), event.firmware.c_str(),
            event.description.c_str());

    FmdMsg message;
    InitFmdMessage(message, version, dataSource, std::move(event));
    int32_t result = -1;
    factory->sendFmdMessage(message, &result);
    MMI_LOGI("%s: SendBigDataValue by aidl, result: %d", kLogPrefix, result);
    return result;
}

jstring GetOeminfo(JNIEnv* env, jobject /*thiz*/, jint type, jint offset, jint length) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetOeminfo by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntByte record;
    factory->getOeminfo(type, offset, length, &record);
    if (record.ret != 0) {
        MMI_LOGE("%s: GetOeminfo by aidl fail, read failed result: %d", kLogPrefix, record.ret);
        return NewJavaString(env, "");
    }
    // Every byte is kept; the text seen in the log and by Java ends at the first zero byte.
    const std::string oemInfo(record.value.begin(), record.value.end());
    MMI_LOGI("%s: GetOeminfo by aidl, read result: %d, oemInfo: %s", kLogPrefix, record.ret, oemInfo.c_str());
    return NewJavaString(env, oemInfo);
}

jint GetVerifySignatureResult(JNIEnv* env, jobject /*thiz*/, jbyteArray signature) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetVerifySignatureResult by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    const mmi::JavaBytes bytes = mmi::ReadJavaBytes(env, signature);
    if (bytes.isNull) {
        mmi::LogNullArgument("GetVerifySignatureResult by aidl", "signature");
        return -1;
    }
    // Two hexadecimal characters per byte, no terminator: the text is exactly 2n characters.
    const size_t count = bytes.bytes.size();
    std::vector<char> hex(count * 2);
    memset_s(hex.data(), hex.size(), 0, hex.size());
    if (ConvertBinToString(bytes.bytes.data(), static_cast<unsigned int>(count), hex.data(),
                           static_cast<unsigned int>(hex.size())) != 0) {
        MMI_LOGE("%s: GetVerifySignatureResult by aidl, convertBinToString fail", kLogPrefix);
        return -1;
    }
    int32_t ret = -1;
    factory->setDeviceInfo(mmi::DEVICE_INFO_SIGNATURE, std::string(hex.data(), hex.size()), &ret);
    MMI_LOGI("%s: GetVerifySignatureResult by aidl, ret: %d", kLogPrefix, ret);
    return ret;
}

jstring GetRsaSignInfo(JNIEnv* env, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = g_aidlFactoryInterface.get();
    if (factory == nullptr) {
        MMI_LOGE("GetRsaSignInfo by aidl, g_aidlFactoryInterface is null");
        return NewJavaString(env, "");
    }
    IFacIntStr info = DeviceInfo(*factory, mmi::DEVICE_INFO_RSA_SIGN);
    // The RSA signing information shares the device-info result line.
    MMI_LOGI("GetDeviceInfo by aidl, ret = %d, info: %s", info.ret, info.value.c_str());
    return NewJavaString(env, info.value);
}

jstring GetDeviceInfo(JNIEnv* env, jobject /*thiz*/, jint id) {
    sp<IHwFactoryInterface> factory = g_aidlFactoryInterface.get();
    if (factory == nullptr) {
        MMI_LOGE("GetDeviceInfo by aidl, g_aidlFactoryInterface is null");
        return NewJavaString(env, "");
    }
    IFacIntStr info = DeviceInfo(*factory, id);
    MMI_LOGI("GetDeviceInfo by aidl, ret = %d, info: %s", info.ret, info.value.c_str());
    return NewJavaString(env, info.value);
}

}  // namespace native_aidl
