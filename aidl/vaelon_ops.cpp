// The camera always-on service: the service types it supports, the overtime of one type,
// client registration, and the callback through which the service's events reach the Java
// method MmiNativeManager.RegisterSuccess. Binder statuses are not looked at: only the
// answers decide, and a failed call leaves the presets.
#include <mmi_log.h>
#include <service_access.h>
#include <utils/String16.h>
#include <vendor/zentel/hardware/camera/vaelon/BnVAELONServiceCallBack.h>

#include <mutex>
#include <vector>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using android::String16;
using mmi::kLogPrefix;
using vendor::zentel::hardware::camera::vaelon::BnVAELONServiceCallBack;
using vendor::zentel::hardware::camera::vaelon::GetCapabilitiesResult;
using vendor::zentel::hardware::camera::vaelon::IVAELONService;
using vendor::zentel::hardware::camera::vaelon::VAELONClientHandleType;
using vendor::zentel::hardware::camera::vaelon::VAELONServiceResult;

namespace native_aidl {
namespace {

constexpr const char* kRegisterSuccessMethod = "RegisterSuccess";
constexpr jint kJniVersion = 0x10004;  // JNI 1.4
// The name this library registers under.
constexpr const char* kClientName = "0";
// A registration result the service did not write.
constexpr int32_t kResultNotWritten = 2;

// The client handle of the last registration, sent back when unregistering. It lives as
// long as the library and is never reset; the lock lets registrations and unregistrations
// on different Java threads exchange it safely.
std::mutex g_vaelonClientHandleLock;
VAELONClientHandleType g_vaelonClientHandle;

VAELONClientHandleType ClientHandle() {
    std::lock_guard<std::mutex> lock(g_vaelonClientHandleLock);
    return g_vaelonClientHandle;
}

void SetClientHandle(const VAELONClientHandleType& handle) {
    std::lock_guard<std::mutex> lock(g_vaelonClientHandleLock);
    g_vaelonClientHandle = handle;
}

// Receives the camera service's events on a thread of the service's and passes each one on
// to Java. Every problem ends in an error line; the service always gets "ok".
class VaelonCallback : public BnVAELONServiceCallBack {
public:
    android::binder::Status NotifyVAELONEvent(const VAELONClientHandleType& handle,
                                              const VAELONServiceResult& result) override {
        // Deliberately at error priority, and without the log prefix.
        MMI_LOGE("RegisterClient to get vaelon callback success, clientHandle: %d, serviceResult: %d",
                 handle.clientHandle, result.serviceResult);
        const JavaCallbackUse use;
        const JavaCallbackTarget& target = use.target();
        if (target.vm == nullptr || target.nativeClass == nullptr) {
            MMI_LOGE("RegisterClient fail, g_globalEnv is null or g_nativeClass is null");
            return android::binder::Status::ok();
        }
        // The thread is used as it is: a thread the Java VM does not know is not attached here.
        JNIEnv* env = nullptr;
        if (target.vm->GetEnv(reinterpret_cast<void**>(&env), kJniVersion) != JNI_OK) {
            MMI_LOGE("%s: RegisterClient fail, get env fail", kLogPrefix);
            return android::binder::Status::ok();
        }
        if (env == nullptr) {
            MMI_LOGE("RegisterClient fail, env is null");
            return android::binder::Status::ok();
        }
        jmethodID registerSuccess = env->GetStaticMethodID(target.nativeClass, kRegisterSuccessMethod, "()V");
        if (registerSuccess == nullptr) {
            mmi::ReportFailedLookup(env, "RegisterClient", "method", kRegisterSuccessMethod);
            MMI_LOGE("RegisterClient fail, vaelonCallbackId is nullptr");
            return android::binder::Status::ok();
        }
        env->CallStaticVoidMethod(target.nativeClass, registerSuccess);
        // The binder thread goes back to the runtime with no Java exception pending.
        if (env->ExceptionCheck()) {
            env->ExceptionClear();
            MMI_LOGE("%s: RegisterClient fail, RegisterSuccess threw an exception", kLogPrefix);
        }
        return android::binder::Status::ok();
    }
};

// Keeps the way back to Java for the callback: the Java VM and a global reference to the
// native-method class, refreshed on every registration.
void PrepareJavaCallbackTarget(JNIEnv* env) {
    JavaCallbackTarget target;
    if (env->GetJavaVM(&target.vm) != JNI_OK) target.vm = nullptr;
    jclass clazz = env->FindClass(mmi::kNativeManagerClass);
    if (clazz == nullptr) {
        mmi::ReportFailedLookup(env, "RegisterClient by aidl", "class", mmi::kNativeManagerClass);
    } else {
        target.nativeClass = static_cast<jclass>(env->NewGlobalRef(clazz));
        env->DeleteLocalRef(clazz);
    }
    // The previous class reference is not deleted: an event being delivered on a service
    // thread at this moment may still be using it.
    ExchangeJavaCallbackTarget(target);
}

// The service's capability records; empty when the call failed.
std::vector<GetCapabilitiesResult> Capabilities(IVAELONService& vaelon) {
    std::vector<GetCapabilitiesResult> capabilities;
    vaelon.getCapabilities(&capabilities);
    return capabilities;
}

}  // namespace

jintArray GetCapabilities(JNIEnv* env, jobject /*thiz*/) {
    sp<IVAELONService> vaelon = mmi::ServiceOr(g_aidlVaelon, "%s: GetCapabilities by aidl fail, g_aidlVaelon is null");
    if (vaelon == nullptr) return nullptr;
    const std::vector<GetCapabilitiesResult> capabilities = Capabilities(*vaelon);
    if (capabilities.empty()) {
        MMI_LOGE("%s: GetCapabilities by aidl fail, get empty result vector", kLogPrefix);
        return nullptr;
    }
    std::vector<int32_t> serviceTypes;
    serviceTypes.reserve(capabilities.size());
    for (const GetCapabilitiesResult& capability : capabilities) serviceTypes.push_back(capability.serviceType);
    MMI_LOGI("%s: GetCapabilities by aidl success, return %d ints.", kLogPrefix, static_cast<int>(serviceTypes.size()));
    return mmi::NewJavaIntArray(env, serviceTypes);
}

jint GetVaelonOvertime(JNIEnv* /*env*/, jobject /*thiz*/, jint serviceType) {
    sp<IVAELONService> vaelon = mmi::ServiceOr(g_aidlVaelon, "%s: GetVaelonOvertime by aidl fail, g_aidlVaelon is null");
    if (vaelon == nullptr) return -1;
    const std::vector<GetCapabilitiesResult> capabilities = Capabilities(*vaelon);
    if (capabilities.empty()) {
        MMI_LOGE("%s: GetVaelonOvertime by aidl fail, get empty result vector", kLogPrefix);
        return -1;
    }
    // The last record of the type that names an overtime wins.
    int32_t overtime = -1;
    for (const GetCapabilitiesResult& capability : capabilities) {
        if (capability.serviceType == serviceType && !capability.overtimes.empty()) {
            overtime = capability.overtimes.front();
        }
    }
    MMI_LOGI("%s: GetVaelonOvertime by aidl success, overtime %d.", kLogPrefix, overtime);
    return overtime;
}

jint RegisterClient(JNIEnv* env, jobject /*thiz*/, jint serviceType) {
    sp<IVAELONService> vaelon = mmi::ServiceOr(g_aidlVaelon, "%s: RegisterClient by aidl fail, g_aidlVaelon is null");
    if (vaelon == nullptr) return -1;
    // Ready before the service hears of the client, so that its first event finds the way.
    PrepareJavaCallbackTarget(env);
    sp<VaelonCallback> callback = new VaelonCallback();
    g_aidlVaelonNotifier.set(callback);
    VAELONClientHandleType handle = ClientHandle();
    int32_t result = kResultNotWritten;
    vaelon->registerClient(callback, serviceType, String16(kClientName), &handle, &result);
    SetClientHandle(handle);
    if (result != 0) {
        MMI_LOGE("%s: RegisterClient by aidl fail, get result fail, result: %d", kLogPrefix, result);
        return -1;
    }
    MMI_LOGI("%s: RegisterClient by aidl success, return %d, serviceType: %d, clientHandle: %d", kLogPrefix, result,
             serviceType, handle.clientHandle);
    return 0;
}

jint UnregisterClient(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<IVAELONService> vaelon = mmi::ServiceOr(g_aidlVaelon, "%s: UnregisterClient by aidl fail, g_aidlVaelon is null");
    if (vaelon == nullptr) return -1;
    if (g_aidlVaelonNotifier.take() != nullptr) {
        MMI_LOGI("%s: UnregisterClient by aidl, clear g_aidlVaelonNotifier", kLogPrefix);
    }
    const VAELONClientHandleType handle = ClientHandle();
    int32_t result = kResultNotWritten;
    vaelon->unregisterClient(handle, &result);
    if (result != 0) {
        MMI_LOGE("%s: UnregisterClient by aidl fail, get result fail, result: %d", kLogPrefix, result);
        return -1;
    }
    MMI_LOGI("%s: UnregisterClient by aidl success, return %d, clientHandle: %d", kLogPrefix, result,
             handle.clientHandle);
    return 0;
}

}  // namespace native_aidl
