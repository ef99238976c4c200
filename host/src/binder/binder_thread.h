#pragma once

#include "../common/notice_thread.h"

namespace hostruntime {

struct BinderThreadTag {};

// The process's binder thread: delivers death notices of binder services.
inline NoticeThread& BinderThread() { return NoticeThreadFor<BinderThreadTag>(); }

}  // namespace hostruntime
