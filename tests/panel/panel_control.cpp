#include "panel_control.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <utility>

namespace mmitest {
namespace {

constexpr const char* kPanelLibrary = "libpixelworksMMITest.so";

template <typename Function>
Function Entry(void* handle, const char* name) {
    auto entry = reinterpret_cast<Function>(dlsym(handle, name));
    if (entry == nullptr) ADD_FAILURE() << "the simulated panel library has no " << name;
    return entry;
}

}  // namespace

std::unique_ptr<PanelControl> PanelControl::Open() { return Wrap(dlopen(kPanelLibrary, RTLD_NOW)); }

std::unique_ptr<PanelControl> PanelControl::IfLoaded() {
    return Wrap(dlopen(kPanelLibrary, RTLD_NOW | RTLD_NOLOAD));
}

bool PanelControl::IsLoaded() { return IfLoaded() != nullptr; }

std::unique_ptr<PanelControl> PanelControl::Wrap(void* handle) {
    if (handle == nullptr) return nullptr;
    std::unique_ptr<PanelControl> control(new PanelControl(handle));
    const bool complete = control->mReset != nullptr && control->mSetModes != nullptr &&
                          control->mSetResults != nullptr && control->mCalls != nullptr &&
                          control->mLastMode != nullptr;
    return complete ? std::move(control) : nullptr;
}

PanelControl::PanelControl(void* handle)
    : mHandle(handle),
      mReset(Entry<decltype(mReset)>(handle, "PanelSimReset")),
      mSetModes(Entry<decltype(mSetModes)>(handle, "PanelSimSetModes")),
      mSetResults(Entry<decltype(mSetResults)>(handle, "PanelSimSetResults")),
      mCalls(Entry<decltype(mCalls)>(handle, "PanelSimCalls")),
      mLastMode(Entry<decltype(mLastMode)>(handle, "PanelSimLastMode")) {}

PanelControl::~PanelControl() { dlclose(mHandle); }

std::pair<int, int> PanelControl::lastMode() const {
    std::pair<int, int> last{-1, -1};
    mLastMode(&last.first, &last.second);
    return last;
}

}  // namespace mmitest
