// HIDL runtime subset: what generated getService / registerAsService /
// registerForNotifications call into.
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <android/hidl/manager/1.0/IServiceNotification.h>

#include <string>

namespace android {
namespace hardware {
namespace details {

// The service registered for the interface and instance, or null; does not wait.
sp<::android::hidl::base::V1_0::IBase> getRawServiceInternal(const std::string& descriptor,
                                                             const std::string& instance, bool retry,
                                                             bool getStub);

// Registers the service under every interface of its chain.
status_t registerAsServiceInternal(const sp<::android::hidl::base::V1_0::IBase>& service,
                                   const std::string& name);

// Installs a listener for registrations of the interface (all instances when name is empty).
// Services already registered are reported at once, with preexisting = true.
bool registerForNotificationsInternal(const std::string& descriptor, const std::string& name,
                                      const sp<::android::hidl::manager::V1_0::IServiceNotification>& notification);

}  // namespace details
}  // namespace hardware
}  // namespace android
