// The simulated vendor library as a test reaches it: by dlopen of the same soname, so the
// test scripts and reads the very copy that libZtMmi_jni loaded through the loader's path.
#pragma once

#include <sim/panel_sim.h>

#include <memory>
#include <utility>
#include <string>

namespace mmitest {

class PanelControl {
public:
    // The library opened by the test (the loader finds it on LD_LIBRARY_PATH); null when
    // it cannot be found or lacks a control (a failure is reported then).
    static std::unique_ptr<PanelControl> Open();
    // The library only if it is loaded in the process already (RTLD_NOLOAD); null otherwise.
    static std::unique_ptr<PanelControl> IfLoaded();
    // Whether the library is mapped in the process at this moment.
    static bool IsLoaded();

    ~PanelControl();
    PanelControl(const PanelControl&) = delete;
    PanelControl& operator=(const PanelControl&) = delete;

    void reset() const { mReset(); }
    void setModes(const char* text, int length) const { mSetModes(text, length); }
    void setResults(int setModeResult, int currentMode, int recoverResult) const {
        mSetResults(setModeResult, currentMode, recoverResult);
    }
    int calls(const std::string& entryPoint) const { return mCalls(entryPoint.c_str()); }
    std::pair<int, int> lastMode() const;

private:
    explicit PanelControl(void* handle);
    static std::unique_ptr<PanelControl> Wrap(void* handle);

    void* mHandle;
    decltype(&PanelSimReset) mReset = nullptr;
    decltype(&PanelSimSetModes) mSetModes = nullptr;
    decltype(&PanelSimSetResults) mSetResults = nullptr;
    decltype(&PanelSimCalls) mCalls = nullptr;
    decltype(&PanelSimLastMode) mLastMode = nullptr;
};

}  // namespace mmitest
