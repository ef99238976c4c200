// libbinder subset: the service manager and the lookup templates of the device.
#pragma once

#include <binder/IInterface.h>
#include <utils/Vector.h>

namespace android {

class IServiceManager : public virtual RefBase {
public:
    // Returns the service if it is running, without waiting.
    virtual sp<IBinder> checkService(const String16& name) const = 0;
    // Returns the service, waiting a short while for it to come up.
    virtual sp<IBinder> getService(const String16& name) const = 0;
    virtual status_t addService(const String16& name, const sp<IBinder>& service,
                                bool allowIsolated = false, int dumpsysFlags = 0) = 0;
    virtual Vector<String16> listServices(int dumpsysFlags = 0) = 0;
    // Blocks until the service is running.
    virtual sp<IBinder> waitForService(const String16& name) = 0;
    // Whether the device manifest declares the service.
    virtual bool isDeclared(const String16& name) = 0;

protected:
    ~IServiceManager() override = default;
};

sp<IServiceManager> defaultServiceManager();

template <typename INTERFACE>
sp<INTERFACE> waitForService(const String16& name) {
    const sp<IServiceManager> sm = defaultServiceManager();
    return interface_cast<INTERFACE>(sm->waitForService(name));
}

// Null at once when the manifest does not declare the name; otherwise blocks until the
// service is up.
template <typename INTERFACE>
sp<INTERFACE> waitForDeclaredService(const String16& name) {
    const sp<IServiceManager> sm = defaultServiceManager();
    if (!sm->isDeclared(name)) return nullptr;
    return interface_cast<INTERFACE>(sm->waitForService(name));
}

template <typename INTERFACE>
sp<INTERFACE> waitForVintfService(const String16& instance = String16("default")) {
    return waitForDeclaredService<INTERFACE>(INTERFACE::descriptor + String16("/") + instance);
}

template <typename INTERFACE>
status_t getService(const String16& name, sp<INTERFACE>* outService) {
    const sp<IServiceManager> sm = defaultServiceManager();
    if (sm == nullptr) return NAME_NOT_FOUND;
    *outService = interface_cast<INTERFACE>(sm->getService(name));
    return *outService != nullptr ? NO_ERROR : NAME_NOT_FOUND;
}

}  // namespace android
