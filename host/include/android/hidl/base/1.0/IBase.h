// HIDL runtime subset: the root interface of every HIDL interface.
//
// Host build: every IBase object stands for a service in another process. It keeps its
// death links, and hostcontrol/hidl_control.h can kill it; the obituaries then arrive on
// the process's HIDL callback thread, as on a device.
#pragma once

#include <android/hidl/base/1.0/types.h>
#include <hidl/HidlSupport.h>

#include <functional>
#include <memory>

namespace android {
namespace hardware {
namespace details {
class HostLifeline;
}  // namespace details
}  // namespace hardware

namespace hidl {
namespace base {
namespace V1_0 {

struct IBase : virtual public ::android::RefBase {
    typedef ::android::hardware::details::i_tag _hidl_tag;
    static const char* descriptor;

    IBase();
    ~IBase() override;

    virtual bool isRemote() const { return false; }

    using interfaceChain_cb = std::function<void(const ::android::hardware::hidl_vec<::android::hardware::hidl_string>& descriptors)>;
    virtual ::android::hardware::Return<void> interfaceChain(interfaceChain_cb _hidl_cb);

    using interfaceDescriptor_cb = std::function<void(const ::android::hardware::hidl_string& descriptor)>;
    virtual ::android::hardware::Return<void> interfaceDescriptor(interfaceDescriptor_cb _hidl_cb);

    virtual ::android::hardware::Return<void> ping();

    virtual ::android::hardware::Return<void> debug(
            const ::android::hardware::hidl_handle& fd,
            const ::android::hardware::hidl_vec<::android::hardware::hidl_string>& options);

    using getHashChain_cb = std::function<void(
            const ::android::hardware::hidl_vec<::android::hardware::hidl_array<uint8_t, 32>>& hashchain)>;
    // One hash per interface of the chain; the host's interfaces are not frozen, so all zero.
    virtual ::android::hardware::Return<void> getHashChain(getHashChain_cb _hidl_cb);

    virtual ::android::hardware::Return<void> setHALInstrumentation();

    using getDebugInfo_cb = std::function<void(const DebugInfo& info)>;
    virtual ::android::hardware::Return<void> getDebugInfo(getDebugInfo_cb _hidl_cb);

    virtual ::android::hardware::Return<void> notifySyspropsChanged();

    // The recipient is kept as a weak reference; true when linked.
    virtual ::android::hardware::Return<bool> linkToDeath(
            const ::android::sp<::android::hardware::hidl_death_recipient>& recipient, uint64_t cookie);
    virtual ::android::hardware::Return<bool> unlinkToDeath(
            const ::android::sp<::android::hardware::hidl_death_recipient>& recipient);

    static ::android::hardware::Return<::android::sp<IBase>> castFrom(const ::android::sp<IBase>& parent,
                                                                       bool emitError = false);

    // Host: the object's death state and links (see hostcontrol/hidl_control.h).
    ::android::hardware::details::HostLifeline& hostLifeline() const { return *mHostLifeline; }

private:
    std::unique_ptr<::android::hardware::details::HostLifeline> mHostLifeline;
};

}  // namespace V1_0
}  // namespace base
}  // namespace hidl
}  // namespace android
