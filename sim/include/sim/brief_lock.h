// A mutex for locks that are held for a few instructions but taken by several threads at a
// high rate, like the log capture's and the fake services' call records: a thread that
// finds it taken retries for a short while before it sleeps. With a plain mutex each such
// collision puts a thread to sleep and wakes it again, which costs far more than the wait
// and lets two busy callers run no faster than one.
#pragma once

#include <mutex>
#include <thread>

namespace mmisim {

class BriefLock {
public:
    void lock() {
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            if (mMutex.try_lock()) return;
            Relax();
        }
        mMutex.lock();
    }
    bool try_lock() { return mMutex.try_lock(); }
    void unlock() { mMutex.unlock(); }

private:
    static constexpr int kAttempts = 200;

    static void Relax() {
#if defined(__x86_64__) || defined(__i386__)
        __builtin_ia32_pause();
#else
        std::this_thread::yield();
#endif
    }

    std::mutex mMutex;
};

}  // namespace mmisim
