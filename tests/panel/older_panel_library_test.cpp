// An older build of the simulated vendor library, without getModes and RecoverFreshRate.
#include <string>
#include <vector>

#include "panel_test.h"

namespace mmitest {
namespace {

using OlderPanelLibraryTest = PanelTest;

TEST_F(OlderPanelLibraryTest, MissingEntryPointsFailAtTheirLookupWhileTheOthersWork) {
    PanelControl control;
    ASSERT_TRUE(control.open());
    control.setResults(6, 2, 0);

    EXPECT_EQ(Modes(), "");
    EXPECT_EQ(Recover(), -1);
    EXPECT_EQ(SetMode(1, 90), 6);
    EXPECT_EQ(CurrentMode(), 2);
    EXPECT_EQ(WithoutLoaderReasons(Lines()),
              (std::vector<Line>{
                      {kInfo, "GetVideoInterpolationModel, Hidl Called"},
                      {kInfo, Prefixed("start getModes by hidl")},
                      {kError, Prefixed("failed to dlsym getVideoInterpolationModel:")},
                      {kInfo, "RecoverInperpolateFreshRate, Hidl Called"},
                      {kError, "ZtMmiTest_jni:failed to dlsym CheckResult:"},
                      {kInfo, Prefixed("finish RecoverInperpolateFreshRate by hidl, return: -1")},
                      {kInfo, "SetVideoInterpolationModel, Hidl Called"},
                      {kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 1, freshRate: 90")},
                      {kInfo, Prefixed("setMode : 1, freshRate: 90")},
                      {kInfo, Prefixed("finish SetVideoInterpolationModel, return: 6")},
                      {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                      {kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: 2")},
              }));
    // The reasons are the loader's, naming the missing symbol.
    const std::vector<Line> errors = LinesWithPriority(kError);
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_NE(errors[0].message.find("undefined symbol: getModes"), std::string::npos) << errors[0];
    EXPECT_NE(errors[1].message.find("undefined symbol: RecoverFreshRate"), std::string::npos) << errors[1];

    // A missing entry point is looked up again on every call, and never found.
    Mark();
    EXPECT_EQ(Modes(), "");
    EXPECT_EQ(Count(kError, errors[0].message), 1);
}

}  // namespace
}  // namespace mmitest
