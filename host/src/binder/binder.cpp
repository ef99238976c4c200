#include <binder/Binder.h>
#include <binder/IInterface.h>
#include <binder/Status.h>

#include "binder_thread.h"

namespace android {

IBinder::IBinder() = default;
IBinder::~IBinder() = default;

sp<IInterface> IBinder::queryLocalInterface(const String16& /*descriptor*/) { return nullptr; }

BBinder* IBinder::localBinder() { return nullptr; }

status_t IBinder::getExtension(sp<IBinder>* out) {
    BBinder* local = localBinder();
    if (local == nullptr) return INVALID_OPERATION;
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
    mObituaries.push_back(Obituary{recipient, cookie, flags});
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

void BBinder::sendObituary() {
    std::vector<Obituary> obituaries;
    {
        std::lock_guard<std::mutex> lock(mLock);
        if (mDead) return;
        mDead = true;
        obituaries.swap(mObituaries);
    }
    wp<IBinder> who(this);
    for (const Obituary& obituary : obituaries) {
        wp<DeathRecipient> recipient = obituary.recipient;
        hostruntime::BinderThread().Post([recipient, who] {
            sp<DeathRecipient> alive = recipient.promote();
            if (alive != nullptr) alive->binderDied(who);
        });
    }
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
