// libbinder subset: interfaces on top of binder objects, as generated AIDL code uses them.
#pragma once

#include <binder/Binder.h>

namespace android {

class IInterface : public virtual RefBase {
public:
    IInterface();
    static sp<IBinder> asBinder(const IInterface* iface);
    static sp<IBinder> asBinder(const sp<IInterface>& iface);

protected:
    ~IInterface() override;
    virtual IBinder* onAsBinder() = 0;
};

template <typename INTERFACE>
inline sp<INTERFACE> interface_cast(const sp<IBinder>& obj) {
    return INTERFACE::asInterface(obj);
}

// Like interface_cast, but null unless the binder's descriptor is exactly the
// interface's. The binder itself must not be null.
template <typename INTERFACE>
inline sp<INTERFACE> checked_interface_cast(const sp<IBinder>& obj) {
    if (obj->getInterfaceDescriptor() != INTERFACE::descriptor) {
        return nullptr;
    }
    return interface_cast<INTERFACE>(obj);
}

template <typename INTERFACE>
class BnInterface : public INTERFACE, public BBinder {
public:
    sp<IInterface> queryLocalInterface(const String16& descriptor) override {
        if (descriptor == INTERFACE::descriptor) return sp<IInterface>(this);
        return nullptr;
    }
    const String16& getInterfaceDescriptor() const override { return INTERFACE::descriptor; }

protected:
    IBinder* onAsBinder() override { return this; }
};

#define DECLARE_META_INTERFACE(INTERFACE)                                          \
public:                                                                            \
    static const ::android::String16 descriptor;                                   \
    static ::android::sp<I##INTERFACE> asInterface(const ::android::sp<::android::IBinder>& obj); \
    virtual const ::android::String16& getInterfaceDescriptor() const;             \
    I##INTERFACE();                                                                \
    virtual ~I##INTERFACE();

// Host build: every service object is in this process, so asInterface finds the local
// object; there are no proxies to build.
#define IMPLEMENT_META_INTERFACE(INTERFACE, NAME)                                  \
    const ::android::String16 I##INTERFACE::descriptor(NAME);                      \
    const ::android::String16& I##INTERFACE::getInterfaceDescriptor() const {      \
        return I##INTERFACE::descriptor;                                           \
    }                                                                              \
    ::android::sp<I##INTERFACE> I##INTERFACE::asInterface(                         \
            const ::android::sp<::android::IBinder>& obj) {                        \
        ::android::sp<I##INTERFACE> intr;                                          \
        if (obj != nullptr) {                                                      \
            intr = static_cast<I##INTERFACE*>(obj->queryLocalInterface(descriptor).get()); \
        }                                                                          \
        return intr;                                                               \
    }                                                                              \
    I##INTERFACE::I##INTERFACE() {}                                                \
    I##INTERFACE::~I##INTERFACE() {}

}  // namespace android
