// AIDL vendor.zentel.hardware.camera.vaelon.IVAELONService and its callback (C++ backend).
#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>
#include <utils/String16.h>

#include <cstdint>
#include <vector>

namespace vendor {
namespace zentel {
namespace hardware {
namespace camera {
namespace vaelon {

class GetCapabilitiesResult {
public:
    int32_t serviceType = 0;
    std::vector<int32_t> overtimes;
};

class VAELONClientHandleType {
public:
    int32_t clientHandle = 0;
};

class VAELONServiceResult {
public:
    int32_t serviceResult = 0;
};

class IVAELONServiceCallBack : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(VAELONServiceCallBack)

    virtual ::android::binder::Status NotifyVAELONEvent(const VAELONClientHandleType& handle,
                                                        const VAELONServiceResult& result) = 0;
};

class BnVAELONServiceCallBack : public ::android::BnInterface<IVAELONServiceCallBack> {};

class IVAELONService : public ::android::IInterface {
public:
    DECLARE_META_INTERFACE(VAELONService)

    virtual ::android::binder::Status getCapabilities(std::vector<GetCapabilitiesResult>* _aidl_return) = 0;
    virtual ::android::binder::Status registerClient(const ::android::sp<IVAELONServiceCallBack>& callback,
                                                     int32_t serviceType, const ::android::String16& name,
                                                     VAELONClientHandleType* handle, int32_t* _aidl_return) = 0;
    virtual ::android::binder::Status unregisterClient(const VAELONClientHandleType& handle,
                                                       int32_t* _aidl_return) = 0;
};

class BnVAELONService : public ::android::BnInterface<IVAELONService> {};

}  // namespace vaelon
}  // namespace camera
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
