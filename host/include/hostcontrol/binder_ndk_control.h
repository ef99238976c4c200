// Host-only control of NDK binder objects (see binder_control.h).
#pragma once

#include <android/binder_ibinder.h>

#include <vector>

namespace hostcontrol {

// Kills the service process behind an NDK binder: it leaves the service manager and its
// death notices go out on the binder threads.
void KillAIBinder(AIBinder* binder);

// Kills the NDK binders of one service process together (see KillBinders).
void KillAIBinders(const std::vector<AIBinder*>& binders);

}  // namespace hostcontrol
