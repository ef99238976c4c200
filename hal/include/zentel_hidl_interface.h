// The static members every generated HIDL interface carries: descriptor, interface chain,
// casts from any parent, service lookup, registration and registration notices.
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <hidl/HidlSupport.h>
#include <hidl/Status.h>

#include <cstdint>
#include <functional>
#include <string>

#define ZENTEL_HIDL_INTERFACE(IFACE)                                                          \
    static const char* descriptor;                                                            \
    ::android::hardware::Return<void> interfaceChain(interfaceChain_cb _hidl_cb) override;    \
    static ::android::hardware::Return<::android::sp<IFACE>> castFrom(                        \
            const ::android::sp<::android::hidl::base::V1_0::IBase>& parent, bool emitError = false); \
    static ::android::sp<IFACE> getService(const std::string& serviceName = "default",        \
                                           bool getStub = false);                             \
    ::android::status_t registerAsService(const std::string& serviceName = "default");         \
    static bool registerForNotifications(                                                     \
            const std::string& serviceName,                                                   \
            const ::android::sp<::android::hidl::manager::V1_0::IServiceNotification>& notification)
