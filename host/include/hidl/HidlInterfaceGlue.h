// Host build only: what the device's generated interface sources (hidl-gen -L c++-sources)
// give every HIDL interface beside its header: the descriptor, the interface chain, the
// casts from each interface it extends, service lookup, registration and registration
// notices, and the IBase methods every interface overrides.
//
// It is written once here for every interface. The build writes one source file from the
// interface definitions that uses the three macros below for each interface:
//
//   HIDL_HOST_PARENT(IFACE, PARENT)       the interface IFACE extends (IBase at the root)
//   HIDL_HOST_INTERFACE(IFACE, FQNAME)    the definitions, FQNAME being "package@M.m::IName"
//   HIDL_HOST_CAST_FROM(IFACE, ANCESTOR)  castFrom for one interface IFACE extends, directly or
//                                         not (IFACE itself and IBase come with the definitions)
//
// Every IBase method except interfaceChain is answered by the host's IBase, which knows
// whether the service was killed (hostcontrol/hidl_control.h).
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <hidl/HidlSupport.h>
#include <hidl/HidlTransportSupport.h>
#include <hidl/ServiceManagement.h>
#include <hidl/Status.h>

#include <string>
#include <type_traits>
#include <vector>

namespace android {
namespace hardware {
namespace details {

// The interface I extends; HIDL_HOST_PARENT specialises it for every interface.
template <typename I>
struct HostParent;

template <typename I>
void AppendHostInterfaceChain(std::vector<const char*>& chain) {
    chain.push_back(I::descriptor);
    if constexpr (!std::is_same_v<I, ::android::hidl::base::V1_0::IBase>) {
        AppendHostInterfaceChain<typename HostParent<I>::type>(chain);
    }
}

// I's descriptor and the descriptors of every interface it extends, newest first, IBase last.
template <typename I>
const std::vector<const char*>& HostInterfaceChain() {
    static const std::vector<const char*> chain = [] {
        std::vector<const char*> descriptors;
        AppendHostInterfaceChain<I>(descriptors);
        return descriptors;
    }();
    return chain;
}

// The service registered for I under the instance name, cast to I; null when there is none.
template <typename I>
sp<I> HostGetService(const std::string& instance, bool getStub) {
    sp<::android::hidl::base::V1_0::IBase> base = getRawServiceInternal(I::descriptor, instance, true, getStub);
    if (base == nullptr) return nullptr;
    Return<sp<I>> cast = castInterface<I, ::android::hidl::base::V1_0::IBase>(base, I::descriptor, false);
    return cast.isOk() ? static_cast<sp<I>>(cast) : nullptr;
}

}  // namespace details
}  // namespace hardware
}  // namespace android

// The definitions use trailing return types: IFACE is a qualified name that may begin with
// "::", which must not run into the return type.
#define HIDL_HOST_PARENT(IFACE, PARENT)                     \
    template <>                                             \
    struct android::hardware::details::HostParent<IFACE> { \
        using type = PARENT;                                \
    };

#define HIDL_HOST_CAST_FROM(IFACE, ANCESTOR)                                                           \
    auto IFACE::castFrom(const ::android::sp<ANCESTOR>& parent, bool emitError)                        \
            -> ::android::hardware::Return<::android::sp<IFACE>> {                                     \
        return ::android::hardware::details::castInterface<IFACE, ANCESTOR>(parent, IFACE::descriptor, \
                                                                             emitError);               \
    }

#define HIDL_HOST_INTERFACE(IFACE, FQNAME)                                                                 \
    const char* IFACE::descriptor = FQNAME;                                                                \
    auto IFACE::interfaceChain(interfaceChain_cb _hidl_cb) -> ::android::hardware::Return<void> {          \
        return ::android::hardware::details::reportInterfaceChain(                                         \
                this, _hidl_cb, ::android::hardware::details::HostInterfaceChain<IFACE>());               \
    }                                                                                                      \
    auto IFACE::debug(const ::android::hardware::hidl_handle& fd,                                          \
                      const ::android::hardware::hidl_vec<::android::hardware::hidl_string>& options)      \
            -> ::android::hardware::Return<void> {                                                         \
        return ::android::hidl::base::V1_0::IBase::debug(fd, options);                                     \
    }                                                                                                      \
    auto IFACE::interfaceDescriptor(interfaceDescriptor_cb _hidl_cb) -> ::android::hardware::Return<void> { \
        return ::android::hidl::base::V1_0::IBase::interfaceDescriptor(_hidl_cb);                          \
    }                                                                                                      \
    auto IFACE::getHashChain(getHashChain_cb _hidl_cb) -> ::android::hardware::Return<void> {              \
        return ::android::hidl::base::V1_0::IBase::getHashChain(_hidl_cb);                                 \
    }                                                                                                      \
    auto IFACE::setHALInstrumentation() -> ::android::hardware::Return<void> {                             \
        return ::android::hidl::base::V1_0::IBase::setHALInstrumentation();                                \
    }                                                                                                      \
    auto IFACE::linkToDeath(const ::android::sp<::android::hardware::hidl_death_recipient>& recipient,     \
                            uint64_t cookie) -> ::android::hardware::Return<bool> {                        \
        return ::android::hidl::base::V1_0::IBase::linkToDeath(recipient, cookie);                         \
    }                                                                                                      \
    auto IFACE::ping() -> ::android::hardware::Return<void> {                                              \
        return ::android::hidl::base::V1_0::IBase::ping();                                                 \
    }                                                                                                      \
    auto IFACE::getDebugInfo(getDebugInfo_cb _hidl_cb) -> ::android::hardware::Return<void> {              \
        return ::android::hidl::base::V1_0::IBase::getDebugInfo(_hidl_cb);                                 \
    }                                                                                                      \
    auto IFACE::notifySyspropsChanged() -> ::android::hardware::Return<void> {                             \
        return ::android::hidl::base::V1_0::IBase::notifySyspropsChanged();                                \
    }                                                                                                      \
    auto IFACE::unlinkToDeath(const ::android::sp<::android::hardware::hidl_death_recipient>& recipient)   \
            -> ::android::hardware::Return<bool> {                                                         \
        return ::android::hidl::base::V1_0::IBase::unlinkToDeath(recipient);                               \
    }                                                                                                      \
    auto IFACE::castFrom(const ::android::sp<IFACE>& parent, bool)                                         \
            -> ::android::hardware::Return<::android::sp<IFACE>> {                                         \
        return parent;                                                                                     \
    }                                                                                                      \
    HIDL_HOST_CAST_FROM(IFACE, ::android::hidl::base::V1_0::IBase)                                         \
    auto IFACE::tryGetService(const std::string& serviceName, bool getStub) -> ::android::sp<IFACE> {      \
        return ::android::hardware::details::HostGetService<IFACE>(serviceName, getStub);                 \
    }                                                                                                      \
    auto IFACE::getService(const std::string& serviceName, bool getStub) -> ::android::sp<IFACE> {         \
        return ::android::hardware::details::HostGetService<IFACE>(serviceName, getStub);                 \
    }                                                                                                      \
    auto IFACE::registerAsService(const std::string& serviceName) -> ::android::status_t {                 \
        return ::android::hardware::details::registerAsServiceInternal(this, serviceName);                 \
    }                                                                                                      \
    auto IFACE::registerForNotifications(                                                                  \
            const std::string& serviceName,                                                                \
            const ::android::sp<::android::hidl::manager::V1_0::IServiceNotification>& notification)       \
            -> bool {                                                                                      \
        return ::android::hardware::details::registerForNotificationsInternal(IFACE::descriptor,           \
                                                                              serviceName, notification);  \
    }
