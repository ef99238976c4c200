// HIDL runtime subset: the listener for service registrations.
#pragma once

#include <android/hidl/base/1.0/IBase.h>

namespace android {
namespace hidl {
namespace manager {
namespace V1_0 {

struct IServiceNotification : public ::android::hidl::base::V1_0::IBase {
    static const char* descriptor;

    // preexisting is true for services already registered when the listener was installed.
    virtual ::android::hardware::Return<void> onRegistration(const ::android::hardware::hidl_string& fqName,
                                                             const ::android::hardware::hidl_string& name,
                                                             bool preexisting) = 0;

    ::android::hardware::Return<void> interfaceChain(interfaceChain_cb _hidl_cb) override;
};

}  // namespace V1_0
}  // namespace manager
}  // namespace hidl
}  // namespace android
