// HIDL runtime subset: hidl_string, hidl_vec and the death recipient interface.
#pragma once

#include <hidl/Status.h>
#include <utils/RefBase.h>

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace android {
namespace hidl {
namespace base {
namespace V1_0 {
struct IBase;
}  // namespace V1_0
}  // namespace base
}  // namespace hidl

namespace hardware {

// A string of bytes that may hold zero bytes; c_str() is always terminated.
class hidl_string {
public:
    hidl_string() = default;
    hidl_string(const char* s) : mBuffer(s == nullptr ? "" : s) {}  // NOLINT
    hidl_string(const char* s, size_t length) : mBuffer(s, length) {}
    hidl_string(const std::string& s) : mBuffer(s) {}  // NOLINT

    const char* c_str() const { return mBuffer.c_str(); }
    size_t size() const { return mBuffer.size(); }
    bool empty() const { return mBuffer.empty(); }
    void setToExternal(const char* data, size_t size) { mBuffer.assign(data, size); }
    void clear() { mBuffer.clear(); }
    operator std::string() const { return mBuffer; }  // NOLINT

    bool operator==(const hidl_string& other) const { return mBuffer == other.mBuffer; }
    bool operator!=(const hidl_string& other) const { return mBuffer != other.mBuffer; }
    bool operator==(const char* other) const { return other != nullptr && mBuffer == other; }

private:
    std::string mBuffer;
};

template <typename T>
class hidl_vec {
public:
    hidl_vec() = default;
    hidl_vec(size_t size) : mBuffer(size) {}  // NOLINT
    hidl_vec(std::initializer_list<T> list) : mBuffer(list) {}
    hidl_vec(const std::vector<T>& other) : mBuffer(other) {}  // NOLINT
    hidl_vec(std::vector<T>&& other) : mBuffer(std::move(other)) {}  // NOLINT
    template <typename It>
    hidl_vec(It begin, It end) : mBuffer(begin, end) {}

    size_t size() const { return mBuffer.size(); }
    void resize(size_t size) { mBuffer.resize(size); }
    T* data() { return mBuffer.data(); }
    const T* data() const { return mBuffer.data(); }
    T& operator[](size_t i) { return mBuffer[i]; }
    const T& operator[](size_t i) const { return mBuffer[i]; }
    auto begin() { return mBuffer.begin(); }
    auto end() { return mBuffer.end(); }
    auto begin() const { return mBuffer.begin(); }
    auto end() const { return mBuffer.end(); }
    operator std::vector<T>() const { return mBuffer; }  // NOLINT
    bool operator==(const hidl_vec& other) const { return mBuffer == other.mBuffer; }

private:
    std::vector<T> mBuffer;
};

struct hidl_death_recipient : virtual public RefBase {
    virtual void serviceDied(uint64_t cookie,
                             const ::android::wp<::android::hidl::base::V1_0::IBase>& who) = 0;
};

namespace details {
struct i_tag {};
}  // namespace details

}  // namespace hardware
}  // namespace android
