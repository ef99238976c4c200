// One thread that delivers notices (death and registration callbacks) in order, like a
// process's binder or hwbinder thread on a device. Lives until process exit.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace hostruntime {

class NoticeThread {
public:
    void Post(std::function<void()> notice) {
        std::lock_guard<std::mutex> lock(mLock);
        if (!mThread.joinable()) mThread = std::thread([this] { Run(); });
        mQueue.push_back(std::move(notice));
        mChanged.notify_all();
    }

    bool WaitIdle(std::chrono::milliseconds timeout) {
        std::unique_lock<std::mutex> lock(mLock);
        return mChanged.wait_for(lock, timeout, [this] { return mQueue.empty() && !mBusy; });
    }

    bool OnThisThread() const { return std::this_thread::get_id() == mThread.get_id(); }

private:
    void Run() {
        std::unique_lock<std::mutex> lock(mLock);
        for (;;) {
            mChanged.wait(lock, [this] { return !mQueue.empty(); });
            std::function<void()> notice = std::move(mQueue.front());
            mQueue.pop_front();
            mBusy = true;
            lock.unlock();
            notice();
            notice = nullptr;
            lock.lock();
            mBusy = false;
            mChanged.notify_all();
        }
    }

    std::mutex mLock;
    std::condition_variable mChanged;
    std::deque<std::function<void()>> mQueue;
    bool mBusy = false;
    std::thread mThread;
};

// The instance is never destroyed: notices may still be running while the process exits.
template <typename Tag>
NoticeThread& NoticeThreadFor() {
    static NoticeThread* thread = new NoticeThread();
    return *thread;
}

}  // namespace hostruntime
