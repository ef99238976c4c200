// Display configuration, refresh rate, display parameters and panel type over the HIDL
// display service. The 1.0 handle is the one held; operations that only a newer minor
// version offers (1.1 frame rate and configuration, 1.4 self-adaptive minimum, 1.5 display
// parameters) cast it for the length of one call, and a service of an older version makes
// them fail. The backlight has no HIDL display operation: it is the light service's.
#include <mmi_log.h>
#include <service_access.h>
#include <vendor/zentel/hardware/hwdisplay/1.1/IDisplay.h>
#include <vendor/zentel/hardware/hwdisplay/1.4/IDisplay.h>
#include <vendor/zentel/hardware/hwdisplay/1.5/IDisplay.h>

#include <functional>
#include <string>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using android::sp;
using android::hardware::hidl_string;
using mmi::kLogPrefix;
using mmi::NewJavaString;

namespace native_hidl {
namespace {

using DisplayV1_0 = hw::hwdisplay::V1_0::IDisplay;
using DisplayV1_1 = hw::hwdisplay::V1_1::IDisplay;
using DisplayV1_4 = hw::hwdisplay::V1_4::IDisplay;
using DisplayV1_5 = hw::hwdisplay::V1_5::IDisplay;
using hw::hwdisplay::V1_0::DISPLAY_RET;
using hw::hwdisplay::V1_0::PANEL_TYPE;

// The frame-rate query always asks for the current rate.
constexpr int32_t CURRENT_FPS_QUERY = 0;
// The value of a status or result that the service did not write.
constexpr int32_t RESULT_NOT_WRITTEN = -2;
constexpr DISPLAY_RET STATUS_NOT_WRITTEN = static_cast<DISPLAY_RET>(RESULT_NOT_WRITTEN);
constexpr PANEL_TYPE PANEL_TYPE_NOT_WRITTEN = static_cast<PANEL_TYPE>(0);

// The display service cast to a newer minor version for one call, or null after writing
// the operation's line for a missing service or for a service of an older version.
template <typename Newer>
sp<Newer> NewerDisplay(const char* missingLine, const char* olderVersionLine) {
    sp<DisplayV1_0> display = mmi::ServiceOr(g_hwDisplay, missingLine);
    if (display == nullptr) return nullptr;
    sp<Newer> hwDisplayNew = CastTo<Newer>(display);
    if (hwDisplayNew == nullptr) MMI_LOGE(olderVersionLine, kLogPrefix);
    return hwDisplayNew;
}

// A (status, text) answer, copied out of the service's callback.
struct DisplayTextResult {
    DISPLAY_RET ret = STATUS_NOT_WRITTEN;
    std::string text;
};

// The result callback that stores a (status, text) answer: every text-returning display
// operation's callback has this type.
std::function<void(DISPLAY_RET, const hidl_string&)> IntoDisplay(DisplayTextResult& result) {
    return [&result](DISPLAY_RET ret, const hidl_string& text) {
        result.ret = ret;
        result.text = text;
    };
}

int32_t Number(DISPLAY_RET ret) { return static_cast<int32_t>(ret); }

}  // namespace

jstring GetScreenCurrentFps(JNIEnv* env, jobject /*thiz*/) {
    sp<DisplayV1_1> hwDisplayNew =
            NewerDisplay<DisplayV1_1>("%s: GetScreenCurrentFps by hidl fail, g_hwDisplay is null",
                                      "%s: GetScreenCurrentFps by hidl fail, hwDisplayNew is null, not support multi fps");
    if (hwDisplayNew == nullptr) return NewJavaString(env, "");
    DisplayTextResult result;
    Finish(hwDisplayNew->getScreenCurrentFps(CURRENT_FPS_QUERY, IntoDisplay(result)));
    MMI_LOGI("%s: GetScreenCurrentFps by hidl, ret: %d, screenConfig: %s", kLogPrefix, Number(result.ret),
             result.text.c_str());
    return NewJavaString(env, result.text);
}

jstring GetScreenConfig(JNIEnv* env, jobject /*thiz*/, jint station) {
    sp<DisplayV1_1> hwDisplayNew =
            NewerDisplay<DisplayV1_1>("%s: GetScreenConfig by hidl fail, g_hwDisplay is null",
                                      "%s: GetScreenConfig by hidl fail, hwDisplayNew is null, not support multi fps");
    if (hwDisplayNew == nullptr) return NewJavaString(env, "");
    // The station call's status stands until the configuration answer replaces it.
    DisplayTextResult result;
    result.ret = ValueOr(hwDisplayNew->selectScreenConfigStation(station), STATUS_NOT_WRITTEN);
    Finish(hwDisplayNew->getScreenConfig(IntoDisplay(result)));
    MMI_LOGI("%s: GetScreenConfig by hidl, station: %d, ret: %d, screenConfig: %s", kLogPrefix, station,
             Number(result.ret), result.text.c_str());
    return NewJavaString(env, result.text);
}

jint SetDisplayParameter(JNIEnv* env, jobject /*thiz*/, jint scene, jint dataInt, jstring dataString) {
    sp<DisplayV1_5> hwDisplayNew = NewerDisplay<DisplayV1_5>("%s: SetDisplayParameter by hidl, g_hwDisplay is null",
                                                             "%s: SetDisplayParameter by hidl fail, hwDisplayNew is null");
    if (hwDisplayNew == nullptr) return -1;
    hw::hwdisplay::V1_5::DisplayData data;
    {
        mmi::JavaUtfChars chars(env, dataString);
        if (chars.isNull()) {
            mmi::LogNullArgument("SetDisplayParameter by hidl", "dataString");
            return -1;
        }
        data.dataInt = dataInt;
        data.dataString = chars.c_str();
    }
    DisplayTextResult result;
    Finish(hwDisplayNew->setDisplayParameter(scene, data, IntoDisplay(result)));
    MMI_LOGI("%s: SetDisplayParameter scence: %d, dataInt: %d, dataString: %s, ret: %d, result info: %s", kLogPrefix,
             scene, dataInt, data.dataString.c_str(), Number(result.ret), result.text.c_str());
    return result.ret == DISPLAY_RET::SUCCESS ? 0 : -1;
}

jint GetDisplayPanelType(JNIEnv* /*env*/, jobject /*thiz*/) {
    sp<DisplayV1_0> display = mmi::ServiceOr(g_hwDisplay, "%s: GetDisplayPanelType by hidl fail, g_hwDisplay is null");
    if (display == nullptr) return -1;
    DISPLAY_RET ret = STATUS_NOT_WRITTEN;
    PANEL_TYPE panelType = PANEL_TYPE_NOT_WRITTEN;
    Finish(display->getDisplayPanelType([&ret, &panelType](DISPLAY_RET status, PANEL_TYPE type) {
        ret = status;
        panelType = type;
    }));
    MMI_LOGI("%s: GetDisplayPanelType by hidl, result: %d, panelType: %d", kLogPrefix, Number(ret),
             static_cast<int32_t>(panelType));
    return static_cast<jint>(panelType);
}

jint SetDisplaySelfAdaptMinFps(JNIEnv* /*env*/, jobject /*thiz*/, jint dataInt) {
    sp<DisplayV1_4> hwDisplayNew =
            NewerDisplay<DisplayV1_4>("%s: SetDisplaySelfAdaptMinFps by hidl, g_hwDisplay is null",
                                      "%s: SetDisplaySelfAdaptMinFps by hidl fail, hwDisplayNew is null");
    if (hwDisplayNew == nullptr) return -1;
    const int32_t result = ValueOr(hwDisplayNew->setDisplaySelfAdaptMinFps(dataInt), RESULT_NOT_WRITTEN);
    MMI_LOGI("%s: SetDisplaySelfAdaptMinFps by hidl dataInt: %d, ret: %d", kLogPrefix, dataInt, result);
    return result;
}

}  // namespace native_hidl
