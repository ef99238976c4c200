// Shared plumbing of the fake services: argument recording and the common shape of every
// served call (a killed service fails the call without touching its outputs).
#pragma once

#include <android/binder_auto_utils.h>
#include <binder/Status.h>
#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <sim/answers.h>
#include <utils/String16.h>
#include <utils/String8.h>

#include <atomic>
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

// Liveness and answers of one fake service object.
template <typename Answers>
class Served {
public:
    Served(FamilyState<Answers>& state, const char* origin) : mState(state), mOrigin(origin) {}
    void MarkDead() { mAlive = false; }

protected:
    // libbinder AIDL: runs body(answers) unless the service is dead.
    template <typename Body>
    android::binder::Status ServeAidl(const char* method, std::vector<std::string> args, Body&& body) {
        if (!mAlive) return android::binder::Status::fromStatusT(android::DEAD_OBJECT);
        body(mState.record(mOrigin, method, std::move(args)));
        return android::binder::Status::ok();
    }

    // NDK AIDL: the same with an NDK status.
    template <typename Body>
    ndk::ScopedAStatus ServeNdk(const char* method, std::vector<std::string> args, Body&& body) {
        if (!mAlive) return ndk::ScopedAStatus::fromStatus(STATUS_DEAD_OBJECT);
        body(mState.record(mOrigin, method, std::move(args)));
        return ndk::ScopedAStatus::ok();
    }

    // HIDL: returns body(answers) as the call's value (or Void for a callback call).
    template <typename Body>
    auto ServeHidl(const char* method, std::vector<std::string> args, Body&& body)
            -> android::hardware::Return<std::invoke_result_t<Body, const Answers&>> {
        using Result = std::invoke_result_t<Body, const Answers&>;
        if (!mAlive) return android::hardware::Status::fromStatusT(android::DEAD_OBJECT);
        const Answers answers = mState.record(mOrigin, method, std::move(args));
        if constexpr (std::is_void_v<Result>) {
            body(answers);
            return android::hardware::Void();
        } else {
            return body(answers);
        }
    }

private:
    FamilyState<Answers>& mState;
    const char* mOrigin;
    std::atomic<bool> mAlive{true};
};

}  // namespace mmisim
