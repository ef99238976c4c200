// The threads that deliver notices (death and registration callbacks) to the process, like
// a process's binder thread pool on a device: a notice goes to any free thread, so a
// notice whose handler blocks (a recovery waiting for a service) does not hold back the
// next one, and the pool starts another thread when every thread is busy, up to a limit
// (as libbinder's pool does). Notices posted with the same order key, such as one-way
// calls to one object, are delivered one at a time and in the order posted.
//
// Lives until process exit: notices may still be running while the process exits.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <thread>

namespace hostruntime {

class NoticePool {
public:
    static constexpr int kMinThreads = 2;
    static constexpr int kMaxThreads = 16;

    // Queues a notice. With an order key, it runs only after every notice posted earlier
    // with the same key has run.
    void Post(std::function<void()> notice, const void* orderKey = nullptr) {
        std::lock_guard<std::mutex> lock(mLock);
        mQueue.push_back(Item{orderKey, std::move(notice)});
        // One thread per queued notice that no waiting thread can take: a blocked handler
        // never keeps a later notice waiting while the pool may still grow.
        while (mThreads < kMinThreads ||
               (mThreads < kMaxThreads && static_cast<int>(mQueue.size()) > mWaiting)) {
            ++mThreads;
            ++mWaiting;  // counted from its start, so that the next post sees it
            std::thread([this] { Run(); }).detach();
        }
        mChanged.notify_all();
    }

    // Waits until nothing is queued and no notice is running, or the time is up.
    bool WaitIdle(std::chrono::milliseconds timeout) {
        std::unique_lock<std::mutex> lock(mLock);
        return mChanged.wait_for(lock, timeout, [this] { return mQueue.empty() && mBusy == 0; });
    }

    // Host control: while held, queued notices wait (as when every thread of the pool is
    // busy elsewhere); notices already running go on. Holds nest.
    void Hold() {
        std::lock_guard<std::mutex> lock(mLock);
        ++mHolds;
    }
    void Release() {
        std::lock_guard<std::mutex> lock(mLock);
        if (mHolds > 0) --mHolds;
        mChanged.notify_all();
    }

private:
    struct Item {
        const void* orderKey;
        std::function<void()> run;
    };

    // The first queued notice that may run now, or end().
    std::deque<Item>::iterator Runnable() {
        if (mHolds > 0) return mQueue.end();
        for (auto it = mQueue.begin(); it != mQueue.end(); ++it) {
            if (it->orderKey == nullptr || mRunningKeys.count(it->orderKey) == 0) return it;
        }
        return mQueue.end();
    }

    void Run() {
        std::unique_lock<std::mutex> lock(mLock);
        for (;;) {
            mChanged.wait(lock, [this] { return Runnable() != mQueue.end(); });
            auto it = Runnable();
            Item item = std::move(*it);
            mQueue.erase(it);
            --mWaiting;
            ++mBusy;
            if (item.orderKey != nullptr) mRunningKeys.insert(item.orderKey);
            lock.unlock();
            item.run();
            item.run = nullptr;  // whatever the notice holds is released outside the lock
            lock.lock();
            if (item.orderKey != nullptr) mRunningKeys.erase(item.orderKey);
            --mBusy;
            ++mWaiting;
            mChanged.notify_all();
        }
    }

    std::mutex mLock;
    std::condition_variable mChanged;
    std::deque<Item> mQueue;
    std::set<const void*> mRunningKeys;  // keys with a notice running
    int mThreads = 0;
    int mWaiting = 0;  // threads free to take a notice
    int mBusy = 0;
    int mHolds = 0;
};

// One pool per tag. The instance is never destroyed: notices may still be running while
// the process exits.
template <typename Tag>
NoticePool& NoticePoolFor() {
    static NoticePool* pool = new NoticePool();
    return *pool;
}

}  // namespace hostruntime
