// A process-wide service handle that Java caller threads read while binder and HIDL
// threads disconnect and reconnect it.
//
// A reader takes a strong copy under a small lock and calls the service outside it, so it
// sees either null or a live object that stays alive for its whole call, and never waits
// for a connection or recovery in progress. Readers share the lock (callers on several Java
// threads never wait for each other); writers swap the value under it alone and drop the
// old reference after releasing it, since dropping it may run a destructor.
#pragma once

#include <mutex>
#include <shared_mutex>
#include <utility>

namespace mmi {

template <typename Ptr>
class SharedHandle {
public:
    SharedHandle() = default;
    SharedHandle(const SharedHandle&) = delete;
    SharedHandle& operator=(const SharedHandle&) = delete;

    Ptr get() const {
        std::shared_lock<std::shared_mutex> lock(mLock);
        return mPtr;
    }

    bool isSet() const {
        std::shared_lock<std::shared_mutex> lock(mLock);
        return mPtr != nullptr;
    }

    void set(Ptr value) {
        Ptr old = exchange(std::move(value));
        (void)old;  // released here, outside the lock
    }

    // Clears the handle and hands back what it held.
    Ptr take() { return exchange(Ptr()); }

private:
    Ptr exchange(Ptr value) {
        std::lock_guard<std::shared_mutex> lock(mLock);
        std::swap(mPtr, value);
        return value;
    }

    mutable std::shared_mutex mLock;
    Ptr mPtr{};
};

}  // namespace mmi
