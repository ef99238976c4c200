// HIDL runtime subset: interface casts between minor versions, as generated castFrom uses.
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/ServiceManagement.h>

#include <vector>

namespace android {
namespace hardware {
namespace details {

// Whether the interface chain of the object names the descriptor. A failed transport is
// returned as a failed Return.
Return<bool> canCastInterface(::android::hidl::base::V1_0::IBase* interface, const char* castTo,
                              bool emitError = false);

// Answers an interfaceChain call with the given descriptors, most derived first; a killed
// service answers with a dead-object status instead.
Return<void> reportInterfaceChain(::android::hidl::base::V1_0::IBase* self,
                                  const ::android::hidl::base::V1_0::IBase::interfaceChain_cb& cb,
                                  const std::vector<const char*>& chain);

template <typename IChild, typename IParent>
Return<sp<IChild>> castInterface(sp<IParent> parent, const char* childIndicator, bool emitError) {
    if (parent.get() == nullptr) return sp<IChild>(nullptr);
    Return<bool> canCast = canCastInterface(parent.get(), childIndicator, emitError);
    if (!canCast.isOk()) {
        return emitError ? Return<sp<IChild>>(canCast.getStatus()) : Return<sp<IChild>>(sp<IChild>(nullptr));
    }
    if (!canCast) return sp<IChild>(nullptr);
    // Every service object is local in the host build.
    return sp<IChild>(dynamic_cast<IChild*>(parent.get()));
}

}  // namespace details
}  // namespace hardware
}  // namespace android
