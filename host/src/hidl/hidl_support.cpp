// hidl_string, and the IBase methods every service answers beside its interface chain and
// its death links (see hidl_runtime.cpp for those).
#include <android/hidl/base/1.0/IBase.h>
#include <android/log.h>
#include <hidl/HidlSupport.h>
#include <hostcontrol/hidl_control.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace android {
namespace hardware {

namespace details {

void hidlSizeFatal(const char* what, size_t size) {
    __android_log_print(ANDROID_LOG_FATAL, "HidlSupport", "%s of %zu elements does not fit 32 bits", what, size);
    std::fprintf(stderr, "HidlSupport: %s of %zu elements does not fit 32 bits\n", what, size);
    std::abort();
}

}  // namespace details

namespace {
const char kEmptyText[] = "";
}  // namespace

hidl_string::hidl_string() : mBuffer(kEmptyText), mSize(0), mOwnsBuffer(false) {}

hidl_string::~hidl_string() { clear(); }

hidl_string::hidl_string(const hidl_string& other) : hidl_string() { copyFrom(other.c_str(), other.size()); }

hidl_string::hidl_string(hidl_string&& other) noexcept : hidl_string() { moveFrom(std::move(other)); }

hidl_string::hidl_string(const char* s) : hidl_string() {
    if (s != nullptr) copyFrom(s, std::strlen(s));
}

hidl_string::hidl_string(const char* s, size_t length) : hidl_string() {
    if (s != nullptr) copyFrom(s, length);
}

hidl_string::hidl_string(const std::string& s) : hidl_string() { copyFrom(s.data(), s.size()); }

hidl_string& hidl_string::operator=(const hidl_string& other) {
    if (this != &other) copyFrom(other.c_str(), other.size());
    return *this;
}

hidl_string& hidl_string::operator=(hidl_string&& other) noexcept {
    if (this != &other) moveFrom(std::move(other));
    return *this;
}

hidl_string& hidl_string::operator=(const char* s) {
    if (s == nullptr) {
        clear();
    } else {
        copyFrom(s, std::strlen(s));
    }
    return *this;
}

hidl_string& hidl_string::operator=(const std::string& s) {
    copyFrom(s.data(), s.size());
    return *this;
}

void hidl_string::clear() {
    if (mOwnsBuffer) delete[] mBuffer.get();
    mBuffer = kEmptyText;
    mSize = 0;
    mOwnsBuffer = false;
}

void hidl_string::setToExternal(const char* data, size_t size) {
    if (size > UINT32_MAX) details::hidlSizeFatal("hidl_string", size);
    clear();
    mBuffer = data;
    mSize = static_cast<uint32_t>(size);
    mOwnsBuffer = false;
}

// The copy is made before the old buffer goes: data may point into it.
void hidl_string::copyFrom(const char* data, size_t size) {
    if (size > UINT32_MAX) details::hidlSizeFatal("hidl_string", size);
    char* buffer = new char[size + 1];
    if (size > 0) std::memcpy(buffer, data, size);
    buffer[size] = '\0';
    clear();
    mBuffer = buffer;
    mSize = static_cast<uint32_t>(size);
    mOwnsBuffer = true;
}

void hidl_string::moveFrom(hidl_string&& other) {
    clear();
    mBuffer = other.mBuffer;
    mSize = other.mSize;
    mOwnsBuffer = other.mOwnsBuffer;
    other.mOwnsBuffer = false;
    other.clear();
}

bool operator==(const hidl_string& lhs, const hidl_string& rhs) {
    return std::string_view(lhs.c_str(), lhs.size()) == std::string_view(rhs.c_str(), rhs.size());
}

bool operator<(const hidl_string& lhs, const hidl_string& rhs) {
    return std::string_view(lhs.c_str(), lhs.size()) < std::string_view(rhs.c_str(), rhs.size());
}

}  // namespace hardware

namespace hidl {
namespace base {
namespace V1_0 {

using ::android::hardware::hidl_array;
using ::android::hardware::hidl_handle;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;
using ::android::hardware::Status;
using ::android::hardware::Void;

namespace {
Status DeadObject() { return Status::fromStatusT(DEAD_OBJECT); }
}  // namespace

Return<void> IBase::debug(const hidl_handle& /*fd*/, const hidl_vec<hidl_string>& /*options*/) {
    if (hostcontrol::IsHidlServiceDead(this)) return DeadObject();
    return Void();
}

Return<void> IBase::getHashChain(getHashChain_cb _hidl_cb) {
    size_t interfaces = 0;
    Return<void> chain =
            interfaceChain([&](const hidl_vec<hidl_string>& descriptors) { interfaces = descriptors.size(); });
    if (!chain.isOk()) return chain.getStatus();
    _hidl_cb(hidl_vec<hidl_array<uint8_t, 32>>(interfaces));
    return Void();
}

Return<void> IBase::setHALInstrumentation() {
    if (hostcontrol::IsHidlServiceDead(this)) return DeadObject();
    return Void();
}

Return<void> IBase::getDebugInfo(getDebugInfo_cb _hidl_cb) {
    if (hostcontrol::IsHidlServiceDead(this)) return DeadObject();
    DebugInfo info{};
    info.pid = static_cast<int32_t>(getpid());
    info.ptr = 0;
    info.arch = sizeof(void*) == 8 ? DebugInfo::Architecture::IS_64BIT : DebugInfo::Architecture::IS_32BIT;
    _hidl_cb(info);
    return Void();
}

Return<void> IBase::notifySyspropsChanged() {
    if (hostcontrol::IsHidlServiceDead(this)) return DeadObject();
    return Void();
}

}  // namespace V1_0
}  // namespace base
}  // namespace hidl
}  // namespace android
