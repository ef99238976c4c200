// Video interpolation on a handset without the display processor's vendor library: this
// executable runs without the simulated library on the loader's path. (The tests with the
// library are in tests/panel.)
#include <string>
#include <vector>

#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;

const std::string kLoadFailure = Prefixed("failed to load libpixelworksMMITest.so: ");

bool IsLoadFailure(const Line& line) {
    return line.priority == kError && line.message.rfind(kLoadFailure, 0) == 0;
}

class InterpolationWithoutLibraryTest : public MmiTest {};

TEST_F(InterpolationWithoutLibraryTest, EveryCallFailsAndTriesTheLoadAgain) {
    Boot(DeviceProfile::AllHidl());
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        Mark();
        EXPECT_EQ(Int("setVideoInterpolationModelNative", "(II)I", 2, 120), -1);
        EXPECT_EQ(Str("getVideoInterpolationModelNative", "()Ljava/lang/String;"), "");
        EXPECT_EQ(Int("getVideoInterpolationDefaultModelNative", "()I"), -1);
        EXPECT_EQ(Int("recoverInperpolateFreshRateNative", "()I"), -1);

        // Each call writes its choice line, its start line where it has one, and the load
        // failure with the loader's reason; nothing after that.
        const std::vector<Line> lines = Lines();
        ASSERT_EQ(lines.size(), 10u);
        EXPECT_EQ(lines[0], (Line{kInfo, "SetVideoInterpolationModel, Hidl Called"}));
        EXPECT_EQ(lines[1], (Line{kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 2, freshRate: 120")}));
        EXPECT_TRUE(IsLoadFailure(lines[2])) << lines[2];
        EXPECT_EQ(lines[3], (Line{kInfo, "GetVideoInterpolationModel, Hidl Called"}));
        EXPECT_EQ(lines[4], (Line{kInfo, Prefixed("start getModes by hidl")}));
        EXPECT_TRUE(IsLoadFailure(lines[5])) << lines[5];
        EXPECT_EQ(lines[6], (Line{kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"}));
        EXPECT_TRUE(IsLoadFailure(lines[7])) << lines[7];
        EXPECT_EQ(lines[8], (Line{kInfo, "RecoverInperpolateFreshRate, Hidl Called"}));
        EXPECT_TRUE(IsLoadFailure(lines[9])) << lines[9];
        // The reason is the loader's own text, naming the library.
        EXPECT_NE(lines[2].message.find("libpixelworksMMITest.so: cannot open shared object file"), std::string::npos)
                << lines[2];
    }
}

// The HIDL shutdown of a library that never opened leaves it loadable: the next call tries
// to open it again rather than failing at a symbol lookup.
TEST_F(InterpolationWithoutLibraryTest, ShutdownBeforeAnyOpenKeepsTryingTheLoad) {
    Boot(DeviceProfile::Bare());
    EXPECT_EQ(Int("recoverInperpolateFreshRateNative", "()I"), -1);
    CallOnUnload(Jvm::Get().vm());
    ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    Mark();
    EXPECT_EQ(Int("recoverInperpolateFreshRateNative", "()I"), -1);
    const std::vector<Line> errors = LinesWithPriority(kError);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_TRUE(IsLoadFailure(errors[0])) << errors[0];
}

}  // namespace
}  // namespace mmitest
