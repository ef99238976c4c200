// Display configuration, refresh rate, display parameters, backlight and panel type over the
// AIDL display service.
//
// The binder status of a call is not looked at: a call that fails in transport leaves its
// out-values as they were preset (a fresh record: status 0 and no text; integers as stated
// per operation).
#include <mmi_log.h>
#include <service_access.h>

#include "aidl_handles.h"
#include "java_helpers.h"
#include "mmi_aidl_manager.h"

using android::sp;
using mmi::kLogPrefix;
using mmi::NewJavaString;
using vendor::zentel::hardware::hwdisplay::DISPLAY_DATA;
using vendor::zentel::hardware::hwdisplay::DisplayOutInfo;
using vendor::zentel::hardware::hwdisplay::IDisplay;

namespace native_aidl {
namespace {

// The frame-rate query always asks for the current rate.
constexpr int32_t CURRENT_FPS_QUERY = 0;
// The value of an integer result that the service did not write.
constexpr int32_t RESULT_NOT_WRITTEN = -2;

}  // namespace

jstring GetScreenCurrentFps(JNIEnv* env, jobject /*thiz*/) {
    sp<IDisplay> display = mmi::ServiceOr(g_aidlDisplay, "%s: GetScreenCurrentFps by aidl fail, g_aidlDisplay is null");
    if (display == nullptr) return NewJavaString(env, "");
    DisplayOutInfo out;
    display->getScreenCurrentFps(CURRENT_FPS_QUERY, &out);
    MMI_LOGI("%s: GetScreenCurrentFps by aidl, ret: %d, screenConfig: %s", kLogPrefix, out.ret, out.info.c_str());
    return NewJavaString(env, out.info);
}

jstring GetScreenConfig(JNIEnv* env, jobject /*thiz*/, jint station) {
    sp<IDisplay> display = mmi::ServiceOr(g_aidlDisplay, "%s: GetScreenConfig by aidl fail, g_aidlDisplay is null");
    if (display == nullptr) return NewJavaString(env, "");
    DisplayOutInfo out;
    display->getScreenConfig(station, &out);
    MMI_LOGI("%s: GetScreenConfig by aidl, station: %d, ret: %d, screenConfig: %s", kLogPrefix, station, out.ret,
             out.info.c_str());
    return NewJavaString(env, out.info);
}

jint SetDisplayParameter(JNIEnv* env, jobject /*thiz*/, jint scene, jint dataInt, jstring dataString) {
    sp<IDisplay> display = mmi::ServiceOr(g_aidlDisplay, "%s: SetDisplayParameter, g_aidlDisplay is null");
    if (display == nullptr) return -1;
    DISPLAY_DATA data;
    {
        mmi::JavaUtfChars chars(env, dataString);
        if (chars.isNull()) {
            mmi::LogNullArgument("SetDisplayParameter by aidl", "dataString");
            return -1;
        }
        data.dataInt = dataInt;
        data.dataString = chars.c_str();
    }
    DisplayOutInfo out;
    display->setDisplayParameter(scene, data, &out);
    MMI_LOGI("%s: SetDisplayParameter scence: %d, dataInt: %d, dataString: %s, ret: %d, result info: %s", kLogPrefix,
             scene, dataInt, data.dataString.c_str(), out.ret, out.info.c_str());
    return out.ret == 0 ? 0 : -1;
}

jint SetBackLightBrightness(JNIEnv* /*env*/, jobject /*thiz*/, jint brightness) {
    sp<IDisplay> display = mmi::ServiceOr(g_aidlDisplay, "%s: SetBackLightBrightness by aidl fail, g_aidlDisplay is null");
    if (display == nullptr) return -1;
    int32_t result = RESULT_NOT_WRITTEN;
    display->setBackLightBrightness(brightness, &result);
    MMI_LOGI("%s: SetBackLightBrightness by aidl, brightness: %d, ret: %d", kLogPrefix, brightness, result);
    return result;
}

jint GetDisplayPanelType(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<IDisplay> display = mmi::ServiceOr(g_aidlDisplay, "%s: GetDisplayPanelType by aidl fail, g_aidlDisplay is null");
    if (display == nullptr) return -1;
    int32_t panelType = -1;
    display->getDisplayPanelType(&panelType);
    MMI_LOGI("%s: GetDisplayPanelType by aidl, result: %d", kLogPrefix, panelType);
    return panelType;
}

jint SetDisplaySelfAdaptMinFps(JNIEnv* /*env*/, jobject /*thiz*/, jint dataInt) {
    sp<IDisplay> display = mmi::ServiceOr(g_aidlDisplay, "%s: SetDisplaySelfAdaptMinFps, g_aidlDisplay is null");
    if (display == nullptr) return -1;
    int32_t result = RESULT_NOT_WRITTEN;
    display->setDisplaySelfAdaptMinFps(dataInt, &result);
    MMI_LOGI("%s: SetDisplaySelfAdaptMinFps dataInt: %d, ret: %d", kLogPrefix, dataInt, result);
    return result;
}

}  // namespace native_aidl
