// The simulated display processor's vendor library. Built twice: the current library, and
// an older one (PANEL_SIM_OLDER_LIBRARY) that lacks getModes and RecoverFreshRate.
#include <sim/panel_sim.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace {

struct Answers {
    bool nullModes = false;
    std::string modes = "0:off;1:24to60;2:30to120";
    int modesLength = static_cast<int>(modes.size());
    int setModeResult = 0;
    int currentMode = 1;
    int recoverResult = 0;
};

// The calls kept as text: a long run calls the library millions of times.
constexpr size_t kCallLogSize = 1024;

struct State {
    std::mutex lock;
    Answers answers;
    std::map<std::string, int> calls;
    std::deque<std::string> callLog;  // the newest kCallLogSize calls as text, in order
    int lastMode = -1;
    int lastFreshRate = -1;
};

void LogCall(State& state, std::string call) {
    if (state.callLog.size() == kCallLogSize) state.callLog.pop_front();
    state.callLog.push_back(std::move(call));
}

State& TheState() {
    static State* state = new State();  // never destroyed: callers may outlive static teardown
    return *state;
}

}  // namespace

int setVideoInterpolationMode(int mode, int freshRate) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["setVideoInterpolationMode"];
    LogCall(state, "setVideoInterpolationMode(" + std::to_string(mode) + ", " + std::to_string(freshRate) + ")");
    state.lastMode = mode;
    state.lastFreshRate = freshRate;
    return state.answers.setModeResult;
}

#ifndef PANEL_SIM_OLDER_LIBRARY
const char* getModes(int* length) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["getModes"];
    LogCall(state, "getModes()");
    if (length != nullptr) *length = state.answers.modesLength;
    return state.answers.nullModes ? nullptr : state.answers.modes.c_str();
}
#endif

int GetCurrentMode() {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["GetCurrentMode"];
    LogCall(state, "GetCurrentMode()");
    return state.answers.currentMode;
}

#ifndef PANEL_SIM_OLDER_LIBRARY
int RecoverFreshRate() {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    ++state.calls["RecoverFreshRate"];
    LogCall(state, "RecoverFreshRate()");
    return state.answers.recoverResult;
}
#endif

void PanelSimReset(void) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    state.answers = Answers();
    state.calls.clear();
    state.callLog.clear();
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

int PanelSimCallCount(void) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    return static_cast<int>(state.callLog.size());
}

int PanelSimCallText(int index, char* buffer, int size) {
    State& state = TheState();
    std::lock_guard<std::mutex> lock(state.lock);
    if (index < 0 || static_cast<size_t>(index) >= state.callLog.size()) return -1;
    const std::string& text = state.callLog[static_cast<size_t>(index)];
    if (buffer != nullptr && size > 0) {
        const size_t copied = std::min(text.size(), static_cast<size_t>(size) - 1);
        std::memcpy(buffer, text.data(), copied);
        buffer[copied] = '\0';
    }
    return static_cast<int>(text.size());
}
