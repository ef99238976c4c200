#pragma once

#include "../common/notice_pool.h"

namespace hostruntime {

struct BinderThreadTag {};

// The process's binder thread pool: delivers death notices of binder services.
inline NoticePool& BinderThreads() { return NoticePoolFor<BinderThreadTag>(); }

}  // namespace hostruntime
