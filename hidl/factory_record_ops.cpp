// Station, cycle and test-result records, big-data fault reports, OEM info, signatures and
// numbered device-info items over the HIDL factory interface (1.0, with 1.1 cast per call
// for the test-cycle record and the OEM info).
#include <factory_items.h>
#include <mmi_log.h>
#include <service_access.h>
#include <securec.h>
#include <test_cycle_record.h>
#include <vendor/zentel/hardware/hwfactoryinterface/1.1/IHwFactoryInterface.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using mmi::kLogPrefix;
using mmi::NewJavaString;

namespace native_hidl {
namespace {

using FactoryV1_0 = hw::hwfactoryinterface::V1_0::IHwFactoryInterface;
using FactoryV1_1 = hw::hwfactoryinterface::V1_1::IHwFactoryInterface;
using hw::hwfactoryinterface::V1_0::FmdCmdData;
using hw::hwfactoryinterface::V1_0::FmdEvent;
using hw::hwfactoryinterface::V1_0::FmdMsg;


// The station/cycle record: command 143, always declared with the buffer's full size.
constexpr int32_t CMD_TEST_CYCLE = 143;

constexpr const char* kOperationClass = "com/corvex/mmitest/model/BigDataOperation";
constexpr const char* kValueClass = "com/corvex/mmitest/model/BigDataValue";

// A value report carries exactly one event.
void InitFmdMessage(FmdMsg& message, int32_t version, int32_t dataSource, FmdEvent event) {
    message.version = version;
    message.dataSource = dataSource;
    message.eventCount = 1;
    message.events = hidl_vec<FmdEvent>{std::move(event)};
}

}  // namespace

jint SetMmiTestResult(JNIEnv* /*env*/, jobject /*thiz*/, jint item, jint result) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: SetMmiTestResult by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return -1;
    const int32_t ret = ValueOr(factory->setMmiTestResult(item, result), -1);
    MMI_LOGI("%s: SetMmiTestResult by hidl ret = %d", kLogPrefix, ret);
    return ret;
}

jstring GetManufactureStationFlag(JNIEnv* env, jobject /*thiz*/, jint stationId) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetManufactureStationFlag by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    TextResult flag;
    Finish(factory->getManufactureStationFlag(stationId, Into(flag)));
    MMI_LOGI("%s: GetManufactureStationFlag by hidl, station id: %d, result: %d, stationFlag: %s", kLogPrefix,
             stationId, flag.ret, flag.text.c_str());
    return NewJavaString(env, flag.text);
}

jint SetTestCycle(JNIEnv* /*env*/, jobject /*thiz*/, jint stationId, jint cycle) {
    MMI_LOGI("%s: SetTestCycle by hidl, stationID: %d, cycle: %d", kLogPrefix, stationId, cycle);
    // Only factory interface 1.1 takes command data.
    sp<FactoryV1_1> hwFactoryNew = CastTo<FactoryV1_1>(g_hwFactoryInterface.get());
    if (hwFactoryNew == nullptr) {
        MMI_LOGE("%s: SetTestCycle by hidl fail, hwFactoryNew is null", kLogPrefix);
        return -1;
    }

    mmi::TestCycleRecord qrcodeInfo;
    const errno_t cleared = mmi::FormatTestCycleRecord(stationId, cycle, qrcodeInfo);
    if (cleared != EOK) {
        MMI_LOGE("%s: SetTestCycle by hidl, memset_s error, ret =0x%x", kLogPrefix, static_cast<unsigned>(cleared));
        return -1;
    }
    if (cycle != mmi::kTestCycleNotFormatted) {
        MMI_LOGI("%s: SetTestCycle by hidl, qrcodeInfo: %s", kLogPrefix, qrcodeInfo.data());
    }
    const hidl_string payload(qrcodeInfo.data(), mmi::TestCycleRecordLength(qrcodeInfo));

    const int32_t result = ValueOr(
            hwFactoryNew->setCommandData(CMD_TEST_CYCLE, static_cast<int32_t>(mmi::kTestCycleRecordSize), payload), -1);
    MMI_LOGI("%s: SetTestCycle by hidl, result: %d", kLogPrefix, result);
    return result;
}

jint SetNmCardTestMode(JNIEnv* env, jobject /*thiz*/, jstring mode) {
    // The text is taken before the service is looked at.
    mmi::JavaUtfChars chars(env, mode);
    if (chars.isNull()) {
        mmi::LogNullArgument("SetNmCardTestMode by hidl", "mode");
        return -1;
    }
    sp<FactoryV1_0> factory = g_hwFactoryInterface.get();
    if (factory == nullptr) {
        // Without a service the text is not given back.
        chars.keepTaken();
        MMI_LOGE("%s: SetNmCardTestMode by hidl fail, g_hwFactoryInterface is null", kLogPrefix);
        return -1;
    }
    const int32_t ret = ValueOr(factory->setDeviceInfo(mmi::DEVICE_INFO_NM_CARD, hidl_string(chars.c_str())), -1);
    MMI_LOGI("%s: SetNmCardTestMode by hidl, ret: %d", kLogPrefix, ret);
    return ret;
}

jstring GetNmCardTestResult(JNIEnv* env, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetNmCardTestResult by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    TextResult result;
    Finish(factory->getDeviceInfo(mmi::DEVICE_INFO_NM_CARD, Into(result)));
    MMI_LOGI("%s: GetNmCardTestResult by hidl, ret: %d, testResultArray = %s", kLogPrefix, result.ret,
             result.text.c_str());
    return NewJavaString(env, result.text);
}

jint SendBigDataOperation(JNIEnv* env, jobject /*thiz*/, jobject operation) {
    sp<FactoryV1_0> factory = g_hwFactoryInterface.get();
    if (env == nullptr || factory == nullptr) {
        MMI_LOGE("%s: SendBigDataOperation by hidl fail, env or g_hwFactoryInterface is null", kLogPrefix);
        return -1;
    }

    const int version = GetIntFromObject(env, operation, kOperationClass, "mVersion");
    const int commandId = GetIntFromObject(env, operation, kOperationClass, "mCommandId");
    const int operationCode = GetIntFromObject(env, operation, kOperationClass, "mOperation");
    const std::string bsn = GetStringFromObject(env, operation, kOperationClass, "mBsn");
    const std::string station = GetStringFromObject(env, operation, kOperationClass, "mStation");
    const int cycle = GetIntFromObject(env, operation, kOperationClass, "mCycle");
    MMI_LOGI("%s: SendBigDataOperation by hidl, version: %d; commandId: %d; operation: %d; station: %s; cycle: %d",
             kLogPrefix, version, commandId, operationCode, station.c_str(), cycle);

    FmdCmdData data{};
    data.version = version;
    data.commandId = commandId;
    data.operation = operationCode;
    data.cycle = cycle;
    data.station = station;
    data.bsn = bsn;
    return ValueOr(factory->sendFmdCmdData(data), -1);
}

jint SendBigDataValue(JNIEnv* env, jobject /*thiz*/, jobject value) {
    sp<FactoryV1_0> factory = g_hwFactoryInterface.get();
    if (env == nullptr || factory == nullptr) {
        MMI_LOGE("%s: SendBigDataValue by hidl fail, env or g_hwFactoryInterface is null", kLogPrefix);
        return -1;
    }

    const int version = GetIntFromObject(env, value, kValueClass, "mVersion");
    const int dataSource = GetIntFromObject(env, value, kValueClass, "mDataSource");
    const int errorCode = GetIntFromObject(env, value, kValueClass, "mErrorCode");
    const int itemId = GetIntFromObject(env, value, kValueClass, "mItemId");
    const int cycle = GetIntFromObject(env, value, kValueClass, "mCycle");
    const std::string deviceName = GetStringFromObject(env, value, kValueClass, "mDeviceName");
    const std::string station = GetStringFromObject(env, value, kValueClass, "mStation");
    const std::string testName = GetStringFromObject(env, value, kValueClass, "mTestName");
    const std::string bsn = GetStringFromObject(env, value, kValueClass, "mBsn");
    const std::string measured = GetStringFromObject(env, value, kValueClass, "mValue");
    const std::string thresholdMin = GetStringFromObject(env, value, kValueClass, "mThresholdMin");
    const std::string thresholdMax = GetStringFromObject(env, value, kValueClass, "mThresholdMax");
    const std::string result = GetStringFromObject(env, value, kValueClass, "mResult");
    const std::string time = GetStringFromObject(env, value, kValueClass, "mTime");
    const std::string firmware = GetStringFromObject(env, value, kValueClass, "mFirmware");
    const std::string description = GetStringFromObject(env, value, kValueClass, "mDescription");
    MMI_LOGI(
            "%s: SendBigDataValue by hidl, version: %d; dataSource: %d; errorCode: %d; itemId: %d; station: %s; "
            "cycle: %d; deviceName: %s; testName: %s; value: %s; minThreshold: %s; maxThreshold: %s; result: %s; "
            "time: %s; firmware: %s; description: %s",
            kLogPrefix, version, dataSource, errorCode, itemId, station.c_str(), cycle, deviceName.c_str(),
            testName.c_str(), measured.c_str(), thresholdMin.c_str(), thresholdMax.c_str(), result.c_str(),
            time.c_str(), firmware.c_str(), description.c_str());

    FmdEvent event{};
    event.errorCode = errorCode;
    event.itemId = itemId;
    event.cycle = cycle;
    event.result = result;
    event.station = station;
    event.bsn = bsn;
    event.time = time;
    event.deviceName = deviceName;
    event.testName = testName;
    event.value = measured;
    event.thresholdMin = thresholdMin;
    event.thresholdMax = thresholdMax;
    event.firmware = firmware;
    event.description = description;

    FmdMsg message{};
    InitFmdMessage(message, version, dataSource, std::move(event));
    return ValueOr(factory->sendFmdMessage(message), -1);
}

jstring GetOeminfo(JNIEnv* env, jobject /*thiz*/, jint type, jint offset, jint length) {
    // Only factory interface 1.1 reads OEM info.
    sp<FactoryV1_1> hwFactoryNew = CastTo<FactoryV1_1>(g_hwFactoryInterface.get());
    if (hwFactoryNew == nullptr) {
        MMI_LOGE("%s: GetOeminfo by hidl fail, hwFactoryNew is null", kLogPrefix);
        return NewJavaString(env, "");
    }
    TextResult record;
    Finish(hwFactoryNew->getOeminfo(type, offset, length, Into(record)));
    if (record.ret != 0) {
        MMI_LOGE("%s: GetOeminfo by hidl fail, read failed result: %d ", kLogPrefix, record.ret);
        return NewJavaString(env, "");
    }
    // The text seen in the log and by Java ends at the first zero byte.
    MMI_LOGI("%s: GetOeminfo by hidl, read result: %d, oemInfo: %s", kLogPrefix, record.ret, record.text.c_str());
    return NewJavaString(env, record.text);
}

jint GetVerifySignatureResult(JNIEnv* env, jobject /*thiz*/, jbyteArray signature) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetVerifySignatureResult by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return -1;
    const mmi::JavaBytes bytes = mmi::ReadJavaBytes(env, signature);
    if (bytes.isNull) {
        mmi::LogNullArgument("GetVerifySignatureResult by hidl", "signature");
        return -1;
    }
    // Two hexadecimal characters per byte, no terminator: the text is exactly 2n characters.
    const size_t count = bytes.bytes.size();
    std::vector<char> hex(count * 2);
    memset_s(hex.data(), hex.size(), 0, hex.size());
    if (ConvertBinToString(bytes.bytes.data(), static_cast<unsigned int>(count), hex.data(),
                           static_cast<unsigned int>(hex.size())) != 0) {
        MMI_LOGE("%s: GetVerifySignatureResult by hidl, convertBinToString fail", kLogPrefix);
        return -1;
    }
    const int32_t ret = ValueOr(factory->setDeviceInfo(mmi::DEVICE_INFO_SIGNATURE, hidl_string(hex.data(), hex.size())), -1);
    MMI_LOGI("%s: GetVerifySignatureResult by hidl, ret: %d", kLogPrefix, ret);
    return ret;
}

jstring GetRsaSignInfo(JNIEnv* env, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = g_hwFactoryInterface.get();
    if (factory == nullptr) {
        MMI_LOGE("GetRsaSignInfo by hidl, g_hwFactoryInterface is null");
        return NewJavaString(env, "");
    }
    TextResult info;
    info.ret = 0;
    Finish(factory->getDeviceInfo(mmi::DEVICE_INFO_RSA_SIGN, Into(info)));
    MMI_LOGI("GetRsaSignInfo by hidl, ret = %d", info.ret);
    return NewJavaString(env, info.text);
}

jstring GetDeviceInfo(JNIEnv* env, jobject /*thiz*/, jint id) {
    sp<FactoryV1_0> factory = g_hwFactoryInterface.get();
    if (factory == nullptr) {
        MMI_LOGE("GetDeviceInfo by hidl, g_hwFactoryInterface is null");
        return NewJavaString(env, "");
    }
    TextResult info;
    info.ret = 0;
    Finish(factory->getDeviceInfo(id, Into(info)));
    MMI_LOGI("GetDeviceInfo by hidl, ret = %d", info.ret);
    return NewJavaString(env, info.text);
}

}  // namespace native_hidl
