// Shared plumbing of the fake services: argument recording and the common shape of every
// served call (a killed service, or a family whose calls fail, fails the call without
// touching its outputs).
#pragma once

#include <android/binder_auto_utils.h>
#include <binder/Status.h>
#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <sim/answers.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

namespace mmisim {

inline std::string ArgText(int32_t v) { return std::to_string(v); }
inline std::string ArgText(int64_t v) { return std::to_string(v); }
inline std::string ArgText(bool v) { return v ? "true" : "false"; }
inline std::string ArgText(const std::string& v) { return v; }
inline std::string ArgText(const android::hardware::hidl_string& v) { return std::string(v.c_str(), v.size()); }
inline std::string ArgText(const android::String16& v) {
    const android::String8 text(v);
    return std::string(text.c_str(), text.size());  // every character, U+0000 included
}
inline std::string ArgText(const std::vector<uint8_t>& v) { return std::string(v.begin(), v.end()); }

template <typename... T>
std::vector<std::string> Args(const T&... values) {
    return {ArgText(values)...};
}

inline const TextReply& Lookup(const std::map<int32_t, TextReply>& replies, int32_t key) {
    static const TextReply kEmpty;
    auto it = replies.find(key);
    return it == replies.end() ? kEmpty : it->second;
}

// Liveness and answers of one fake service object, and the shape every served call takes:
// a dead service fails the call; the family's faults (sim/answers.h ServiceFaults) make it
// fail in transport, answer late or skip its result callback; otherwise the call is
// recorded and the body answers it from the answers in force.
template <typename Answers>
class Served {
public:
    Served(FamilyState<Answers>& state, const char* origin) : mState(state), mOrigin(origin) {}

    void MarkDead() {
        {
            std::lock_guard<std::mutex> lock(mLifeLock);
            mAlive = false;
        }
        mDied.notify_all();  // a call waiting out its latency fails now
    }

    // HIDL: the version the service is served at ("1.1"), recorded with each call. Set
    // before the service is registered.
    void SetServedVersion(std::string version) { mVersion = std::move(version); }

protected:
    // libbinder AIDL: runs body(answers) unless the call fails.
    template <typename Body>
    android::binder::Status ServeAidl(const char* method, std::vector<std::string> args, Body&& body) {
        const Delivery delivery = Deliver(method, std::move(args));
        if (delivery.failure != android::OK) return android::binder::Status::fromStatusT(delivery.failure);
        body(*delivery.answers);
        return android::binder::Status::ok();
    }

    // NDK AIDL: the same with an NDK status.
    template <typename Body>
    ndk::ScopedAStatus ServeNdk(const char* method, std::vector<std::string> args, Body&& body) {
        const Delivery delivery = Deliver(method, std::move(args));
        if (delivery.failure == android::DEAD_OBJECT) return ndk::ScopedAStatus::fromStatus(STATUS_DEAD_OBJECT);
        if (delivery.failure != android::OK) return ndk::ScopedAStatus::fromStatus(STATUS_FAILED_TRANSACTION);
        body(*delivery.answers);
        return ndk::ScopedAStatus::ok();
    }

    // HIDL: returns body(answers) as the call's value. A callback call (void) returns
    // Void; with skipped callbacks its body, whose only answer is the callback, is not run.
    template <typename Body>
    auto ServeHidl(const char* method, std::vector<std::string> args, Body&& body)
            -> android::hardware::Return<std::invoke_result_t<Body, const Answers&>> {
        using Result = std::invoke_result_t<Body, const Answers&>;
        const Delivery delivery = Deliver(method, std::move(args));
        if (delivery.failure != android::OK) return android::hardware::Status::fromStatusT(delivery.failure);
        if constexpr (std::is_void_v<Result>) {
            if (!delivery.faults.skipCallbacks) body(*delivery.answers);
            return android::hardware::Void();
        } else {
            return body(*delivery.answers);
        }
    }

private:
    struct Delivery {
        android::status_t failure = android::OK;
        ServiceFaults faults;
        std::shared_ptr<const Answers> answers;
    };

    Delivery Deliver(const char* method, std::vector<std::string> args) {
        if (!mAlive) return Delivery{android::DEAD_OBJECT, {}, nullptr};
        auto received = mState.receive(mOrigin, mVersion, method, std::move(args));
        if (!received.reached) return Delivery{android::FAILED_TRANSACTION, received.faults, nullptr};
        if (received.faults.latencyMs > 0 && !Linger(std::chrono::milliseconds(received.faults.latencyMs))) {
            return Delivery{android::DEAD_OBJECT, received.faults, nullptr};
        }
        return Delivery{android::OK, received.faults, std::move(received.answers)};
    }

    // Waits out a call's latency; false when the service died meanwhile.
    bool Linger(std::chrono::milliseconds latency) {
        std::unique_lock<std::mutex> lock(mLifeLock);
        return !mDied.wait_for(lock, latency, [this] { return !mAlive.load(); });
    }

    FamilyState<Answers>& mState;
    const char* mOrigin;
    std::string mVersion;
    std::atomic<bool> mAlive{true};
    std::mutex mLifeLock;
    std::condition_variable mDied;
};

}  // namespace mmisim
