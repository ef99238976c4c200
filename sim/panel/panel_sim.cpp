// The simulated display processor's vendor library. Built twice: the current library, and
// an older one (PANEL_SIM_OLDER_LIBRARY) that lacks getModes and RecoverFreshRate.
#include <sim/panel_sim.h>

#include <map>
#include <mutex>
#include <string>

namespace {

struct Answers {
    bool nullModes = false;
    std::string modes = "0:off;1:24to60;2:30to120";
    int modesLength = static_cast<int>(modes.size());
    int setModeResult = 0;
    int currentMode = 1;
    int recoverResult = 0;
};

struct State {
    std::mutex lock;
    Answers answers;
    std::map<std::string, int> calls;
    int lastMode = -1;
    int lastFreshRate = -1;
};

State& TheState() {
    static State* state = new State();  // never destroyed: callers may outlive static teardown
    return *state;
}

}  // namespace

int setVideoInterpolationMode(int mode, int freshRate) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["setVideoInterpolationMode"];
    state.lastMode = mode;
    state.lastFreshRate = freshRate;
    return state.answers.setModeResult;
}

#ifndef PANEL_SIM_OLDER_LIBRARY
const char* getModes(int* length) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["getModes"];
    if (length != nullptr) *length = state.answers.modesLength;
    return state.answers.nullModes ? nullptr : state.answers.modes.c_str();
}
#endif

int GetCurrentMode() {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["GetCurrentMode"];
    return state.answers.currentMode;
}

#ifndef PANEL_SIM_OLDER_LIBRARY
int RecoverFreshRate() {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["RecoverFreshRate"];
    return state.answers.recoverResult;
}
#endif

void PanelSimReset(void) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    state.answers = Answers();
    state.calls.clear();
    state.lastMode = -1;
    state.lastFreshRate = -1;
}

void PanelSimSetModes(const char* text, int length) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    state.answers.nullModes = text == nullptr;
    state.answers.modes = text != nullptr ? text : "";
    state.answers.modesLength = length;
}

void PanelSimSetResults(int setModeResult, int currentMode, int recoverResult) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    state.answers.setModeResult = setModeResult;
    state.answers.currentMode = currentMode;
    state.answers.recoverResult = recoverResult;
}

int PanelSimCalls(const char* entryPoint) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    auto it = state.calls.find(entryPoint != nullptr ? entryPoint : "");
    return it == state.calls.end() ? 0 : it->second;
}

void PanelSimLastMode(int* mode, int* freshRate) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    if (mode != nullptr) *mode = state.lastMode;
    if (freshRate != nullptr) *freshRate = state.lastFreshRate;
}
