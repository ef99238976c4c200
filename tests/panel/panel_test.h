// Video interpolation through the vendor library: the test opens the simulated library by the
// same soname, so that it scripts and reads the very copy libZtMmi_jni loaded.
#pragma once

#include <dlfcn.h>
#include <sim/panel_sim.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {

constexpr const char* kPanelLibrary = "libpixelworksMMITest.so";

// Whether the library is mapped in the process at this moment.
inline bool PanelLoaded() {
    void* handle = dlopen(kPanelLibrary, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}

// The library's controls, held open while this object lives (with `ifLoaded`, only when the
// process has it loaded already).
class PanelControl {
    template <typename Function, typename... Args>
    auto Call(const char* name, Args... args) const {
        auto* entry = mHandle != nullptr ? reinterpret_cast<Function*>(dlsym(mHandle, name)) : nullptr;
        if (entry == nullptr) {
            ADD_FAILURE() << "the simulated panel library is not open or has no " << name;
            return decltype(entry(args...))();
        }
        return entry(args...);
    }

    void* mHandle;

public:
    explicit PanelControl(bool ifLoaded = false)
        : mHandle(dlopen(kPanelLibrary, RTLD_NOW | (ifLoaded ? RTLD_NOLOAD : 0))) {}
    ~PanelControl() {
        if (mHandle != nullptr) dlclose(mHandle);
    }
    PanelControl(const PanelControl&) = delete;
    PanelControl& operator=(const PanelControl&) = delete;

    bool open() const { return mHandle != nullptr; }
    void setModes(const char* text, int length) const {
        Call<decltype(PanelSimSetModes)>("PanelSimSetModes", text, length);
    }
    void setResults(int setModeResult, int currentMode, int recoverResult) const {
        Call<decltype(PanelSimSetResults)>("PanelSimSetResults", setModeResult, currentMode, recoverResult);
    }
    int calls(const char* entryPoint) const { return Call<decltype(PanelSimCalls)>("PanelSimCalls", entryPoint); }
    std::pair<int, int> lastMode() const {
        std::pair<int, int> last{-1, -1};
        Call<decltype(PanelSimLastMode)>("PanelSimLastMode", &last.first, &last.second);
        return last;
    }
};

class PanelTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        Boot(mmisim::DeviceProfile::Bare());
    }
    int SetMode(int mode, int freshRate) { return Int("setVideoInterpolationModelNative", "(II)I", mode, freshRate); }
    std::optional<std::string> Modes() { return Str("getVideoInterpolationModelNative", "()Ljava/lang/String;"); }
    int CurrentMode() { return Int("getVideoInterpolationDefaultModelNative", "()I"); }
    int Recover() { return Int("recoverInperpolateFreshRateNative", "()I"); }
};

// The lines with the loader's reason cut from the symbol-failure lines (the reason is the
// loader's text), so that a whole sequence can be compared.
inline std::vector<Line> WithoutLoaderReasons(std::vector<Line> lines) {
    for (Line& line : lines) {
        const size_t dlsym = line.message.find("failed to dlsym ");
        const size_t reason = dlsym == std::string::npos ? dlsym : line.message.find(": ", dlsym);
        if (line.priority == kError && reason != std::string::npos) line.message.resize(reason + 1);
    }
    return lines;
}

}  // namespace mmitest
