// Descriptors, interface chains, casts, lookup and registration of the vendor HIDL
// interfaces: the part of generated HIDL code that is the same for every interface.
#include <hidl/HidlTransportSupport.h>
#include <hidl/ServiceManagement.h>
#include <vendor/zentel/hardware/biometrics/fingerprint/2.2/IExtBiometricsFingerprint.h>
#include <vendor/zentel/hardware/hwdisplay/1.5/IDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/1.1/IHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/2.0/ILight.h>
#include <vendor/zentel/hardware/power/1.0/IHWPower.h>
#include <vendor/zentel/hardware/sensors/1.2/ISensors.h>
#include <vendor/zentel/hardware/sensors/2.0/ISensors.h>
#include <vendor/zentel/hardware/tp/1.0/ITouchscreen.h>

using ::android::sp;
using ::android::status_t;
using ::android::hardware::Return;
using ::android::hidl::base::V1_0::IBase;
using ::android::hidl::manager::V1_0::IServiceNotification;
namespace details = ::android::hardware::details;

namespace {

template <typename I>
sp<I> GetServiceAs(const char* descriptor, const std::string& name, bool getStub) {
    sp<IBase> base = details::getRawServiceInternal(descriptor, name, true, getStub);
    if (base == nullptr) return nullptr;
    Return<sp<I>> cast = I::castFrom(base);
    return cast.isOk() ? static_cast<sp<I>>(cast) : nullptr;
}

}  // namespace

// FQNAME is the interface's own descriptor; the rest are its ancestors, nearest first.
#define ZENTEL_HIDL_IMPLEMENT(IFACE, FQNAME, ...)                                                   \
    const char* IFACE::descriptor = FQNAME;                                                         \
    Return<void> IFACE::interfaceChain(interfaceChain_cb cb) {                                      \
        return details::reportInterfaceChain(this, cb, {FQNAME, __VA_ARGS__ IBase::descriptor});    \
    }                                                                                               \
    Return<sp<IFACE>> IFACE::castFrom(const sp<IBase>& parent, bool emitError) {                    \
        return details::castInterface<IFACE, IBase>(parent, FQNAME, emitError);                     \
    }                                                                                               \
    sp<IFACE> IFACE::getService(const std::string& name, bool getStub) {                            \
        return GetServiceAs<IFACE>(FQNAME, name, getStub);                                          \
    }                                                                                               \
    status_t IFACE::registerAsService(const std::string& name) {                                    \
        return details::registerAsServiceInternal(this, name);                                      \
    }                                                                                               \
    bool IFACE::registerForNotifications(const std::string& name, const sp<IServiceNotification>& n) { \
        return details::registerForNotificationsInternal(FQNAME, name, n);                          \
    }

#define FACTORY "vendor.zentel.hardware.hwfactoryinterface@"
#define DISPLAY "vendor.zentel.hardware.hwdisplay@"
#define SENSORS "vendor.zentel.hardware.sensors@"
#define FINGERPRINT "vendor.zentel.hardware.biometrics.fingerprint@"

namespace vendor {
namespace zentel {
namespace hardware {

ZENTEL_HIDL_IMPLEMENT(hwfactoryinterface::V1_0::IHwFactoryInterface, FACTORY "1.0::IHwFactoryInterface", )
ZENTEL_HIDL_IMPLEMENT(hwfactoryinterface::V1_1::IHwFactoryInterface, FACTORY "1.1::IHwFactoryInterface",
                      FACTORY "1.0::IHwFactoryInterface", )

ZENTEL_HIDL_IMPLEMENT(hwdisplay::V1_0::IDisplay, DISPLAY "1.0::IDisplay", )
ZENTEL_HIDL_IMPLEMENT(hwdisplay::V1_1::IDisplay, DISPLAY "1.1::IDisplay", DISPLAY "1.0::IDisplay", )
ZENTEL_HIDL_IMPLEMENT(hwdisplay::V1_2::IDisplay, DISPLAY "1.2::IDisplay", DISPLAY "1.1::IDisplay",
                      DISPLAY "1.0::IDisplay", )
ZENTEL_HIDL_IMPLEMENT(hwdisplay::V1_3::IDisplay, DISPLAY "1.3::IDisplay", DISPLAY "1.2::IDisplay",
                      DISPLAY "1.1::IDisplay", DISPLAY "1.0::IDisplay", )
ZENTEL_HIDL_IMPLEMENT(hwdisplay::V1_4::IDisplay, DISPLAY "1.4::IDisplay", DISPLAY "1.3::IDisplay",
                      DISPLAY "1.2::IDisplay", DISPLAY "1.1::IDisplay", DISPLAY "1.0::IDisplay", )
ZENTEL_HIDL_IMPLEMENT(hwdisplay::V1_5::IDisplay, DISPLAY "1.5::IDisplay", DISPLAY "1.4::IDisplay",
                      DISPLAY "1.3::IDisplay", DISPLAY "1.2::IDisplay", DISPLAY "1.1::IDisplay",
                      DISPLAY "1.0::IDisplay", )

ZENTEL_HIDL_IMPLEMENT(tp::V1_0::ITouchscreen, "vendor.zentel.hardware.tp@1.0::ITouchscreen", )

ZENTEL_HIDL_IMPLEMENT(biometrics::fingerprint::V2_1::IExtBiometricsFingerprint,
                      FINGERPRINT "2.1::IExtBiometricsFingerprint", )
ZENTEL_HIDL_IMPLEMENT(biometrics::fingerprint::V2_2::IExtBiometricsFingerprint,
                      FINGERPRINT "2.2::IExtBiometricsFingerprint", FINGERPRINT "2.1::IExtBiometricsFingerprint", )

ZENTEL_HIDL_IMPLEMENT(sensors::V1_0::ISensors, SENSORS "1.0::ISensors", )
ZENTEL_HIDL_IMPLEMENT(sensors::V1_1::ISensors, SENSORS "1.1::ISensors", SENSORS "1.0::ISensors", )
ZENTEL_HIDL_IMPLEMENT(sensors::V1_2::ISensors, SENSORS "1.2::ISensors", SENSORS "1.1::ISensors",
                      SENSORS "1.0::ISensors", )
ZENTEL_HIDL_IMPLEMENT(sensors::V2_0::ISensors, SENSORS "2.0::ISensors", )

ZENTEL_HIDL_IMPLEMENT(power::V1_0::IHWPower, "vendor.zentel.hardware.power@1.0::IHWPower", )
ZENTEL_HIDL_IMPLEMENT(light::V2_0::ILight, "vendor.zentel.hardware.light@2.0::ILight", )

}  // namespace hardware
}  // namespace zentel
}  // namespace vendor
