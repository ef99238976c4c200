// Display behaviour beyond the method table's: the display parameter's status, the backlight
// steered by the display family, and video interpolation on a handset without the display
// processor's library (this executable has none on its loader's path; tests/panel has it).
#include "jvm.h"
#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;

class DisplayTest : public BackendTest {};

// Any status but 0 answers -1; both backends write the same line.
TEST_P(DisplayTest, ParameterStatusFoldsIntoZeroOrMinusOne) {
    BootBackend();
    for (int status : {5, 1, -3}) {
        handset().display().update([status](mmisim::DisplayAnswers& a) { a.displayParameter = {status, "panel busy"}; });
        Mark();
        EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 9, -1, J("")), -1) << status;
        EXPECT_TRUE(Has(kInfo, Prefixed("SetDisplayParameter scence: 9, dataInt: -1, dataString: , ret: " +
                                        std::to_string(status) + ", result info: panel busy")));
    }
}

MMI_ON_BOTH_BACKENDS(DisplayTest);

// Without an AIDL display the backlight is the HIDL light service's light 1, even when the
// light family itself is served over AIDL.
class DisplayFamilyTest : public MmiTest {};

TEST_F(DisplayFamilyTest, BacklightIsSteeredByTheDisplayFamily) {
    DeviceProfile profile = DeviceProfile::AllHidl();
    profile[Family::kLight].transport = mmisim::Transport::kAidl;
    Boot(profile);
    EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 200), -1);
    EXPECT_EQ(Lines(), (std::vector<Line>{{kInfo, "IsDisplayAidlVersion"},
                                          {kInfo, "SetBackLightBrightness, Hidl Called"},
                                          {kError, Prefixed("SetLightBrightness by hidl fail, g_hwLight is null")}}));
    EXPECT_TRUE(handset().light().calls().empty());
}

// Every call fails with the loader's reason and tries the load again, also after a shutdown
// of a library that never opened.
TEST_F(DisplayFamilyTest, WithoutTheLibraryInterpolationFailsAndTriesTheLoadAgain) {
    Boot(DeviceProfile::Bare());
    const std::string failure = Prefixed("failed to load libpixelworksMMITest.so: libpixelworksMMITest.so: cannot open");
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        Mark();
        EXPECT_EQ(Int("setVideoInterpolationModelNative", "(II)I", 2, 120), -1);
        EXPECT_EQ(Str("getVideoInterpolationModelNative", "()Ljava/lang/String;"), "");
        EXPECT_EQ(Int("getVideoInterpolationDefaultModelNative", "()I"), -1);
        EXPECT_EQ(Int("recoverInperpolateFreshRateNative", "()I"), -1);
        std::vector<Line> lines = Lines();
        ASSERT_EQ(lines.size(), 10u);
        for (size_t i : {2, 5, 7, 9}) {
            EXPECT_EQ(lines[i].message.rfind(failure, 0), 0u) << lines[i];
            lines[i].message = "<load failure>";
        }
        EXPECT_EQ(lines, (std::vector<Line>{
                                 {kInfo, "SetVideoInterpolationModel, Hidl Called"},
                                 {kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 2, freshRate: 120")},
                                 {kError, "<load failure>"},
                                 {kInfo, "GetVideoInterpolationModel, Hidl Called"},
                                 {kInfo, Prefixed("start getModes by hidl")},
                                 {kError, "<load failure>"},
                                 {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                                 {kError, "<load failure>"},
                                 {kInfo, "RecoverInperpolateFreshRate, Hidl Called"},
                                 {kError, "<load failure>"}}));
        CallOnUnload(Jvm::Get().vm());
        ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    }
}

}  // namespace
}  // namespace mmitest
