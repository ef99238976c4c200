// Host-only control of the HIDL stand-in: what hwservicemanager and the kernel decide on a
// device. The simulated handset uses it to kill services and to start over between runs.
#pragma once

#include <android/hidl/base/1.0/IBase.h>

#include <chrono>

namespace hostcontrol {

// Kills the service process: the service is unregistered under every interface, its calls
// fail from now on, and its death notices go out on the HIDL callback thread.
void KillHidlService(const android::sp<android::hidl::base::V1_0::IBase>& service);

// Whether the object was killed.
bool IsHidlServiceDead(const android::hidl::base::V1_0::IBase* service);

// Forgets every registered service and every registration listener.
void ResetHidlServiceManager();

// Waits until every queued HIDL notice has been delivered and handled, or the time is up.
bool WaitForHidlNotices(std::chrono::milliseconds timeout);

}  // namespace hostcontrol
