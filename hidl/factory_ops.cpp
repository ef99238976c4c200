// Factory state and identity queries over the HIDL factory interface (1.0, with 1.1 cast
// per call for the operations only 1.1 offers).
#include <factory_items.h>
#include <mmi_log.h>
#include <service_access.h>
#include <vendor/zentel/hardware/hwfactoryinterface/1.1/IHwFactoryInterface.h>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_string;
using mmi::kLogPrefix;
using mmi::NewJavaString;

namespace native_hidl {
namespace {

using FactoryV1_0 = hw::hwfactoryinterface::V1_0::IHwFactoryInterface;
using FactoryV1_1 = hw::hwfactoryinterface::V1_1::IHwFactoryInterface;


}  // namespace

jboolean IsFactoryVersion(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: IsFactoryVersion by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return JNI_FALSE;
    const bool result = ValueOr(factory->isFactoryVersion(), false);
    MMI_LOGI("%s: IsFactoryVersion by hidl: %d", kLogPrefix, result);
    return result ? JNI_TRUE : JNI_FALSE;
}

jstring GetManufactureFileName(JNIEnv* env, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetManufactureFileName by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    TextResult result;
    Finish(factory->getManufactureFileName(Into(result)));
    MMI_LOGI("%s: GetManufactureFileName by hidl, ret: %d, fileName: %s", kLogPrefix, result.ret, result.text.c_str());
    return NewJavaString(env, result.text);
}

jstring GetBsn(JNIEnv* env, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetBsn by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    TextResult result;
    Finish(factory->getDeviceInfo(mmi::DEVICE_INFO_BSN, Into(result)));
    MMI_LOGI("%s: GetBsn by hidl, ret: %d", kLogPrefix, result.ret);
    return NewJavaString(env, result.text);
}

jstring GetTestApkPackageName(JNIEnv* env, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetTestApkPackageName by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    TextResult result;
    Finish(factory->getDeviceInfo(mmi::DEVICE_INFO_TEST_APK_PACKAGE, Into(result)));
    MMI_LOGI("%s: GetTestApkPackageName by hidl, ret: %d", kLogPrefix, result.ret);
    return NewJavaString(env, result.text);
}

jint GetManufactureMode(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<FactoryV1_1> hwFactoryNew = CastTo<FactoryV1_1>(g_hwFactoryInterface.get());
    if (hwFactoryNew == nullptr) {
        MMI_LOGE("%s: GetManufactureMode by hidl, hwFactoryNew is null", kLogPrefix);
        return -1;
    }
    const int32_t result = ValueOr(hwFactoryNew->getManufactureMode(), -1);
    MMI_LOGI("%s: GetManufactureMode by hidl, result: %d", kLogPrefix, result);
    return result;
}

jint GetMmiDeviceFeaturesCheckResult(JNIEnv* /*env*/, jobject /*thiz*/, jint feature) {
    sp<FactoryV1_0> factory =
            mmi::ServiceOr(g_hwFactoryInterface, "%s: GetMmiDeviceFeaturesCheckResult by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return -1;
    const int32_t result = ValueOr(factory->getMmiDeviceFeaturesCheckResult(feature), -1);
    MMI_LOGI("%s: GetMmiDeviceFeaturesCheckResult by hidl, result: %d", kLogPrefix, result);
    return result;
}

jint ClearPackageName(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: ClearPackageName by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return -1;
    sp<FactoryV1_1> hwFactoryNew = CastTo<FactoryV1_1>(factory);
    if (hwFactoryNew == nullptr) {
        MMI_LOGE("ClearPackageName by hidl, hwFactoryNew is null, HwFactoryV11 not support!");
        return -1;
    }
    const int32_t result = ValueOr(hwFactoryNew->clearDeviceInfo(mmi::CLEAR_ITEM_PACKAGE_NAME), -1);
    MMI_LOGI("%s: ClearPackageName by hidl, result: %d", kLogPrefix, result);
    return result;
}

jint ReleaseFactoryHidlResource(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: ReleaseFactoryHidlResource by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return -1;
    const int32_t result = ValueOr(factory->releaseFactoryResource(), -1);
    MMI_LOGI("%s: ReleaseFactoryHidlResource by hidl, result: %d", kLogPrefix, result);
    return result;
}

jstring GetMmiAutoStartFlag(JNIEnv* env, jobject /*thiz*/) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: GetMmiAutoStartFlag by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    const char* fallback = "Error";
    TextResult result;
    Finish(factory->getDeviceInfo(mmi::DEVICE_INFO_MMI_AUTO_START, Into(result)));
    MMI_LOGI("%s: GetMmiAutoStartFlag by hidl, ret: %d, flag: %s", kLogPrefix, result.ret, result.text.c_str());
    if (result.ret != 0) {
        MMI_LOGE("%s: GetMmiAutoStartFlag by hidl failed", kLogPrefix);
        result.text = fallback;
    }
    return NewJavaString(env, result.text);
}

jint SetMmiAutoStartFlag(JNIEnv* env, jobject /*thiz*/, jstring flag) {
    sp<FactoryV1_0> factory = mmi::ServiceOr(g_hwFactoryInterface, "%s: SetMmiAutoStartFlag by hidl fail, g_hwFactoryInterface is null");
    if (factory == nullptr) return -1;
    mmi::JavaUtfChars chars(env, flag);
    if (chars.isNull()) {
        mmi::LogNullArgument("SetMmiAutoStartFlag by hidl", "flag");
        return -1;
    }
    const int32_t result = ValueOr(factory->setDeviceInfo(mmi::DEVICE_INFO_MMI_AUTO_START, hidl_string(chars.c_str())), -1);
    MMI_LOGI("%s: SetMmiAutoStartFlag by hidl, result: %d", kLogPrefix, result);
    return result;
}

}  // namespace native_hidl
