// NDK binder on top of the libbinder stand-in, sharing its service manager and binder
// threads, as the NDK library shares the driver and servicemanager on a device.
#include <android/binder_ibinder.h>
#include <android/binder_manager.h>
#include <android/binder_status.h>
#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <utils/String16.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <vector>

struct AIBinder_Class {
    std::string descriptor;
    android::String16 descriptor16;
    AIBinder_Class_onCreate onCreate;
    AIBinder_Class_onDestroy onDestroy;
    AIBinder_Class_onTransact onTransact;
};

// A local NDK binder object: a libbinder object carrying its class and user data.
struct AIBinder : public android::BBinder {
    AIBinder(const AIBinder_Class* clazz, void* userData) : mClass(clazz), mUserData(userData) {}
    ~AIBinder() override {
        if (mClass->onDestroy != nullptr) mClass->onDestroy(mUserData);
    }
    const android::String16& getInterfaceDescriptor() const override { return mClass->descriptor16; }

    const AIBinder_Class* mClass;
    void* mUserData;
};

struct AIBinder_Weak {
    android::wp<AIBinder> binder;
};

struct AStatus {
    binder_exception_t exception = EX_NONE;
    binder_status_t status = STATUS_OK;
    int32_t serviceSpecific = 0;
};

namespace {

// Forwards a libbinder obituary to the NDK callback with the cookie given at link time. As
// on a device, a link whose binder has died is spent: the recipient drops it the next time
// something links (see AIBinder_linkToDeath), whether or not its owner unlinks it.
class TransferDeathRecipient : public android::IBinder::DeathRecipient {
public:
    TransferDeathRecipient(AIBinder* binder, void* cookie, AIBinder_DeathRecipient_onBinderDied onDied)
        : mWho(binder), mCookie(cookie), mOnDied(onDied) {}
    void binderDied(const android::wp<android::IBinder>&) override {
        mOnDied(mCookie);
        mDied = true;
    }

    const android::wp<AIBinder>& who() const { return mWho; }
    void* cookie() const { return mCookie; }
    bool died() const { return mDied; }

private:
    android::wp<AIBinder> mWho;
    void* mCookie;
    AIBinder_DeathRecipient_onBinderDied mOnDied;
    std::atomic<bool> mDied{false};
};

}  // namespace

struct AIBinder_DeathRecipient {
    explicit AIBinder_DeathRecipient(AIBinder_DeathRecipient_onBinderDied onDied) : onDied(onDied) {}
    AIBinder_DeathRecipient_onBinderDied onDied;
    std::mutex lock;
    std::vector<android::sp<TransferDeathRecipient>> links;
};

extern "C" {

AStatus* AStatus_newOk() { return new AStatus(); }

AStatus* AStatus_fromExceptionCode(binder_exception_t exception) {
    auto* status = new AStatus();
    status->exception = exception;
    if (exception == EX_TRANSACTION_FAILED) status->status = STATUS_FAILED_TRANSACTION;
    return status;
}

AStatus* AStatus_fromServiceSpecificError(int32_t serviceSpecific) {
    auto* status = new AStatus();
    status->exception = EX_SERVICE_SPECIFIC;
    status->serviceSpecific = serviceSpecific;
    return status;
}

AStatus* AStatus_fromStatus(binder_status_t value) {
    auto* status = new AStatus();
    status->status = value;
    if (value != STATUS_OK) status->exception = EX_TRANSACTION_FAILED;
    return status;
}

bool AStatus_isOk(const AStatus* status) { return status->exception == EX_NONE; }
binder_exception_t AStatus_getExceptionCode(const AStatus* status) { return status->exception; }
int32_t AStatus_getServiceSpecificError(const AStatus* status) { return status->serviceSpecific; }
binder_status_t AStatus_getStatus(const AStatus* status) { return status->status; }
void AStatus_delete(AStatus* status) { delete status; }

AIBinder_Class* AIBinder_Class_define(const char* interfaceDescriptor, AIBinder_Class_onCreate onCreate,
                                      AIBinder_Class_onDestroy onDestroy,
                                      AIBinder_Class_onTransact onTransact) {
    return new AIBinder_Class{interfaceDescriptor, android::String16(interfaceDescriptor), onCreate,
                              onDestroy, onTransact};
}

const char* AIBinder_Class_getDescriptor(const AIBinder_Class* clazz) {
    return clazz->descriptor.c_str();
}

AIBinder* AIBinder_new(const AIBinder_Class* clazz, void* args) {
    void* userData = clazz->onCreate != nullptr ? clazz->onCreate(args) : args;
    auto* binder = new AIBinder(clazz, userData);
    binder->incStrong(nullptr);
    return binder;
}

bool AIBinder_associateClass(AIBinder* binder, const AIBinder_Class* clazz) {
    return binder != nullptr && clazz != nullptr && binder->mClass->descriptor == clazz->descriptor;
}

const AIBinder_Class* AIBinder_getClass(AIBinder* binder) { return binder->mClass; }
void* AIBinder_getUserData(AIBinder* binder) { return binder->mUserData; }
bool AIBinder_isRemote(const AIBinder*) { return false; }
bool AIBinder_isAlive(const AIBinder* binder) { return binder->isBinderAlive(); }

binder_status_t AIBinder_ping(AIBinder* binder) {
    return binder->pingBinder() == android::OK ? STATUS_OK : STATUS_DEAD_OBJECT;
}

void AIBinder_incStrong(AIBinder* binder) { binder->incStrong(nullptr); }
void AIBinder_decStrong(AIBinder* binder) { binder->decStrong(nullptr); }

AIBinder_Weak* AIBinder_Weak_new(AIBinder* binder) { return new AIBinder_Weak{binder}; }
void AIBinder_Weak_delete(AIBinder_Weak* weakBinder) { delete weakBinder; }

AIBinder* AIBinder_Weak_promote(AIBinder_Weak* weakBinder) {
    if (weakBinder == nullptr) return nullptr;
    android::sp<AIBinder> binder = weakBinder->binder.promote();
    if (binder == nullptr) return nullptr;
    binder->incStrong(nullptr);
    return binder.get();
}

binder_status_t AIBinder_linkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient, void* cookie) {
    if (binder == nullptr || recipient == nullptr) return STATUS_BAD_VALUE;
    android::sp<TransferDeathRecipient> link = new TransferDeathRecipient(binder, cookie, recipient->onDied);
    android::status_t status = binder->linkToDeath(link, cookie);
    if (status != android::OK) return status == android::DEAD_OBJECT ? STATUS_DEAD_OBJECT : STATUS_UNKNOWN_ERROR;
    std::lock_guard<std::mutex> lock(recipient->lock);
    recipient->links.erase(std::remove_if(recipient->links.begin(), recipient->links.end(),
                                          [](const auto& l) { return l->died(); }),
                           recipient->links.end());
    recipient->links.push_back(link);
    return STATUS_OK;
}

binder_status_t AIBinder_unlinkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient, void* cookie) {
    if (binder == nullptr || recipient == nullptr) return STATUS_BAD_VALUE;
    android::sp<TransferDeathRecipient> link;
    {
        std::lock_guard<std::mutex> lock(recipient->lock);
        auto it = std::find_if(recipient->links.begin(), recipient->links.end(), [&](const auto& l) {
            return l->who() == android::wp<AIBinder>(binder) && l->cookie() == cookie;
        });
        if (it == recipient->links.end()) return STATUS_NAME_NOT_FOUND;
        link = *it;
        recipient->links.erase(it);
    }
    android::status_t status = binder->unlinkToDeath(link, cookie);
    return status == android::OK ? STATUS_OK
                                 : (status == android::DEAD_OBJECT ? STATUS_DEAD_OBJECT : STATUS_NAME_NOT_FOUND);
}

AIBinder_DeathRecipient* AIBinder_DeathRecipient_new(AIBinder_DeathRecipient_onBinderDied onBinderDied) {
    if (onBinderDied == nullptr) return nullptr;
    return new AIBinder_DeathRecipient(onBinderDied);
}

void AIBinder_DeathRecipient_delete(AIBinder_DeathRecipient* recipient) { delete recipient; }

binder_status_t AServiceManager_addService(AIBinder* binder, const char* instance) {
    if (binder == nullptr || instance == nullptr) return STATUS_BAD_VALUE;
    android::status_t status =
            android::defaultServiceManager()->addService(android::String16(instance), binder);
    return status == android::OK ? STATUS_OK : STATUS_UNKNOWN_ERROR;
}

}  // extern "C"

namespace {

AIBinder* Adopt(const android::sp<android::IBinder>& binder) {
    // Only NDK objects are served to NDK clients here; a libbinder-only object has no class.
    auto* ndkBinder = binder == nullptr ? nullptr : dynamic_cast<AIBinder*>(binder.get());
    if (ndkBinder != nullptr) ndkBinder->incStrong(nullptr);
    return ndkBinder;
}

}  // namespace

extern "C" {

AIBinder* AServiceManager_checkService(const char* instance) {
    return Adopt(android::defaultServiceManager()->checkService(android::String16(instance)));
}

AIBinder* AServiceManager_waitForService(const char* instance) {
    return Adopt(android::defaultServiceManager()->waitForService(android::String16(instance)));
}

bool AServiceManager_isDeclared(const char* instance) {
    return instance != nullptr && android::defaultServiceManager()->isDeclared(android::String16(instance));
}

}  // extern "C"

#include <hostcontrol/binder_control.h>
#include <hostcontrol/binder_ndk_control.h>

namespace hostcontrol {

void KillAIBinder(AIBinder* binder) { KillAIBinders({binder}); }

void KillAIBinders(const std::vector<AIBinder*>& binders) {
    std::vector<android::sp<android::IBinder>> objects;
    for (AIBinder* binder : binders) {
        if (binder != nullptr) objects.emplace_back(binder);
    }
    KillBinders(objects);
}

}  // namespace hostcontrol
