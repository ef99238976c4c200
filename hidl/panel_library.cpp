// Video interpolation through the display processor's vendor library, loaded on first use
// and called by symbol name.
//
// The library is opened with every symbol bound at once and kept open; the HIDL shutdown
// closes it and forgets the handle but leaves the loaded flag set, so later calls fail at
// the symbol lookup instead of opening the library again.
#include <dlfcn.h>
#include <mmi_log.h>

#include <atomic>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {
namespace {

constexpr const char* kPanelLibrary = "libpixelworksMMITest.so";

std::atomic<bool> g_panelLoaded{false};
std::atomic<void*> g_panelHandle{nullptr};

const char* LoaderError() {
    const char* error = dlerror();
    return error != nullptr ? error : "unknown loader error";
}

// The library handle, opening the library when it has not been loaded yet. False after
// logging when it cannot be opened; the next call tries again.
bool LoadPanelLibrary(void** handle) {
    if (g_panelLoaded.load()) {
        *handle = g_panelHandle.load();
        return true;
    }
    void* opened = dlopen(kPanelLibrary, RTLD_NOW);
    g_panelHandle.store(opened);
    if (opened == nullptr) {
        MMI_LOGE("%s: failed to load %s: %s", kLogPrefix, kPanelLibrary, LoaderError());
        return false;
    }
    g_panelLoaded.store(true);
    *handle = opened;
    return true;
}

// An entry point of the library, or null with the reason in *error. A closed library has
// no entry points.
template <typename Function>
Function FindEntry(void* handle, const char* symbol, const char** error) {
    if (handle == nullptr) {
        *error = "library is closed";
        return nullptr;
    }
    dlerror();
    auto entry = reinterpret_cast<Function>(dlsym(handle, symbol));
    if (entry == nullptr) *error = LoaderError();
    return entry;
}

}  // namespace

void ClosePanelLibrary() {
    void* handle = g_panelHandle.exchange(nullptr);
    if (handle != nullptr) dlclose(handle);
}

jint SetVideoInterpolationModel(JNIEnv* /*env*/, jobject /*thiz*/, jint mode, jint freshRate) {
    MMI_LOGI("%s: start SetVideoInterpolationModel by hidl, mode: %d, freshRate: %d", kLogPrefix, mode, freshRate);
    void* handle = nullptr;
    if (!LoadPanelLibrary(&handle)) return -1;
    const char* error = nullptr;
    auto setMode = FindEntry<int (*)(int, int)>(handle, "setVideoInterpolationMode", &error);
    int result = -1;
    if (setMode == nullptr) {
        MMI_LOGE("%s: failed to dlsym setVideoInterpolationMode: %s", kLogPrefix, error);
    } else {
        MMI_LOGI("%s: setMode : %d, freshRate: %d", kLogPrefix, mode, freshRate);
        result = setMode(mode, freshRate);
    }
    MMI_LOGI("%s: finish SetVideoInterpolationModel, return: %d", kLogPrefix, result);
    return result;
}

jstring GetVideoInterpolationModel(JNIEnv* env, jobject /*thiz*/) {
    MMI_LOGI("%s: start getModes by hidl", kLogPrefix);
    void* handle = nullptr;
    if (!LoadPanelLibrary(&handle)) return mmi::NewJavaString(env, "");
    const char* error = nullptr;
    auto getModes = FindEntry<const char* (*)(int*)>(handle, "getModes", &error);
    if (getModes == nullptr) {
        MMI_LOGE("%s: failed to dlsym getVideoInterpolationModel: %s", kLogPrefix, error);
        return mmi::NewJavaString(env, "");
    }
    int length = 0;
    const char* modes = getModes(&length);
    MMI_LOGI("%s: getModes, length=%d", kLogPrefix, length);
    if (length < 1) {
        MMI_LOGE("%s: getModes error! length is 0, return empty string.", kLogPrefix);
        return mmi::NewJavaString(env, "");
    }
    return mmi::NewJavaString(env, modes);
}

jint GetVideoInterpolationDefaultModel(JNIEnv* /*env*/, jobject /*thiz*/) {
    void* handle = nullptr;
    if (!LoadPanelLibrary(&handle)) return -1;
    const char* error = nullptr;
    auto getCurrentMode = FindEntry<int (*)()>(handle, "GetCurrentMode", &error);
    int result = -1;
    if (getCurrentMode == nullptr) {
        MMI_LOGE("%s: failed to dlsym GetCurrentMode: %s", kLogPrefix, error);
    } else {
        result = getCurrentMode();
    }
    MMI_LOGI("%s: finish GetVideoInterpolationDefaultModel by hidl, return: %d", kLogPrefix, result);
    return result;
}

jint RecoverInperpolateFreshRate(JNIEnv* /*env*/, jobject /*thiz*/) {
    void* handle = nullptr;
    if (!LoadPanelLibrary(&handle)) return -1;
    const char* error = nullptr;
    auto recover = FindEntry<int (*)()>(handle, "RecoverFreshRate", &error);
    int result = -1;
    if (recover == nullptr) {
        MMI_LOGE("%s:failed to dlsym CheckResult: %s", kLogPrefix, error);
    } else {
        result = recover();
    }
    MMI_LOGI("%s: finish RecoverInperpolateFreshRate by hidl, return: %d", kLogPrefix, result);
    return result;
}

}  // namespace native_hidl
