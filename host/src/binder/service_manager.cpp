#include <binder/IServiceManager.h>
#include <hostcontrol/binder_control.h>
#include <utils/String8.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "binder_threads.h"

namespace android {
namespace {

std::string Utf8(const String16& name) { return std::string(String8(name).c_str()); }

// The in-process service manager. It is created on first use and never destroyed, since
// binder threads may still be waiting in it while the process exits.
class HostServiceManager : public IServiceManager {
public:
    sp<IBinder> checkService(const String16& name) const override {
        std::lock_guard<std::mutex> lock(mLock);
        auto it = mServices.find(Utf8(name));
        return it == mServices.end() ? nullptr : it->second;
    }

    sp<IBinder> getService(const String16& name) const override { return checkService(name); }

    status_t addService(const String16& name, const sp<IBinder>& service, bool, int) override {
        if (service == nullptr) return BAD_VALUE;
        std::lock_guard<std::mutex> lock(mLock);
        mServices[Utf8(name)] = service;
        mChanged.notify_all();
        return OK;
    }

    Vector<String16> listServices(int) override {
        std::lock_guard<std::mutex> lock(mLock);
        Vector<String16> names;
        for (const auto& entry : mServices) names.push_back(String16(entry.first.c_str()));
        return names;
    }

    sp<IBinder> waitForService(const String16& name16) override {
        const std::string name = Utf8(name16);
        std::unique_lock<std::mutex> lock(mLock);
        const uint64_t generation = mGeneration;
        ++mWaiters[name];
        mChanged.notify_all();
        mChanged.wait(lock, [&] { return mServices.count(name) != 0 || mGeneration != generation; });
        if (--mWaiters[name] == 0) mWaiters.erase(name);
        mChanged.notify_all();
        auto it = mServices.find(name);
        return it == mServices.end() ? nullptr : it->second;
    }

    bool isDeclared(const String16& name) override {
        std::lock_guard<std::mutex> lock(mLock);
        return mDeclared.count(Utf8(name)) != 0;
    }

    void Declare(const std::string& name) {
        std::lock_guard<std::mutex> lock(mLock);
        mDeclared.insert(name);
    }

    void Forget(const sp<IBinder>& binder) {
        std::lock_guard<std::mutex> lock(mLock);
        for (auto it = mServices.begin(); it != mServices.end();) {
            it = it->second == binder ? mServices.erase(it) : std::next(it);
        }
    }

    int WaitersFor(const std::string& name) {
        std::lock_guard<std::mutex> lock(mLock);
        auto it = mWaiters.find(name);
        return it == mWaiters.end() ? 0 : it->second;
    }

    bool WaitForWaiters(const std::string& name, int count, std::chrono::milliseconds timeout) {
        std::unique_lock<std::mutex> lock(mLock);
        return mChanged.wait_for(lock, timeout, [&] {
            auto it = mWaiters.find(name);
            return it != mWaiters.end() && it->second >= count;
        });
    }

    void Reset() {
        std::lock_guard<std::mutex> lock(mLock);
        mServices.clear();
        mDeclared.clear();
        ++mGeneration;
        mChanged.notify_all();
    }

private:
    mutable std::mutex mLock;
    mutable std::condition_variable mChanged;
    std::map<std::string, sp<IBinder>> mServices;
    std::set<std::string> mDeclared;
    std::map<std::string, int> mWaiters;
    uint64_t mGeneration = 0;
};

HostServiceManager& Manager() {
    static HostServiceManager* manager = [] {
        auto* created = new HostServiceManager();
        created->incStrong(nullptr);  // held for the life of the process
        return created;
    }();
    return *manager;
}

}  // namespace

sp<IServiceManager> defaultServiceManager() { return &Manager(); }

}  // namespace android

namespace hostcontrol {

void DeclareService(const std::string& name) { android::Manager().Declare(name); }

void KillBinders(const std::vector<android::sp<android::IBinder>>& binders) {
    // Every object is gone from the service manager and dead before the first notice goes
    // out: a recipient that looks the services up again finds none of them.
    for (const auto& binder : binders) {
        if (binder != nullptr) android::Manager().Forget(binder);
    }
    std::vector<std::function<void()>> notices;
    for (const auto& binder : binders) {
        android::BBinder* local = binder == nullptr ? nullptr : binder->localBinder();
        if (local == nullptr) continue;
        for (auto& notice : local->die()) notices.push_back(std::move(notice));
    }
    for (auto& notice : notices) hostruntime::BinderThreads().Post(std::move(notice));
}

void KillBinder(const android::sp<android::IBinder>& binder) { KillBinders({binder}); }

int WaitersFor(const std::string& name) { return android::Manager().WaitersFor(name); }

bool WaitForWaiters(const std::string& name, int count, std::chrono::milliseconds timeout) {
    return android::Manager().WaitForWaiters(name, count, timeout);
}

void ResetServiceManager() { android::Manager().Reset(); }

bool WaitForBinderNotices(std::chrono::milliseconds timeout) {
    return hostruntime::BinderThreads().WaitIdle(timeout);
}

void HoldBinderNotices() { hostruntime::BinderThreads().Hold(); }

void ReleaseBinderNotices() { hostruntime::BinderThreads().Release(); }

}  // namespace hostcontrol
