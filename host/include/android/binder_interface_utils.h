// NDK binder subset: the C++ base classes of NDK-backend AIDL interfaces.
#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_ibinder.h>

#include <memory>
#include <mutex>

namespace ndk {

// Objects shared through std::shared_ptr that can hand out references to themselves.
class SharedRefBase {
public:
    SharedRefBase() = default;
    virtual ~SharedRefBase() = default;
    SharedRefBase(const SharedRefBase&) = delete;
    SharedRefBase& operator=(const SharedRefBase&) = delete;

    template <typename CHILD>
    std::shared_ptr<CHILD> ref() {
        std::shared_ptr<SharedRefBase> self;
        std::call_once(mOwned, [&] {
            self = std::shared_ptr<SharedRefBase>(this);
            mThis = self;
        });
        if (self == nullptr) self = mThis.lock();
        return std::static_pointer_cast<CHILD>(self);
    }

    template <class T, class... Args>
    static std::shared_ptr<T> make(Args&&... args) {
        T* t = new T(std::forward<Args>(args)...);
        return t->template ref<T>();
    }

private:
    std::once_flag mOwned;
    std::weak_ptr<SharedRefBase> mThis;
};

class ICInterface : public SharedRefBase {
public:
    virtual SpAIBinder asBinder() = 0;
    virtual bool isRemote() = 0;

    // The local object behind a binder made by BnCInterface, or null.
    static std::shared_ptr<ICInterface> asInterface(AIBinder* binder);

    template <typename INTERFACE>
    static AIBinder_Class* defineClass(const char* descriptor, AIBinder_Class_onTransact onTransact);
};

// User data of a local binder: keeps its interface object alive.
struct ICInterfaceData {
    std::shared_ptr<ICInterface> interface;

    static void* onCreate(void* args) {
        auto* iface = static_cast<ICInterface*>(args);
        return new ICInterfaceData{iface->ref<ICInterface>()};
    }
    static void onDestroy(void* userData) { delete static_cast<ICInterfaceData*>(userData); }
};

inline std::shared_ptr<ICInterface> ICInterface::asInterface(AIBinder* binder) {
    if (binder == nullptr || AIBinder_isRemote(binder)) return nullptr;
    auto* data = static_cast<ICInterfaceData*>(AIBinder_getUserData(binder));
    return data == nullptr ? nullptr : data->interface;
}

template <typename INTERFACE>
AIBinder_Class* ICInterface::defineClass(const char* descriptor,
                                         AIBinder_Class_onTransact onTransact) {
    return AIBinder_Class_define(descriptor, ICInterfaceData::onCreate, ICInterfaceData::onDestroy,
                                 onTransact);
}

// Service-side base: creates the binder of the object on first use and keeps only a weak
// hold on it, as a device does.
template <typename INTERFACE>
class BnCInterface : public INTERFACE {
public:
    SpAIBinder asBinder() override {
        std::lock_guard<std::mutex> lock(mLock);
        SpAIBinder binder = mWeakBinder.promote();
        if (binder.get() == nullptr) {
            binder = createBinder();
            mWeakBinder.set(AIBinder_Weak_new(binder.get()));
        }
        return binder;
    }
    bool isRemote() override { return false; }

protected:
    virtual SpAIBinder createBinder() = 0;

private:
    std::mutex mLock;
    ScopedAIBinder_Weak mWeakBinder;
};

}  // namespace ndk
