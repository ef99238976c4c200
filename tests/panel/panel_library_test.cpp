// Video interpolation through the simulated vendor library, which this executable finds on
// LD_LIBRARY_PATH as libpixelworksMMITest.so.
#include <jni.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "jvm.h"
#include "panel_control.h"
#include "panel_test_support.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::Transport;

class PanelLibraryTest : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        Boot(DeviceProfile::Bare());
    }

    // The answer every call gives after the library is closed, and the lines it writes.
    void ExpectClosed() {
        Mark();
        EXPECT_EQ(SetMode(1, 60), -1);
        EXPECT_EQ(Modes(), "");
        EXPECT_EQ(CurrentMode(), -1);
        EXPECT_EQ(Recover(), -1);
        EXPECT_EQ(WithoutLoaderReasons(Lines()),
                  (std::vector<Line>{
                          {kInfo, "SetVideoInterpolationModel, Hidl Called"},
                          {kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 1, freshRate: 60")},
                          {kError, Prefixed("failed to dlsym setVideoInterpolationMode:")},
                          {kInfo, Prefixed("finish SetVideoInterpolationModel, return: -1")},
                          {kInfo, "GetVideoInterpolationModel, Hidl Called"},
                          {kInfo, Prefixed("start getModes by hidl")},
                          {kError, Prefixed("failed to dlsym getVideoInterpolationModel:")},
                          {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                          {kError, Prefixed("failed to dlsym GetCurrentMode:")},
                          {kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: -1")},
                          {kInfo, "RecoverInperpolateFreshRate, Hidl Called"},
                          {kError, "ZtMmiTest_jni:failed to dlsym CheckResult:"},
                          {kInfo, Prefixed("finish RecoverInperpolateFreshRate by hidl, return: -1")},
                  }));
        // Not opened again.
        EXPECT_FALSE(PanelControl::IsLoaded());
    }

    // Calls the default-mode method once on each of `threads` attached threads, all
    // starting together.
    std::vector<int> CallFromThreads(int threads) {
        jclass clazz = mEnv->GetObjectClass(mManager);
        jmethodID method = mEnv->GetMethodID(clazz, "getVideoInterpolationDefaultModelNative", "()I");
        mEnv->DeleteLocalRef(clazz);
        std::vector<int> results(static_cast<size_t>(threads), -1);
        std::atomic<int> attached{0};
        std::atomic<bool> go{false};
        std::atomic<bool> threw{false};
        std::vector<std::thread> workers;
        for (int t = 0; t < threads; ++t) {
            workers.emplace_back([&, t] {
                JNIEnv* env = Jvm::Get().Env();
                ++attached;
                while (!go) std::this_thread::yield();
                results[static_cast<size_t>(t)] = env->CallIntMethod(mManager, method);
                if (env->ExceptionCheck()) {
                    env->ExceptionClear();
                    threw = true;
                }
                Jvm::Get().vm()->DetachCurrentThread();
            });
        }
        while (attached < threads) std::this_thread::yield();
        go = true;
        for (std::thread& worker : workers) worker.join();
        EXPECT_FALSE(threw) << "a native method threw a Java exception";
        return results;
    }
};

TEST_F(PanelLibraryTest, FirstCallFindsTheLibraryOnTheLoaderPath) {
    ASSERT_FALSE(PanelControl::IsLoaded());
    const int first = CurrentMode();
    // libZtMmi_jni opened it by its name alone.
    std::unique_ptr<PanelControl> control = PanelControl::IfLoaded();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->calls("GetCurrentMode"), 1);
    EXPECT_EQ(Lines(), (std::vector<Line>{
                               {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                               {kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: " +
                                                std::to_string(first))},
                       }));
    control->setResults(0, 5, 0);
    EXPECT_EQ(CurrentMode(), 5);
    EXPECT_EQ(control->calls("GetCurrentMode"), 2);
}

TEST_F(PanelLibraryTest, LibraryAnswersPassThroughUnchanged) {
    std::unique_ptr<PanelControl> control = PanelControl::Open();
    ASSERT_NE(control, nullptr);
    control->setResults(-7, 3, -4);

    EXPECT_EQ(SetMode(2, 120), -7);
    EXPECT_EQ(control->lastMode(), std::make_pair(2, 120));
    EXPECT_EQ(Lines(), (std::vector<Line>{
                               {kInfo, "SetVideoInterpolationModel, Hidl Called"},
                               {kInfo, Prefixed("start SetVideoInterpolationModel by hidl, mode: 2, freshRate: 120")},
                               {kInfo, Prefixed("setMode : 2, freshRate: 120")},
                               {kInfo, Prefixed("finish SetVideoInterpolationModel, return: -7")},
                       }));
    Mark();
    EXPECT_EQ(CurrentMode(), 3);
    EXPECT_EQ(Recover(), -4);
    EXPECT_EQ(Lines(), (std::vector<Line>{
                               {kInfo, "GetVideoInterpolationDefaultModel, Hidl Called"},
                               {kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: 3")},
                               {kInfo, "RecoverInperpolateFreshRate, Hidl Called"},
                               {kInfo, Prefixed("finish RecoverInperpolateFreshRate by hidl, return: -4")},
                       }));
    EXPECT_EQ(control->calls("setVideoInterpolationMode"), 1);
    EXPECT_EQ(control->calls("GetCurrentMode"), 1);
    EXPECT_EQ(control->calls("RecoverFreshRate"), 1);
}

TEST_F(PanelLibraryTest, ModeListIsTheLibrarysTextWhenItsLengthIsPositive) {
    std::unique_ptr<PanelControl> control = PanelControl::Open();
    ASSERT_NE(control, nullptr);
    control->setModes("0:off;1:24to60;2:30to120", 24);
    EXPECT_EQ(Modes(), "0:off;1:24to60;2:30to120");
    EXPECT_EQ(Lines(), (std::vector<Line>{
                               {kInfo, "GetVideoInterpolationModel, Hidl Called"},
                               {kInfo, Prefixed("start getModes by hidl")},
                               {kInfo, Prefixed("getModes, length=24")},
                       }));
    // The length only decides whether there is a list; the text is read to its end.
    control->setModes("0:off;1:24to60", 1);
    EXPECT_EQ(Modes(), "0:off;1:24to60");
    EXPECT_EQ(control->calls("getModes"), 2);
}

TEST_F(PanelLibraryTest, ModeListOfLengthZeroOrBelowIsEmpty) {
    std::unique_ptr<PanelControl> control = PanelControl::Open();
    ASSERT_NE(control, nullptr);
    for (int length : {0, -1}) {
        SCOPED_TRACE(length);
        // A text comes back, but the length says there is none.
        control->setModes("0:off", length);
        Mark();
        EXPECT_EQ(Modes(), "");
        EXPECT_TRUE(Has(kInfo, Prefixed("getModes, length=" + std::to_string(length))));
        EXPECT_EQ(LinesWithPriority(kError),
                  (std::vector<Line>{{kError, Prefixed("getModes error! length is 0, return empty string.")}}));
    }
    // A positive length without a text is an error of the library, not a crash.
    control->setModes(nullptr, 5);
    Mark();
    EXPECT_EQ(Modes(), "");
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("getModes error! text is null, return empty string.")}}));
    EXPECT_EQ(control->calls("getModes"), 3);
}

TEST_F(PanelLibraryTest, ShutdownClosesTheLibraryForGood) {
    // The library under test opens it first, so that the answers set here stay in place
    // when the test lets its own reference go.
    Recover();
    {
        std::unique_ptr<PanelControl> control = PanelControl::Open();
        ASSERT_NE(control, nullptr);
        control->setResults(0, 0, 9);
    }
    EXPECT_EQ(Recover(), 9);
    ASSERT_TRUE(PanelControl::IsLoaded());

    CallOnUnload(Jvm::Get().vm());
    // Its only user closed it, so the loader unmapped it.
    EXPECT_FALSE(PanelControl::IsLoaded());
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
    ASSERT_TRUE(PanelControl::IsLoaded());
    handset().Kill(Family::kDisplay);
    ASSERT_TRUE(WaitFor(kInfo, Prefixed("ExitMmiManager by hidl")));
    ASSERT_TRUE(NoticesDelivered());
    EXPECT_FALSE(PanelControl::IsLoaded());
    ExpectClosed();
}

TEST_F(PanelLibraryTest, RacingFirstCallsOpenTheLibraryOnce) {
    ASSERT_FALSE(PanelControl::IsLoaded());
    const std::vector<int> results = CallFromThreads(4);
    for (int result : results) {
        EXPECT_EQ(result, results[0]);
        EXPECT_NE(result, -1);
    }
    EXPECT_EQ(Count(kInfo, Prefixed("finish GetVideoInterpolationDefaultModel by hidl, return: " +
                                    std::to_string(results[0]))),
              4);
    // One close undoes every open: a second open would keep the library mapped.
    CallOnUnload(Jvm::Get().vm());
    EXPECT_FALSE(PanelControl::IsLoaded());
}

}  // namespace
}  // namespace mmitest
