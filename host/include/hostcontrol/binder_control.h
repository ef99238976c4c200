// Host-only control of the binder stand-in: what a device's manifest, init and kernel
// driver decide there. The simulated handset uses it to declare, kill and restart services.
#pragma once

#include <binder/IBinder.h>

#include <chrono>
#include <string>
#include <vector>

namespace hostcontrol {

// Lists the name in the device manifest, so isDeclared answers true and waitForService
// blocks until a service registers under it.
void DeclareService(const std::string& name);

// Kills the service process behind the binder: the service manager forgets every name it
// was registered under, the object answers no call, and the death notices go out on the
// binder threads.
void KillBinder(const android::sp<android::IBinder>& binder);

// Kills the binders of one service process together: every one leaves the service manager
// and dies before the first death notice goes out.
void KillBinders(const std::vector<android::sp<android::IBinder>>& binders);

// The client process ended, as when the application's process dies: the kernel drops the
// death links it made, so their notices never go out. Links made afterwards belong to the
// next process.
void DropClientLinks();

// Number of threads blocked in waitForService for this name at this moment.
int WaitersFor(const std::string& name);

// Waits until at least `count` threads are blocked in waitForService for the name, or the
// time is up. Returns true when they are.
bool WaitForWaiters(const std::string& name, int count, std::chrono::milliseconds timeout);

// Forgets every service and declaration; threads blocked in waitForService return null.
void ResetServiceManager();

// Waits until every queued binder notice has been delivered and handled, or the time is up.
// Returns true when idle.
bool WaitForBinderNotices(std::chrono::milliseconds timeout);

// Holds back the delivery of binder notices (as when every binder thread of the process is
// busy) until the matching release; notices being handled go on. Holds nest.
void HoldBinderNotices();
void ReleaseBinderNotices();

}  // namespace hostcontrol
