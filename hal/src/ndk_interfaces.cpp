// Descriptors, binder classes and lookup of the NDK-backend fingerprint interfaces.
#include <aidl/android/hardware/biometrics/fingerprint/ISessionCallback.h>
#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/BnFingerprint.h>
#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/BnSession.h>

namespace {

// Calls travel as direct C++ calls between the in-process objects, so no class here ever
// receives a parcel.
binder_status_t NoTransactions(AIBinder*, transaction_code_t, const AParcel*, AParcel*) {
    return STATUS_UNKNOWN_TRANSACTION;
}

template <typename INTERFACE>
std::shared_ptr<INTERFACE> FromBinder(const ndk::SpAIBinder& binder, const AIBinder_Class* clazz) {
    if (binder.get() == nullptr || !AIBinder_associateClass(binder.get(), clazz)) return nullptr;
    return std::static_pointer_cast<INTERFACE>(ndk::ICInterface::asInterface(binder.get()));
}

}  // namespace

namespace aidl {
namespace android {
namespace hardware {
namespace biometrics {
namespace fingerprint {
const char* ISessionCallback::descriptor = "android.hardware.biometrics.fingerprint.ISessionCallback";
}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace android

namespace vendor {
namespace zentel {
namespace hardware {
namespace biometrics {
namespace fingerprint {

const char* IFingerprint::descriptor = "vendor.zentel.hardware.biometrics.fingerprint.IFingerprint";
const char* ISession::descriptor = "vendor.zentel.hardware.biometrics.fingerprint.ISession";

namespace {
AIBinder_Class* FingerprintClass() {
    static AIBinder_Class* clazz = ndk::ICInterface::defineClass<IFingerprint>(IFingerprint::descriptor, NoTransactions);
    return clazz;
}
AIBinder_Class* SessionClass() {
    static AIBinder_Class* clazz = ndk::ICInterface::defineClass<ISession>(ISession::descriptor, NoTransactions);
    return clazz;
}
}  // namespace

std::shared_ptr<IFingerprint> IFingerprint::fromBinder(const ndk::SpAIBinder& binder) {
    return FromBinder<IFingerprint>(binder, FingerprintClass());
}

std::shared_ptr<ISession> ISession::fromBinder(const ndk::SpAIBinder& binder) {
    return FromBinder<ISession>(binder, SessionClass());
}

ndk::SpAIBinder BnFingerprint::createBinder() {
    return ndk::SpAIBinder(AIBinder_new(FingerprintClass(), static_cast<ndk::ICInterface*>(this)));
}

ndk::SpAIBinder BnSession::createBinder() {
    return ndk::SpAIBinder(AIBinder_new(SessionClass(), static_cast<ndk::ICInterface*>(this)));
}

}  // namespace fingerprint
}  // namespace biometrics
}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
}  // namespace aidl
