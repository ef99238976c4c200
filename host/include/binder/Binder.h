// libbinder subset: the service-side binder object.
//
// Host build: every BBinder stands for a service living in another process. It keeps
// death links and can be killed through hostcontrol/binder_control.h, which delivers the
// obituaries on the process's binder threads as the driver does on a device. A dead object
// answers no call.
#pragma once

#include <binder/IBinder.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace android {

class Parcel;

class BBinder : public IBinder {
public:
    BBinder();

    const String16& getInterfaceDescriptor() const override;
    bool isBinderAlive() const override;
    status_t pingBinder() override;
    status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                         uint32_t flags = 0) override;
    status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                           uint32_t flags = 0,
                           wp<DeathRecipient>* outRecipient = nullptr) override;
    BBinder* localBinder() override;

    // Host build: calls are direct C++ calls, so no transaction ever arrives here.
    virtual status_t onTransact(uint32_t /*code*/, const Parcel& /*data*/, Parcel* /*reply*/,
                                uint32_t /*flags*/ = 0) {
        return UNKNOWN_TRANSACTION;
    }

    void setExtension(const sp<IBinder>& extension);
    sp<IBinder> getExtensionBinder() const;

    // Host: marks the object dead and returns the obituaries of its links, to be posted
    // once every object dying with it is dead too (hostcontrol::KillBinders). Links of a
    // client process that ended (hostcontrol::DropClientLinks) get none.
    std::vector<std::function<void()>> die();

protected:
    ~BBinder() override;

private:
    struct Obituary {
        wp<DeathRecipient> recipient;
        void* cookie;
        uint32_t flags;
        uint64_t client;  // the client process that linked (see hostcontrol::DropClientLinks)
    };

    mutable std::mutex mLock;
    bool mDead = false;
    std::vector<Obituary> mObituaries;
    sp<IBinder> mExtension;
};

}  // namespace android
