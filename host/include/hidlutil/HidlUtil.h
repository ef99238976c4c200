// android::HidlUtil: one object that is both a HIDL death recipient and a service
// registration listener, forwarding each notice to a callback.
#pragma once

#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <hidl/HidlSupport.h>

#include <functional>
#include <string>

namespace android {

class HidlUtil : public hardware::hidl_death_recipient,
                 public hidl::manager::V1_0::IServiceNotification {
public:
    using DeathCallback = std::function<void(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who)>;
    using RegistrationCallback =
            std::function<void(const std::string& fqName, const std::string& name, bool preexisting)>;

    HidlUtil(DeathCallback onServiceDied, RegistrationCallback onRegistration);

    void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) override;
    hardware::Return<void> onRegistration(const hardware::hidl_string& fqName,
                                          const hardware::hidl_string& name, bool preexisting) override;

private:
    DeathCallback mOnServiceDied;
    RegistrationCallback mOnRegistration;
};

}  // namespace android
