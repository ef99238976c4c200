// A process-wide service handle that Java caller threads read while binder and HIDL
// threads disconnect and reconnect it.
//
// A reader takes a strong copy under a small lock and calls the service outside it, so it
// sees either null or a live object that stays alive for its whole call, and never waits
// for a connection or recovery in progress. Writers swap the value under the same lock and
// drop the old reference after releasing it, since dropping it may run a destructor.
#pragma once

#include <mutex>
#include <utility>

namespace mmi {

template <typename Ptr>
class SharedHandle {
public:
    SharedHandle() = default;
    SharedHandle(const SharedHandle&) = delete;
    SharedHandle& operator=(const SharedHandle&) = delete;

    Ptr get() const {
        std::lock_guard<std::mutex> lock(mLock);
        return mPtr;
    }

    bool isSet() const {
        std::lock_guard<std::mutex> lock(mLock);
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
        std::lock_guard<std::mutex> lock(mLock);
        std::swap(mPtr, value);
        return value;
    }

    mutable std::mutex mLock;
    Ptr mPtr{};
};

}  // namespace mmi
