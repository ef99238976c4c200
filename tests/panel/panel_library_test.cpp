// Video interpolation through the simulated vendor library (found on LD_LIBRARY_PATH).
#include <jni.h>

#include <atomic>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "jvm.h"
#include "panel_test.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;

class PanelLibraryTest : public PanelTest {
protected:
    // After the library is closed every call fails at its lookup, without opening it again.
    void ExpectClosed() {
        Mark();
        EXPECT_EQ(SetMode(1, 60), -1);
        EXPECT_EQ(Modes(), "");
        EXPECT_EQ(CurrentMode(), -1);
        EXPECT_EQ(Recover(), -1);
        const std::string reason = ": library handle is null";
        EXPECT_EQ(LinesWithPriority(kError),
                  (std::vector<Line>{{kError, Prefixed("failed to dlsym setVideoInterpolationMode" + reason)},
                                     {kError, Prefixed("failed to dlsym getVideoInterpolationModel" + reason)},
                                     {kError, Prefixed("failed to dlsym GetCurrentMode" + reason)},
                                     {kError, "ZtMmiTest_jni:failed to dlsym CheckResult" + reason}}));
        EXPECT_FALSE(PanelLoaded());
    }
};

TEST_F(PanelLibraryTest, TheFirstCallOpensTheLibraryAndItsAnswersPassThroughUnchanged) {
    ASSERT_FALSE(PanelLoaded());
    const int first = CurrentMode();
    PanelControl control(true);  // libZtMmi_jni opened it by its name alone
    ASSERT_TRUE(control.open());
    EXPECT_EQ(control.calls("GetCurrentMode"), 1);
    EXPECT_EQ(Lines(), (std::vector<Line>{
                               {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                               {kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: " +
                                                std::to_string(first))},
                       }));
    control.setResults(-7, 3, -4);
    Mark();
    EXPECT_EQ(SetMode(2, 120), -7);
    EXPECT_EQ(control.lastMode(), std::make_pair(2, 120));
    EXPECT_EQ(CurrentMode(), 3);
    EXPECT_EQ(Recover(), -4);
    EXPECT_EQ(Lines(), (std::vector<Line>{
                               {kInfo, "SetVideoInterpolationModel, Hidl Called"},
                               {kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 2, freshRate: 120")},
                               {kInfo, Prefixed("setMode : 2, freshRate: 120")},
                               {kInfo, Prefixed("finish SetVideoInterpolationModel, return: -7")},
                               {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                               {kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: 3")},
                               {kInfo, "RecoverInperpolateFreshRate, Hidl Called"},
                               {kInfo, Prefixed("finish RecoverInperpolateFreshRate by hidl, return: -4")},
                       }));
    EXPECT_EQ(std::make_tuple(control.calls("setVideoInterpolationMode"), control.calls("GetCurrentMode"),
                              control.calls("RecoverFreshRate")),
              std::make_tuple(1, 2, 1));
}

// The mode list is the library's text, read to its end, when the length it reports is
// positive; otherwise, or without a text, it is empty and an ERROR line says why.
TEST_F(PanelLibraryTest, ModeListIsTheLibrarysTextWhenItsLengthIsPositive) {
    PanelControl control;
    ASSERT_TRUE(control.open());
    const struct {
        const char* text;
        int length;
        const char* modes;
        const char* error;
    } cases[] = {{"0:off;1:24to60;2:30to120", 24, "0:off;1:24to60;2:30to120", nullptr},
                 {"0:off;1:24to60", 1, "0:off;1:24to60", nullptr},
                 {"0:off", 0, "", "getModes error! length is 0, return empty string."},
                 {"0:off", -1, "", "getModes error! length is 0, return empty string."},
                 {nullptr, 5, "", "getModes error! text is null, return empty string."}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.length);
        control.setModes(c.text, c.length);
        Mark();
        EXPECT_EQ(Modes(), c.modes);
        std::vector<Line> expected = {{kInfo, "GetVideoInterpolationModel, Hidl Called"},
                                      {kInfo, Prefixed("start getModes by hidl")},
                                      {kInfo, Prefixed("getModes, length=" + std::to_string(c.length))}};
        if (c.error != nullptr) expected.push_back({kError, Prefixed(c.error)});
        EXPECT_EQ(Lines(), expected);
    }
    EXPECT_EQ(control.calls("getModes"), 5);
}

TEST_F(PanelLibraryTest, ShutdownClosesTheLibraryForGood) {
    // The library under test opens it first, so that the answers set here stay in place when
    // the test lets its own reference go.
    Recover();
    PanelControl(true).setResults(0, 0, 9);
    EXPECT_EQ(Recover(), 9);
    ASSERT_TRUE(PanelLoaded());

    CallOnUnload(Jvm::Get().vm());
    EXPECT_FALSE(PanelLoaded());  // its only user closed it, so the loader unmapped it
    ExpectClosed();
    // Connecting the services again does not reopen it either.
    ASSERT_EQ(CallOnLoad(Jvm::Get().vm()), 0x10004);
    ExpectClosed();
}

TEST_F(PanelLibraryTest, HidlServiceDeathClosesTheLibrary) {
    DeviceProfile profile = DeviceProfile::Bare();
    profile[Family::kDisplay].transport = Transport::kHidl;
    Boot(profile);
    EXPECT_NE(CurrentMode(), -1);
    ASSERT_TRUE(PanelLoaded());
    handset().Kill(Family::kDisplay);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("ExitMmiManager by hidl")));
    ASSERT_TRUE(NoticesDelivered());
    EXPECT_FALSE(PanelLoaded());
    ExpectClosed();
}

// Four attached threads make their first call at once: the library is opened once (one
// close undoes it: a second open would keep it mapped) and every call is answered.
TEST_F(PanelLibraryTest, RacingFirstCallsOpenTheLibraryOnce) {
    ASSERT_FALSE(PanelLoaded());
    jclass clazz = mEnv->GetObjectClass(mManager);
    jmethodID method = mEnv->GetMethodID(clazz, "getVideoInterpolationDefaultModelNative", "()I");
    mEnv->DeleteLocalRef(clazz);
    constexpr int kThreads = 4;
    std::vector<int> results(kThreads, -1);
    std::atomic<int> attached{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < kThreads; ++t) {
        workers.emplace_back([&, t] {
            JNIEnv* env = Jvm::Get().Env();
            for (++attached; attached < kThreads;) std::this_thread::yield();
            results[static_cast<size_t>(t)] = env->CallIntMethod(mManager, method);
            if (env->ExceptionCheck()) {  // a native method threw
                env->ExceptionClear();
                results[static_cast<size_t>(t)] = -2;
            }
            Jvm::Get().vm()->DetachCurrentThread();
        });
    }
    for (std::thread& worker : workers) worker.join();
    EXPECT_NE(results[0], -1);
    EXPECT_EQ(results, std::vector<int>(kThreads, results[0]));
    EXPECT_EQ(Count(kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: " +
                                    std::to_string(results[0]))),
              kThreads);
    CallOnUnload(Jvm::Get().vm());
    EXPECT_FALSE(PanelLoaded());
}

}  // namespace
}  // namespace mmitest
