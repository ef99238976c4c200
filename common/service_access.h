// Reading a family's handle at the start of an operation.
#pragma once

#include <mmi_log.h>
#include <shared_handle.h>

namespace mmi {

// A strong copy of the handle's service, or null after writing the operation's
// missing-service line (a format that takes the log prefix, or none).
template <typename Ptr>
Ptr ServiceOr(const SharedHandle<Ptr>& handle, const char* missingLine) {
    Ptr service = handle.get();
    if (service == nullptr) MMI_LOGE(missingLine, kLogPrefix);
    return service;
}

}  // namespace mmi
