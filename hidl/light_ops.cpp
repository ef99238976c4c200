// Light brightness over the HIDL light service 2.0. It is also the HIDL path of the display
// backlight, which the dispatcher sends here as light 1.
#include <mmi_log.h>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using mmi::kLogPrefix;

namespace native_hidl {

jint SetLightBrightness(JNIEnv* /*env*/, jobject /*thiz*/, jint id, jint brightness) {
    sp<hw::light::V2_0::ILight> light = g_hwLight.get();
    if (light == nullptr) {
        MMI_LOGE("%s: SetLightBrightness by hidl fail, g_hwLight is null", kLogPrefix);
        return -1;
    }
    const int32_t result = ValueOr(light->setLightBrightness(id, brightness), -1);
    MMI_LOGI("%s: SetLightBrightness by hidl, Id: %d, brightness: %d, result: %d", kLogPrefix, id, brightness, result);
    return result;
}

}  // namespace native_hidl
