#include <hidlutil/HidlUtil.h>

namespace android {

HidlUtil::HidlUtil(DeathCallback onServiceDied, RegistrationCallback onRegistration)
    : mOnServiceDied(std::move(onServiceDied)), mOnRegistration(std::move(onRegistration)) {}

void HidlUtil::serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) {
    if (mOnServiceDied) mOnServiceDied(cookie, who);
}

hardware::Return<void> HidlUtil::onRegistration(const hardware::hidl_string& fqName,
                                                const hardware::hidl_string& name, bool preexisting) {
    if (mOnRegistration) mOnRegistration(fqName, name, preexisting);
    return hardware::Void();
}

}  // namespace android
