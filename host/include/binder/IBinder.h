// libbinder subset: the binder object interface, as declared on the device.
#pragma once

#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>

#include <cstdint>

namespace android {

class BBinder;
class IInterface;

class IBinder : public virtual RefBase {
public:
    enum { FLAG_ONEWAY = 0x00000001 };

    class DeathRecipient : public virtual RefBase {
    public:
        virtual void binderDied(const wp<IBinder>& who) = 0;
    };

    IBinder();

    // The local interface object behind this binder when its descriptor matches.
    virtual sp<IInterface> queryLocalInterface(const String16& descriptor);
    virtual const String16& getInterfaceDescriptor() const = 0;

    virtual bool isBinderAlive() const = 0;
    virtual status_t pingBinder() = 0;

    // Extension binder attached by the service (vendor extensions of platform interfaces).
    status_t getExtension(sp<IBinder>* out);

    // The recipient is kept only as a weak reference: the caller keeps it alive.
    virtual status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                                 uint32_t flags = 0) = 0;
    virtual status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                                   uint32_t flags = 0,
                                   wp<DeathRecipient>* outRecipient = nullptr) = 0;

    virtual BBinder* localBinder();

protected:
    virtual ~IBinder();
};

}  // namespace android
