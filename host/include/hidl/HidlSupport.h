// HIDL runtime subset: the types generated HIDL headers are written against (hidl_string,
// hidl_vec, hidl_array, hidl_handle, enum ranges and bit fields, toString) and the death
// recipient interface.
//
// hidl_string and hidl_vec have the device's memory layout, 16 bytes each: a pointer kept in
// 64 bits, a 32-bit size and a flag telling whether the object owns its buffer. Generated
// headers assert the offsets and sizes of every struct built from them.
#pragma once

#include <cutils/native_handle.h>
#include <hidl/Status.h>
#include <utils/RefBase.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
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

namespace details {

// Type tag of generated interfaces.
struct i_tag {};

// Aborts the process: a size that does not fit the 32-bit size field of the wire format.
[[noreturn]] void hidlSizeFatal(const char* what, size_t size);

// A pointer that takes 64 bits on every architecture, as in the wire format.
template <typename T>
union hidl_pointer {
    hidl_pointer() : _pad(0) {}
    hidl_pointer(T* pointer) : hidl_pointer() { mPointer = pointer; }  // NOLINT: implicit as on device
    hidl_pointer(const hidl_pointer<T>& other) : hidl_pointer() { mPointer = other.mPointer; }
    hidl_pointer& operator=(const hidl_pointer<T>& other) {
        mPointer = other.mPointer;
        return *this;
    }
    hidl_pointer& operator=(T* pointer) {
        mPointer = pointer;
        return *this;
    }
    operator T*() const { return mPointer; }  // NOLINT
    T* get() const { return mPointer; }
    T* operator->() const { return mPointer; }
    T& operator[](size_t index) const { return mPointer[index]; }

private:
    T* mPointer;
    uint64_t _pad;
};

}  // namespace details

// A string of bytes that may hold zero bytes: size() counts every byte and c_str() is
// always terminated after them.
struct hidl_string {
    hidl_string();
    ~hidl_string();
    hidl_string(const hidl_string& other);
    hidl_string(hidl_string&& other) noexcept;
    hidl_string(const char* s);  // NOLINT: implicit as on device; null gives the empty text
    hidl_string(const char* s, size_t length);
    hidl_string(const std::string& s);  // NOLINT

    hidl_string& operator=(const hidl_string& other);
    hidl_string& operator=(hidl_string&& other) noexcept;
    hidl_string& operator=(const char* s);
    hidl_string& operator=(const std::string& s);

    const char* c_str() const { return mBuffer; }
    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }
    operator std::string() const { return std::string(c_str(), size()); }  // NOLINT

    void clear();
    // Refers to data without copying it; data[size] must be a zero byte and data must outlive
    // the string.
    void setToExternal(const char* data, size_t size);

private:
    void copyFrom(const char* data, size_t size);
    void moveFrom(hidl_string&& other);

    details::hidl_pointer<const char> mBuffer;
    uint32_t mSize;
    bool mOwnsBuffer;
};

static_assert(sizeof(hidl_string) == 16, "hidl_string has the device's layout");
static_assert(alignof(hidl_string) == 8, "hidl_string has the device's layout");

// Comparisons look at every byte, zero bytes included.
bool operator==(const hidl_string& lhs, const hidl_string& rhs);
bool operator<(const hidl_string& lhs, const hidl_string& rhs);
inline bool operator!=(const hidl_string& lhs, const hidl_string& rhs) { return !(lhs == rhs); }
inline bool operator==(const hidl_string& lhs, const char* rhs) {
    return rhs != nullptr && lhs == hidl_string(rhs);
}
inline bool operator==(const char* lhs, const hidl_string& rhs) { return rhs == lhs; }
inline bool operator!=(const hidl_string& lhs, const char* rhs) { return !(lhs == rhs); }
inline bool operator!=(const char* lhs, const hidl_string& rhs) { return !(rhs == lhs); }
inline bool operator==(const hidl_string& lhs, const std::string& rhs) { return lhs == hidl_string(rhs); }
inline bool operator==(const std::string& lhs, const hidl_string& rhs) { return rhs == lhs; }
inline bool operator!=(const hidl_string& lhs, const std::string& rhs) { return !(lhs == rhs); }
inline bool operator!=(const std::string& lhs, const hidl_string& rhs) { return !(rhs == lhs); }

// A vector whose elements live in one buffer of its own (or, after setToExternal, in a
// buffer of the caller's).
template <typename T>
struct hidl_vec {
    using value_type = T;

    hidl_vec() : mBuffer(nullptr), mSize(0), mOwnsBuffer(true) {}
    hidl_vec(size_t size) : hidl_vec() { resize(size); }  // NOLINT: implicit as on device
    hidl_vec(const hidl_vec<T>& other) : hidl_vec() { *this = other; }
    hidl_vec(hidl_vec<T>&& other) noexcept : hidl_vec() { *this = std::move(other); }
    hidl_vec(std::initializer_list<T> list) : hidl_vec() { assign(list.begin(), list.end(), list.size()); }
    hidl_vec(const std::vector<T>& other) : hidl_vec() { *this = other; }  // NOLINT
    template <typename InputIterator,
              typename = std::enable_if_t<std::is_convertible<
                      typename std::iterator_traits<InputIterator>::iterator_category,
                      std::input_iterator_tag>::value>>
    hidl_vec(InputIterator first, InputIterator last) : hidl_vec() {
        assign(first, last, static_cast<size_t>(std::distance(first, last)));
    }
    ~hidl_vec() { release(); }

    hidl_vec& operator=(const hidl_vec<T>& other) {
        if (this != &other) assign(other.begin(), other.end(), other.size());
        return *this;
    }
    hidl_vec& operator=(hidl_vec<T>&& other) noexcept {
        if (this != &other) {
            release();
            mBuffer = other.mBuffer;
            mSize = other.mSize;
            mOwnsBuffer = other.mOwnsBuffer;
            other.mBuffer = nullptr;
            other.mSize = 0;
            other.mOwnsBuffer = true;
        }
        return *this;
    }
    hidl_vec& operator=(const std::vector<T>& other) {
        assign(other.begin(), other.end(), other.size());
        return *this;
    }

    // Refers to size elements at data; with shouldOwn the vector deletes them (new[]).
    void setToExternal(T* data, size_t size, bool shouldOwn = false) {
        if (size > UINT32_MAX) details::hidlSizeFatal("hidl_vec", size);
        release();
        mBuffer = data;
        mSize = static_cast<uint32_t>(size);
        mOwnsBuffer = shouldOwn;
    }
    // Hands the buffer to the caller (who deletes it with delete[]); null when not owned.
    T* releaseData() {
        if (!mOwnsBuffer && mBuffer != nullptr) return nullptr;
        T* data = mBuffer;
        mBuffer = nullptr;
        mSize = 0;
        mOwnsBuffer = true;
        return data;
    }

    T* data() { return mBuffer; }
    const T* data() const { return mBuffer; }
    size_t size() const { return mSize; }
    T& operator[](size_t index) { return mBuffer[index]; }
    const T& operator[](size_t index) const { return mBuffer[index]; }
    T* begin() { return mBuffer; }
    T* end() { return mBuffer.get() + mSize; }
    const T* begin() const { return mBuffer; }
    const T* end() const { return mBuffer.get() + mSize; }

    // Keeps the first min(size, size()) elements; new ones are value-initialised.
    void resize(size_t size) {
        if (size > UINT32_MAX) details::hidlSizeFatal("hidl_vec", size);
        T* buffer = size == 0 ? nullptr : new T[size]();
        for (size_t i = 0; i < std::min(size, static_cast<size_t>(mSize)); ++i) buffer[i] = std::move(mBuffer[i]);
        release();
        mBuffer = buffer;
        mSize = static_cast<uint32_t>(size);
        mOwnsBuffer = true;
    }

    operator std::vector<T>() const { return std::vector<T>(begin(), end()); }  // NOLINT

private:
    template <typename It>
    void assign(It first, It last, size_t count) {
        if (count > UINT32_MAX) details::hidlSizeFatal("hidl_vec", count);
        T* buffer = count == 0 ? nullptr : new T[count];
        std::copy(first, last, buffer);
        release();
        mBuffer = buffer;
        mSize = static_cast<uint32_t>(count);
        mOwnsBuffer = true;
    }

    void release() {
        if (mOwnsBuffer) delete[] mBuffer.get();
        mBuffer = nullptr;
        mSize = 0;
        mOwnsBuffer = true;
    }

    details::hidl_pointer<T> mBuffer;
    uint32_t mSize;
    bool mOwnsBuffer;
};

static_assert(sizeof(hidl_vec<int32_t>) == 16, "hidl_vec has the device's layout");
static_assert(alignof(hidl_vec<int32_t>) == 8, "hidl_vec has the device's layout");

template <typename T>
bool operator==(const hidl_vec<T>& lhs, const hidl_vec<T>& rhs) {
    return lhs.size() == rhs.size() && std::equal(lhs.begin(), lhs.end(), rhs.begin());
}
template <typename T>
bool operator!=(const hidl_vec<T>& lhs, const hidl_vec<T>& rhs) {
    return !(lhs == rhs);
}

namespace details {
template <typename T, size_t... SIZES>
struct nested_array;
template <typename T>
struct nested_array<T> {
    using type = T;
};
template <typename T, size_t SIZE1, size_t... SIZES>
struct nested_array<T, SIZE1, SIZES...> {
    using type = typename nested_array<T, SIZES...>::type[SIZE1];
};
}  // namespace details

// A fixed-size array of one or more dimensions, stored inline.
template <typename T, size_t SIZE1, size_t... SIZES>
struct hidl_array {
    using type = typename details::nested_array<T, SIZE1, SIZES...>::type;
    static constexpr size_t kElements = (SIZE1 * ... * SIZES);

    hidl_array() : mBuffer() {}
    hidl_array(const type& source) { std::memcpy(mBuffer, source, sizeof(mBuffer)); }  // NOLINT

    T* data() { return reinterpret_cast<T*>(mBuffer); }
    const T* data() const { return reinterpret_cast<const T*>(mBuffer); }
    auto& operator[](size_t index) { return mBuffer[index]; }
    const auto& operator[](size_t index) const { return mBuffer[index]; }
    static constexpr size_t size() { return SIZE1; }

    bool operator==(const hidl_array& other) const {
        return std::equal(data(), data() + kElements, other.data());
    }
    bool operator!=(const hidl_array& other) const { return !(*this == other); }

private:
    type mBuffer;
};

// A native handle (file descriptors and ints) passed to a service; not owned here.
struct hidl_handle {
    hidl_handle() : mHandle(nullptr), mOwnsHandle(false) {}
    hidl_handle(const native_handle_t* handle) : mHandle(handle), mOwnsHandle(false) {}  // NOLINT
    hidl_handle(const hidl_handle& other) = default;
    hidl_handle& operator=(const hidl_handle& other) = default;

    const native_handle_t* getNativeHandle() const { return mHandle; }
    operator const native_handle_t*() const { return mHandle; }  // NOLINT
    const native_handle_t* operator->() const { return mHandle; }

private:
    details::hidl_pointer<const native_handle_t> mHandle;
    bool mOwnsHandle;
};

// The integer that holds a set of flags of an enum type.
template <typename Enum>
using hidl_bitfield = typename std::underlying_type<Enum>::type;

namespace details {
// Every value of a generated enum, in declaration order: generated headers specialise this
// for each of their enums.
template <typename T>
struct hidl_invalid_type {};
template <typename T, typename = std::enable_if_t<std::is_enum<T>::value>>
constexpr hidl_invalid_type<T> hidl_enum_values = hidl_invalid_type<T>();
}  // namespace details

// for (const auto value : hidl_enum_range<Enum>()) goes through every value of Enum.
template <typename T, typename = std::enable_if_t<std::is_enum<T>::value>>
struct hidl_enum_range {
    constexpr auto begin() const { return std::begin(details::hidl_enum_values<T>); }
    constexpr auto end() const { return std::end(details::hidl_enum_values<T>); }
    constexpr auto rbegin() const { return std::rbegin(details::hidl_enum_values<T>); }
    constexpr auto rend() const { return std::rend(details::hidl_enum_values<T>); }
};

struct hidl_death_recipient : virtual public RefBase {
    virtual void serviceDied(uint64_t cookie,
                             const ::android::wp<::android::hidl::base::V1_0::IBase>& who) = 0;
};

// ---- Texts for logs and debugging, as generated toString functions build them.

namespace details {
template <typename T, typename = std::enable_if_t<std::is_integral<T>::value>>
std::string toHexString(T value, bool prefix = true) {
    using Unsigned = std::make_unsigned_t<T>;
    std::ostringstream os;
    if (prefix) os << "0x";
    os << std::hex << static_cast<uint64_t>(static_cast<Unsigned>(value));
    return os.str();
}
}  // namespace details

inline std::string toString(bool value) { return value ? "true" : "false"; }
template <typename T, typename = std::enable_if_t<std::is_arithmetic<T>::value>>
std::string toString(T value) {
    return std::to_string(value);
}
inline std::string toString(const hidl_string& text) { return "\"" + std::string(text) + "\""; }
inline std::string toString(const hidl_handle& handle) {
    return handle.getNativeHandle() == nullptr ? "(null)" : "(handle)";
}

template <typename T>
std::string toString(const hidl_vec<T>& vector) {
    std::string os = "[" + std::to_string(vector.size()) + "]{";
    for (size_t i = 0; i < vector.size(); ++i) {
        if (i > 0) os += ", ";
        os += toString(vector[i]);
    }
    return os + "}";
}

template <typename T, size_t SIZE1, size_t... SIZES>
std::string toString(const hidl_array<T, SIZE1, SIZES...>& array) {
    std::string os = "{";
    for (size_t i = 0; i < SIZE1; ++i) {
        if (i > 0) os += ", ";
        if constexpr (sizeof...(SIZES) == 0) {
            os += toString(array[i]);
        } else {
            hidl_array<T, SIZES...> inner(array[i]);
            os += toString(inner);
        }
    }
    return os + "}";
}

}  // namespace hardware
}  // namespace android
