// Host-only: fault injection for the bounds-checked functions. A device's libc_secshared
// has no such switch; the simulated handset's tests use it to reach error paths that a
// real memset_s only takes on corrupt arguments.
#pragma once

#include <securec.h>

namespace hostcontrol {

// The next `times` calls of memset_s return `code` without touching the destination.
void FailNextMemset(errno_t code, unsigned times = 1);

// Cancels any armed memset_s failure.
void ClearSecurecFaults();

}  // namespace hostcontrol
