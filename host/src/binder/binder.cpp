#include <binder/Binder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>

#include <hostcontrol/binder_control.h>

#include <algorithm>
#include <atomic>

#include "binder_threads.h"

namespace hostruntime {

// The client process of the links made from now on; a new one starts when the previous
// one ends (hostcontrol::DropClientLinks).
std::atomic<uint64_t> g_clientProcess{0};

}  // namespace hostruntime

namespace android {

IBinder::IBinder() = default;
IBinder::~IBinder() = default;

sp<IInterface> IBinder::queryLocalInterface(const String16& /*descriptor*/) { return nullptr; }

BBinder* IBinder::localBinder() { return nullptr; }

status_t IBinder::getExtension(sp<IBinder>* out) {
    BBinder* local = localBinder();
    if (local == nullptr) return INVALID_OPERATION;
    if (!local->isBinderAlive()) return DEAD_OBJECT;
    *out = local->getExtensionBinder();
    return OK;
}

BBinder::BBinder() = default;
BBinder::~BBinder() = default;

const String16& BBinder::getInterfaceDescriptor() const {
    static const String16* empty = new String16();
    return *empty;
}

bool BBinder::isBinderAlive() const {
    std::lock_guard<std::mutex> lock(mLock);
    return !mDead;
}

status_t BBinder::pingBinder() { return isBinderAlive() ? OK : DEAD_OBJECT; }

BBinder* BBinder::localBinder() { return this; }

status_t BBinder::linkToDeath(const sp<DeathRecipient>& recipient, void* cookie, uint32_t flags) {
    if (recipient == nullptr) return BAD_VALUE;
    std::lock_guard<std::mutex> lock(mLock);
    if (mDead) return DEAD_OBJECT;
    const uint64_t client = hostruntime::g_clientProcess.load();
    // Links of a client process that ended are gone with it.
    mObituaries.erase(std::remove_if(mObituaries.begin(), mObituaries.end(),
                                     [client](const Obituary& o) { return o.client != client; }),
                      mObituaries.end());
    mObituaries.push_back(Obituary{recipient, cookie, flags, client});
    return OK;
}

status_t BBinder::unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie, uint32_t flags,
                                wp<DeathRecipient>* outRecipient) {
    std::lock_guard<std::mutex> lock(mLock);
    if (mDead) return DEAD_OBJECT;
    for (auto it = mObituaries.begin(); it != mObituaries.end(); ++it) {
        if (it->recipient == recipient && it->cookie == cookie && it->flags == flags) {
            if (outRecipient != nullptr) *outRecipient = it->recipient;
            mObituaries.erase(it);
            return OK;
        }
    }
    return NAME_NOT_FOUND;
}

void BBinder::setExtension(const sp<IBinder>& extension) {
    std::lock_guard<std::mutex> lock(mLock);
    mExtension = extension;
}

sp<IBinder> BBinder::getExtensionBinder() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mExtension;
}

std::vector<std::function<void()>> BBinder::die() {
    std::vector<Obituary> obituaries;
    {
        std::lock_guard<std::mutex> lock(mLock);
        if (mDead) return {};
        mDead = true;
        obituaries.swap(mObituaries);
    }
    const uint64_t client = hostruntime::g_clientProcess.load();
    wp<IBinder> who(this);
    std::vector<std::function<void()>> notices;
    for (const Obituary& obituary : obituaries) {
        if (obituary.client != client) continue;  // its process is gone
        wp<DeathRecipient> recipient = obituary.recipient;
        notices.push_back([recipient, who] {
            sp<DeathRecipient> alive = recipient.promote();
            if (alive != nullptr) alive->binderDied(who);
        });
    }
    return notices;
}

IInterface::IInterface() = default;
IInterface::~IInterface() = default;

sp<IBinder> IInterface::asBinder(const IInterface* iface) {
    if (iface == nullptr) return nullptr;
    return const_cast<IInterface*>(iface)->onAsBinder();
}

sp<IBinder> IInterface::asBinder(const sp<IInterface>& iface) {
    if (iface == nullptr) return nullptr;
    return iface->onAsBinder();
}

namespace binder {

String8 Status::toString8() const {
    if (isOk()) return String8("No error");
    String8 text;
    text.appendFormat("Status(%d): %d", mException, mErrorCode);
    return text;
}

}  // namespace binder
}  // namespace android

namespace hostcontrol {

void DropClientLinks() { ++hostruntime::g_clientProcess; }

}  // namespace hostcontrol
