// Descriptors and interface lookup of the vendor AIDL interfaces (C++ backend).
#include <android/hardware/vibrator/IVibrator.h>
#include <vendor/zentel/hardware/camera/vaelon/IVAELONService.h>
#include <vendor/zentel/hardware/hwdisplay/IDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/IHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/ILight.h>
#include <vendor/zentel/hardware/power/IHWPower.h>
#include <vendor/zentel/hardware/sensors/ISensors.h>
#include <vendor/zentel/hardware/tp/ITouchscreen.h>
#include <vendor/zentel/hardware/vibrator/ICustVibrator.h>

namespace vendor {
namespace zentel {
namespace hardware {

namespace hwfactoryinterface {
IMPLEMENT_META_INTERFACE(HwFactoryInterface, "vendor.zentel.hardware.hwfactoryinterface.IHwFactoryInterface")
}  // namespace hwfactoryinterface

namespace hwdisplay {
IMPLEMENT_META_INTERFACE(Display, "vendor.zentel.hardware.hwdisplay.IDisplay")
}  // namespace hwdisplay

namespace tp {
IMPLEMENT_META_INTERFACE(Touchscreen, "vendor.zentel.hardware.tp.ITouchscreen")
}  // namespace tp

namespace sensors {
IMPLEMENT_META_INTERFACE(Sensors, "vendor.zentel.hardware.sensors.ISensors")
}  // namespace sensors

namespace power {
IMPLEMENT_META_INTERFACE(HWPower, "vendor.zentel.hardware.power.IHWPower")
}  // namespace power

namespace light {
IMPLEMENT_META_INTERFACE(Light, "vendor.zentel.hardware.light.ILight")
}  // namespace light

namespace camera {
namespace vaelon {
IMPLEMENT_META_INTERFACE(VAELONService, "vendor.zentel.hardware.camera.vaelon.IVAELONService")
IMPLEMENT_META_INTERFACE(VAELONServiceCallBack, "vendor.zentel.hardware.camera.vaelon.IVAELONServiceCallBack")
}  // namespace vaelon
}  // namespace camera

namespace vibrator {
IMPLEMENT_META_INTERFACE(CustVibrator, "vendor.zentel.hardware.vibrator.ICustVibrator")
}  // namespace vibrator

}  // namespace hardware
}  // namespace zentel
}  // namespace vendor

namespace android {
namespace hardware {
namespace vibrator {
IMPLEMENT_META_INTERFACE(Vibrator, "android.hardware.vibrator.IVibrator")
}  // namespace vibrator
}  // namespace hardware
}  // namespace android
