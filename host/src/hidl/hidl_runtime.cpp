#include <android/hidl/base/1.0/IBase.h>
#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <android/log.h>
#include <hidl/HidlTransportSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>
#include <hostcontrol/hidl_control.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "../common/notice_pool.h"

using ::android::sp;
using ::android::wp;
using ::android::hidl::base::V1_0::IBase;
using ::android::hidl::manager::V1_0::IServiceNotification;

namespace android {
namespace hardware {

std::string Status::description() const {
    if (isOk()) return "No error";
    return "Status(EX_" + std::to_string(mException) + "): " + std::to_string(mErrorCode);
}

namespace details {

// The client process of the links and listeners made from now on; a new one starts when
// the previous one ends (hostcontrol::DropHidlClientRegistrations).
std::atomic<uint64_t> g_clientProcess{0};

void hidlFatal(const char* what, const Status& status) {
    const std::string text = std::string(what) + ": " + status.description();
    __android_log_print(ANDROID_LOG_FATAL, "HidlStatus", "%s", text.c_str());
    std::fprintf(stderr, "HidlStatus: %s\n", text.c_str());
    std::abort();
}

// Death state and death links of one service object.
class HostLifeline {
public:
    bool Link(const sp<hidl_death_recipient>& recipient, uint64_t cookie) {
        std::lock_guard<std::mutex> lock(mLock);
        if (mDead) return false;
        const uint64_t client = g_clientProcess.load();
        // Links of a client process that ended are gone with it.
        mLinks.erase(std::remove_if(mLinks.begin(), mLinks.end(), [client](const Link_& l) { return l.client != client; }),
                     mLinks.end());
        mLinks.push_back(Link_{recipient, cookie, client});
        return true;
    }

    bool Unlink(const sp<hidl_death_recipient>& recipient) {
        std::lock_guard<std::mutex> lock(mLock);
        auto before = mLinks.size();
        mLinks.erase(std::remove_if(mLinks.begin(), mLinks.end(),
                                    [&](const Link_& l) { return l.recipient == recipient; }),
                     mLinks.end());
        return mLinks.size() != before;
    }

    bool IsDead() const {
        std::lock_guard<std::mutex> lock(mLock);
        return mDead;
    }

    struct Link_ {
        wp<hidl_death_recipient> recipient;
        uint64_t cookie;
        uint64_t client;  // the client process that linked
    };

    // Marks the object dead and returns the links to notify (those of the current client
    // process); empty when already dead.
    std::vector<Link_> Kill() {
        std::lock_guard<std::mutex> lock(mLock);
        if (mDead) return {};
        mDead = true;
        std::vector<Link_> links;
        for (Link_& link : mLinks) {
            if (link.client == g_clientProcess.load()) links.push_back(std::move(link));
        }
        mLinks.clear();
        return links;
    }

private:
    mutable std::mutex mLock;
    bool mDead = false;
    std::vector<Link_> mLinks;
};

namespace {

struct HidlThreadTag {};
// The process's hwbinder thread pool: death notices go to any free thread; registration
// notices are one-way calls to the listener, delivered in order per listener.
hostruntime::NoticePool& HidlThreads() { return hostruntime::NoticePoolFor<HidlThreadTag>(); }

const Status kDeadObject = Status::fromStatusT(DEAD_OBJECT);

struct Listener {
    std::string descriptor;
    std::string name;  // empty: every instance
    sp<IServiceNotification> notification;
};

// The in-process hwservicemanager. Never destroyed: the HIDL thread may use it at exit.
class Registry {
public:
    sp<IBase> Get(const std::string& descriptor, const std::string& instance) {
        std::lock_guard<std::mutex> lock(mLock);
        auto it = mServices.find({descriptor, instance});
        return it == mServices.end() ? nullptr : it->second;
    }

    void Add(const std::vector<std::string>& chain, const std::string& instance, const sp<IBase>& service) {
        std::lock_guard<std::mutex> lock(mLock);
        for (const std::string& descriptor : chain) {
            if (descriptor == IBase::descriptor) continue;
            mServices[{descriptor, instance}] = service;
            Notify(descriptor, instance, false);
        }
    }

    bool Listen(const std::string& descriptor, const std::string& name, const sp<IServiceNotification>& n) {
        std::lock_guard<std::mutex> lock(mLock);
        mListeners.push_back(Listener{descriptor, name, n});
        for (const auto& entry : mServices) {
            if (entry.first.first != descriptor) continue;
            if (!name.empty() && entry.first.second != name) continue;
            Deliver(n, descriptor, entry.first.second, true);
        }
        return true;
    }

    void Forget(const IBase* service) {
        std::lock_guard<std::mutex> lock(mLock);
        for (auto it = mServices.begin(); it != mServices.end();) {
            it = it->second.get() == service ? mServices.erase(it) : std::next(it);
        }
    }

    void Reset() {
        std::vector<sp<IBase>> services;
        std::deque<Listener> listeners;
        {
            std::lock_guard<std::mutex> lock(mLock);
            for (auto& entry : mServices) services.push_back(entry.second);
            mServices.clear();
            listeners.swap(mListeners);
        }
        // References are dropped outside the lock: a destructor may come back here.
    }

    // The client process ended: hwservicemanager drops its listeners.
    void DropListeners() {
        std::deque<Listener> listeners;
        {
            std::lock_guard<std::mutex> lock(mLock);
            listeners.swap(mListeners);
        }
    }

private:
    void Notify(const std::string& descriptor, const std::string& instance, bool preexisting) {
        for (const Listener& listener : mListeners) {
            if (listener.descriptor != descriptor) continue;
            if (!listener.name.empty() && listener.name != instance) continue;
            Deliver(listener.notification, descriptor, instance, preexisting);
        }
    }

    static void Deliver(const sp<IServiceNotification>& n, const std::string& descriptor,
                        const std::string& instance, bool preexisting) {
        HidlThreads().Post([n, descriptor, instance, preexisting] {
            n->onRegistration(descriptor, instance, preexisting).isOk();
        }, n.get());
    }

    std::mutex mLock;
    std::map<std::pair<std::string, std::string>, sp<IBase>> mServices;
    // Every registration is kept, as hwservicemanager keeps them, also a listener's repeated
    // ones. A deque grows in small steps, so the memory a registration adds is the same for
    // each (a test measures it).
    std::deque<Listener> mListeners;
};

Registry& TheRegistry() {
    static Registry* registry = new Registry();
    return *registry;
}

std::vector<std::string> ChainOf(const sp<IBase>& service) {
    std::vector<std::string> chain;
    service->interfaceChain([&](const hidl_vec<hidl_string>& descriptors) {
        for (const auto& d : descriptors) chain.emplace_back(d);
    }).isOk();
    return chain;
}

}  // namespace

sp<IBase> getRawServiceInternal(const std::string& descriptor, const std::string& instance, bool, bool) {
    return TheRegistry().Get(descriptor, instance);
}

status_t registerAsServiceInternal(const sp<IBase>& service, const std::string& name) {
    if (service == nullptr) return BAD_VALUE;
    TheRegistry().Add(ChainOf(service), name, service);
    return OK;
}

bool registerForNotificationsInternal(const std::string& descriptor, const std::string& name,
                                      const sp<IServiceNotification>& notification) {
    if (notification == nullptr) return false;
    return TheRegistry().Listen(descriptor, name, notification);
}

Return<bool> canCastInterface(IBase* interface, const char* castTo, bool) {
    if (interface == nullptr) return false;
    bool found = false;
    Return<void> ret = interface->interfaceChain([&](const hidl_vec<hidl_string>& types) {
        for (const auto& type : types) {
            if (type == castTo) found = true;
        }
    });
    if (!ret.isOk()) return ret.getStatus();
    return found;
}

Return<void> reportInterfaceChain(IBase* self, const IBase::interfaceChain_cb& cb,
                                  const std::vector<const char*>& chain) {
    if (self->hostLifeline().IsDead()) return kDeadObject;
    hidl_vec<hidl_string> descriptors(chain.size());
    size_t i = 0;
    for (const char* descriptor : chain) descriptors[i++] = descriptor;
    cb(descriptors);
    return Void();
}

}  // namespace details
}  // namespace hardware

namespace hidl {
namespace base {
namespace V1_0 {

using ::android::hardware::Return;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::details::HostLifeline;
using ::android::hardware::details::kDeadObject;

const char* IBase::descriptor = "android.hidl.base@1.0::IBase";

IBase::IBase() : mHostLifeline(std::make_unique<HostLifeline>()) {}
IBase::~IBase() = default;

Return<void> IBase::interfaceChain(interfaceChain_cb _hidl_cb) {
    if (mHostLifeline->IsDead()) return kDeadObject;
    _hidl_cb(hidl_vec<hidl_string>{IBase::descriptor});
    return ::android::hardware::Void();
}

Return<void> IBase::interfaceDescriptor(interfaceDescriptor_cb _hidl_cb) {
    if (mHostLifeline->IsDead()) return kDeadObject;
    std::string first;
    interfaceChain([&](const hidl_vec<hidl_string>& chain) {
        if (chain.size() > 0) first = chain[0];
    }).isOk();
    _hidl_cb(first);
    return ::android::hardware::Void();
}

Return<void> IBase::ping() {
    if (mHostLifeline->IsDead()) return kDeadObject;
    return ::android::hardware::Void();
}

Return<bool> IBase::linkToDeath(const sp<::android::hardware::hidl_death_recipient>& recipient,
                                uint64_t cookie) {
    if (recipient == nullptr) return false;
    if (mHostLifeline->IsDead()) return kDeadObject;
    return mHostLifeline->Link(recipient, cookie);
}

Return<bool> IBase::unlinkToDeath(const sp<::android::hardware::hidl_death_recipient>& recipient) {
    if (mHostLifeline->IsDead()) return kDeadObject;
    return mHostLifeline->Unlink(recipient);
}

Return<sp<IBase>> IBase::castFrom(const sp<IBase>& parent, bool) { return parent; }

}  // namespace V1_0
}  // namespace base

namespace manager {
namespace V1_0 {

const char* IServiceNotification::descriptor = "android.hidl.manager@1.0::IServiceNotification";

::android::hardware::Return<void> IServiceNotification::interfaceChain(interfaceChain_cb _hidl_cb) {
    _hidl_cb(::android::hardware::hidl_vec<::android::hardware::hidl_string>{
            IServiceNotification::descriptor, ::android::hidl::base::V1_0::IBase::descriptor});
    return ::android::hardware::Void();
}

}  // namespace V1_0
}  // namespace manager
}  // namespace hidl
}  // namespace android

namespace hostcontrol {

void KillHidlService(const sp<IBase>& service) { KillHidlServices({service}); }

void KillHidlServices(const std::vector<sp<IBase>>& services) {
    namespace details = android::hardware::details;
    // Every service is unregistered and dead before the first notice goes out.
    for (const auto& service : services) {
        if (service != nullptr) details::TheRegistry().Forget(service.get());
    }
    std::vector<std::function<void()>> notices;
    for (const auto& service : services) {
        if (service == nullptr) continue;
        wp<IBase> who(service);
        for (const auto& link : service->hostLifeline().Kill()) {
            wp<android::hardware::hidl_death_recipient> recipient = link.recipient;
            uint64_t cookie = link.cookie;
            notices.push_back([recipient, cookie, who] {
                sp<android::hardware::hidl_death_recipient> alive = recipient.promote();
                if (alive != nullptr) alive->serviceDied(cookie, who);
            });
        }
    }
    for (auto& notice : notices) details::HidlThreads().Post(std::move(notice));
}

bool IsHidlServiceDead(const IBase* service) { return service->hostLifeline().IsDead(); }

void ResetHidlServiceManager() { android::hardware::details::TheRegistry().Reset(); }

bool WaitForHidlNotices(std::chrono::milliseconds timeout) {
    return android::hardware::details::HidlThreads().WaitIdle(timeout);
}

void HoldHidlNotices() { android::hardware::details::HidlThreads().Hold(); }

void ReleaseHidlNotices() { android::hardware::details::HidlThreads().Release(); }

void DropHidlClientRegistrations() {
    ++android::hardware::details::g_clientProcess;
    android::hardware::details::TheRegistry().DropListeners();
}

}  // namespace hostcontrol
