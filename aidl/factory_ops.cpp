// Factory state and identity queries over the AIDL factory interface.
#include <factory_items.h>
#include <mmi_log.h>
#include <service_access.h>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using mmi::NewJavaString;
using vendor::zentel::hardware::hwfactoryinterface::IFacIntStr;
using vendor::zentel::hardware::hwfactoryinterface::IHwFactoryInterface;

namespace native_aidl {
namespace {


// A text item; the binder status is not looked at, so a failed call leaves (0, "").
IFacIntStr DeviceInfo(IHwFactoryInterface& factory, int32_t item) {
    IFacIntStr info;
    factory.getDeviceInfo(item, &info);
    return info;
}

}  // namespace

jboolean IsFactoryVersion(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: IsFactoryVersion by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return JNI_FALSE;
    bool result = false;
    factory->isFactoryVersion(&result);
    MMI_LOGI("%s: IsFactoryVersion by aidl: %d", kLogPrefix, result);
    return result ? JNI_TRUE : JNI_FALSE;
}

jstring GetManufactureFileName(JNIEnv* env, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetManufactureFileName by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntStr info;
    factory->getManufactureFileName(&info);
    MMI_LOGI("%s: GetManufactureFileName by aidl, ret: %d, fileName: %s", kLogPrefix, info.ret, info.value.c_str());
    return NewJavaString(env, info.value);
}

jstring GetBsn(JNIEnv* env, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetBsn by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntStr info = DeviceInfo(*factory, mmi::DEVICE_INFO_BSN);
    MMI_LOGI("%s: GetBsn by aidl, ret: %d, deviceInfo: %s", kLogPrefix, info.ret, info.value.c_str());
    return NewJavaString(env, info.value);
}

jstring GetTestApkPackageName(JNIEnv* env, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetTestApkPackageName by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntStr info = DeviceInfo(*factory, mmi::DEVICE_INFO_TEST_APK_PACKAGE);
    MMI_LOGI("%s: GetTestApkPackageName by aidl, ret: %d, name: %s", kLogPrefix, info.ret, info.value.c_str());
    return NewJavaString(env, info.value);
}

jint GetManufactureMode(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetManufactureMode by aidl, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    int32_t result = -1;
    factory->getManufactureMode(&result);
    MMI_LOGI("%s: GetManufactureMode by aidl, result: %d", kLogPrefix, result);
    return result;
}

jint GetMmiDeviceFeaturesCheckResult(JNIEnv* /*env*/, jobject /*thiz*/, jint feature) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetMmiDeviceFeaturesCheckResult by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    int32_t result = -1;
    factory->getMmiDeviceFeaturesCheckResult(feature, &result);
    MMI_LOGI("%s: GetMmiDeviceFeaturesCheckResult by aidl, result: %d", kLogPrefix, result);
    return result;
}

jint ClearPackageName(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: ClearPackageName by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    int32_t result = -1;
    factory->clearDeviceInfo(mmi::CLEAR_ITEM_PACKAGE_NAME, &result);
    MMI_LOGI("%s: ClearPackageName by aidl, result: %d", kLogPrefix, result);
    return result;
}

jint ReleaseFactoryHidlResource(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory =
            mmi::ServiceOr(g_aidlFactoryInterface, "%s: ReleaseFactoryHidlResource by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    int32_t result = -1;
    factory->releaseFactoryResource(&result);
    MMI_LOGI("%s: ReleaseFactoryHidlResource by aidl, result: %d", kLogPrefix, result);
    return result;
}

jstring GetMmiAutoStartFlag(JNIEnv* env, jobject /*thiz*/) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: GetMmiAutoStartFlag by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return NewJavaString(env, "");
    IFacIntStr info = DeviceInfo(*factory, mmi::DEVICE_INFO_MMI_AUTO_START);
    MMI_LOGI("%s: GetMmiAutoStartFlag by aidl, ret: %d, flag: %s", kLogPrefix, info.ret, info.value.c_str());
    if (info.ret != 0) {
        MMI_LOGE("%s: GetMmiAutoStartFlag by aidl failed, ret: %d", kLogPrefix, info.ret);
        return NewJavaString(env, "");
    }
    return NewJavaString(env, info.value);
}

jint SetMmiAutoStartFlag(JNIEnv* env, jobject /*thiz*/, jstring flag) {
    sp<IHwFactoryInterface> factory = mmi::ServiceOr(g_aidlFactoryInterface, "%s: SetMmiAutoStartFlag by aidl fail, g_aidlFactoryInterface is null");
    if (factory == nullptr) return -1;
    mmi::JavaUtfChars chars(env, flag);
    if (chars.isNull()) {
        mmi::LogNullArgument("SetMmiAutoStartFlag by aidl", "flag");
        return -1;
    }
    int32_t result = -1;
    factory->setDeviceInfo(mmi::DEVICE_INFO_MMI_AUTO_START, chars.c_str(), &result);
    MMI_LOGI("%s: SetMmiAutoStartFlag by aidl, result: %d", kLogPrefix, result);
    return result;
}

}  // namespace native_aidl
