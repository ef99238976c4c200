// Host-only control of the HIDL stand-in: what hwservicemanager and the kernel decide on a
// device. The simulated handset uses it to kill services and to start over between runs.
#pragma once

#include <android/hidl/base/1.0/IBase.h>

#include <chrono>
#include <vector>

namespace hostcontrol {

// Kills the service process: the service is unregistered under every interface, its calls
// fail from now on, and its death notices go out on the HIDL callback threads.
void KillHidlService(const android::sp<android::hidl::base::V1_0::IBase>& service);

// Kills the services of one process together: every one is unregistered and dead before
// the first death notice goes out.
void KillHidlServices(const std::vector<android::sp<android::hidl::base::V1_0::IBase>>& services);

// Whether the object was killed.
bool IsHidlServiceDead(const android::hidl::base::V1_0::IBase* service);

// Forgets every registered service and every registration listener.
void ResetHidlServiceManager();

// Waits until every queued HIDL notice has been delivered and handled, or the time is up.
bool WaitForHidlNotices(std::chrono::milliseconds timeout);

// Holds back the delivery of HIDL notices until the matching release (see
// HoldBinderNotices).
void HoldHidlNotices();
void ReleaseHidlNotices();

// The client process ended: its death links and registration listeners are dropped, as
// hwservicemanager and the kernel drop a dead process's. Later ones belong to the next
// process.
void DropHidlClientRegistrations();

}  // namespace hostcontrol
