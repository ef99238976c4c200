// NDK binder subset: owning wrappers of the C handles.
#pragma once

#include <android/binder_ibinder.h>

#include <utility>

namespace ndk {

class SpAIBinder {
public:
    SpAIBinder() = default;
    explicit SpAIBinder(AIBinder* binder) : mBinder(binder) {}  // adopts one strong reference
    SpAIBinder(const SpAIBinder& other) : mBinder(other.mBinder) {
        if (mBinder != nullptr) AIBinder_incStrong(mBinder);
    }
    SpAIBinder(SpAIBinder&& other) noexcept : mBinder(std::exchange(other.mBinder, nullptr)) {}
    SpAIBinder& operator=(SpAIBinder other) {
        std::swap(mBinder, other.mBinder);
        return *this;
    }
    ~SpAIBinder() { set(nullptr); }

    AIBinder* get() const { return mBinder; }
    void set(AIBinder* binder) {
        AIBinder* old = std::exchange(mBinder, binder);
        if (old != nullptr) AIBinder_decStrong(old);
    }
    AIBinder** getR() { return &mBinder; }
    bool operator==(const SpAIBinder& other) const { return mBinder == other.mBinder; }
    bool operator!=(const SpAIBinder& other) const { return mBinder != other.mBinder; }

private:
    AIBinder* mBinder = nullptr;
};

template <typename T, void (*Destroy)(T*)>
class ScopedAResource {
public:
    explicit ScopedAResource(T* t = nullptr) : mT(t) {}
    ScopedAResource(ScopedAResource&& other) noexcept : mT(std::exchange(other.mT, nullptr)) {}
    ScopedAResource& operator=(ScopedAResource&& other) noexcept {
        set(std::exchange(other.mT, nullptr));
        return *this;
    }
    ScopedAResource(const ScopedAResource&) = delete;
    ScopedAResource& operator=(const ScopedAResource&) = delete;
    ~ScopedAResource() { set(nullptr); }

    T* get() const { return mT; }
    void set(T* t) {
        T* old = std::exchange(mT, t);
        if (old != nullptr) Destroy(old);
    }
    T* release() { return std::exchange(mT, nullptr); }

private:
    T* mT;
};

class ScopedAStatus : public ScopedAResource<AStatus, AStatus_delete> {
public:
    explicit ScopedAStatus(AStatus* status = nullptr) : ScopedAResource(status) {}
    bool isOk() const { return get() != nullptr && AStatus_isOk(get()); }
    binder_status_t getStatus() const { return AStatus_getStatus(get()); }
    binder_exception_t getExceptionCode() const { return AStatus_getExceptionCode(get()); }
    int32_t getServiceSpecificError() const { return AStatus_getServiceSpecificError(get()); }
    static ScopedAStatus ok() { return ScopedAStatus(AStatus_newOk()); }
    static ScopedAStatus fromStatus(binder_status_t status) {
        return ScopedAStatus(AStatus_fromStatus(status));
    }
    static ScopedAStatus fromExceptionCode(binder_exception_t exception) {
        return ScopedAStatus(AStatus_fromExceptionCode(exception));
    }
};

class ScopedAIBinder_Weak : public ScopedAResource<AIBinder_Weak, AIBinder_Weak_delete> {
public:
    explicit ScopedAIBinder_Weak(AIBinder_Weak* weak = nullptr) : ScopedAResource(weak) {}
    SpAIBinder promote() const { return SpAIBinder(AIBinder_Weak_promote(get())); }
};

class ScopedAIBinder_DeathRecipient
    : public ScopedAResource<AIBinder_DeathRecipient, AIBinder_DeathRecipient_delete> {
public:
    explicit ScopedAIBinder_DeathRecipient(AIBinder_DeathRecipient* recipient = nullptr)
        : ScopedAResource(recipient) {}
};

}  // namespace ndk
