// Host-only control of NDK binder objects (see binder_control.h).
#pragma once

#include <android/binder_ibinder.h>

namespace hostcontrol {

// Kills the service process behind an NDK binder: it leaves the service manager and its
// death notices go out on the binder thread.
void KillAIBinder(AIBinder* binder);

}  // namespace hostcontrol
