// Calls of the four video-interpolation methods and the shape of their log lines, shared by
// the executables that run with a vendor library on the loader's path.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {

class PanelTest : public MmiTest {
protected:
    int SetMode(int mode, int freshRate) { return Int("setVideoInterpolationModelNative", "(II)I", mode, freshRate); }
    std::optional<std::string> Modes() { return Str("getVideoInterpolationModelNative", "()Ljava/lang/String;"); }
    int CurrentMode() { return Int("getVideoInterpolationDefaultModelNative", "()I"); }
    int Recover() { return Int("recoverInperpolateFreshRateNative", "()I"); }
};

// The lines with the loader's reason cut from the symbol-failure lines (the reason is the
// loader's text), so that a whole sequence can be compared.
inline std::vector<Line> WithoutLoaderReasons(const std::vector<Line>& lines) {
    std::vector<Line> shaped;
    for (Line line : lines) {
        const size_t dlsym = line.message.find("failed to dlsym ");
        if (line.priority == kError && dlsym != std::string::npos) {
            const size_t reason = line.message.find(": ", dlsym);
            if (reason != std::string::npos) line.message.resize(reason + 1);
        }
        shaped.push_back(line);
    }
    return shaped;
}

}  // namespace mmitest
