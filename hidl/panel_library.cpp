// Video interpolation through the display processor's vendor library, loaded on first use
// and called by symbol name.
//
// The library is opened with every symbol bound at once and kept open; a failed open is
// tried again by the next call. The HIDL shutdown closes it and forgets the handle but
// leaves the loaded flag set, so later calls fail at the symbol lookup instead of opening
// the library again.
//
// An operation holds the library lock shared from reading the handle until the vendor
// call has returned, and opening and closing hold it exclusively: the shutdown (which runs
// on the HIDL death thread too) can never unmap the library under a running call, and two
// first calls cannot open it twice.
#include <dlfcn.h>
#include <mmi_log.h>

#include <atomic>
#include <mutex>
#include <shared_mutex>

#include "hidl_handles.h"
#include "java_helpers.h"
#include "mmi_hidl_manager.h"

using mmi::kLogPrefix;

namespace native_hidl {
namespace {

constexpr const char* kPanelLibrary = "libpixelworksMMITest.so";

std::atomic<bool> g_panelLoaded{false};
std::shared_mutex g_panelLock;
void* g_panelHandle = nullptr;  // guarded by g_panelLock

// The loader's text for the last failure on this thread.
const char* LoaderError() {
    const char* error = dlerror();
    return error != nullptr ? error : "unknown loader error";
}

// The vendor library for the length of one operation.
class PanelLibrary {
public:
    // Opens the library unless it was loaded before, and keeps it from being closed while
    // this object lives. False (after logging) when it cannot be opened.
    bool load() {
        if (!g_panelLoaded.load()) {
            std::unique_lock<std::shared_mutex> exclusive(g_panelLock);
            if (!g_panelLoaded.load()) {
                void* opened = dlopen(kPanelLibrary, RTLD_NOW);
                g_panelHandle = opened;
                if (opened == nullptr) {
                    MMI_LOGE("%s: failed to load libpixelworksMMITest.so: %s", kLogPrefix, LoaderError());
                    return false;
                }
                g_panelLoaded.store(true);
            }
        }
        mUse.lock();
        mHandle = g_panelHandle;
        return true;
    }

    // An entry point, or null with the reason in *error. A closed library has none (and
    // the null handle must not reach dlsym, where it would search the whole process).
    template <typename Function>
    Function find(const char* symbol, const char** error) const {
        if (mHandle == nullptr) {
            *error = "library handle is null";
            return nullptr;
        }
        dlerror();
        auto entry = reinterpret_cast<Function>(dlsym(mHandle, symbol));
        if (entry == nullptr) *error = LoaderError();
        return entry;
    }

private:
    std::shared_lock<std::shared_mutex> mUse{g_panelLock, std::defer_lock};
    void* mHandle = nullptr;
};

}  // namespace

void ClosePanelLibrary() {
    std::unique_lock<std::shared_mutex> exclusive(g_panelLock);
    if (g_panelHandle != nullptr) {
        dlclose(g_panelHandle);
        g_panelHandle = nullptr;
    }
}

jint SetVideoInterpolationModel(JNIEnv* /*env*/, jobject /*thiz*/, jint mode, jint freshRate) {
    MMI_LOGI("%s: start SetVideoInterpolationModel by hidl, mode: %d, freshRate: %d", kLogPrefix, mode, freshRate);
    PanelLibrary library;
    if (!library.load()) return -1;
    const char* error = nullptr;
    auto setMode = library.find<int (*)(int, int)>("setVideoInterpolationMode", &error);
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
    PanelLibrary library;
    if (!library.load()) return mmi::NewJavaString(env, "");
    const char* error = nullptr;
    auto getModes = library.find<const char* (*)(int*)>("getModes", &error);
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
    if (modes == nullptr) {
        MMI_LOGE("%s: getModes error! text is null, return empty string.", kLogPrefix);
        return mmi::NewJavaString(env, "");
    }
    // The text is the library's: copied into the Java string, never freed here.
    return mmi::NewJavaString(env, modes);
}

jint GetVideoInterpolationDefaultModel(JNIEnv* /*env*/, jobject /*thiz*/) {
    PanelLibrary library;
    if (!library.load()) return -1;
    const char* error = nullptr;
    auto getCurrentMode = library.find<int (*)()>("GetCurrentMode", &error);
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
    PanelLibrary library;
    if (!library.load()) return -1;
    const char* error = nullptr;
    auto recover = library.find<int (*)()>("RecoverFreshRate", &error);
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
