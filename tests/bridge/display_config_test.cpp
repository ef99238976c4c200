// Display configuration, refresh rate, display parameters, backlight and panel type over
// both generations of the display service, including the HIDL minor versions and services
// that die under a call.
#include <jni.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::Call;
using mmisim::DeviceProfile;
using mmisim::DisplayAnswers;
using mmisim::Family;
using mmisim::LightAnswers;
using mmisim::LogEntry;
using mmisim::Transport;

constexpr const char* kText = "()Ljava/lang/String;";

struct Backend {
    Transport transport;
    const char* name;  // "aidl" or "hidl", as the log lines and the fakes say it
};

const Backend kAidl{Transport::kAidl, "aidl"};
const Backend kHidl{Transport::kHidl, "hidl"};

DeviceProfile DisplayOver(Transport transport, int hidlMinor = -1) {
    DeviceProfile profile = DeviceProfile::Bare();
    profile[Family::kDisplay].transport = transport;
    profile[Family::kDisplay].hidlMinor = hidlMinor;
    return profile;
}

std::vector<std::string> Methods(const std::vector<Call>& calls) {
    std::vector<std::string> methods;
    for (const Call& call : calls) methods.push_back(call.method);
    return methods;
}

bool StartsWith(const std::string& text, const std::string& start) { return text.rfind(start, 0) == 0; }

// The display service dies under one call. When the calling thread logs `trigger` (the
// dispatcher's choice line, written after the backend was chosen and before the handle is
// read) the service is killed, and then either
// - kHandleCleared: the trigger waits until the death has cleared the handles, so the
//   chosen backend finds none; or
// - kServiceDead: the death notice is held back until release(), so the backend reaches
//   the dead service through a handle that is still set.
class DeathUnderCall {
public:
    enum Mode { kHandleCleared, kServiceDead };

    DeathUnderCall(mmisim::Handset& handset, Mode mode, std::string trigger) : mState(std::make_shared<State>()) {
        mState->mark = mmisim::LogCapture::Install().mark();
        std::shared_ptr<State> state = mState;
        mmisim::LogCapture::Install().setObserver([state, &handset, mode, trigger](const LogEntry& entry) {
            if (entry.message == trigger && !state->killed.exchange(true)) {
                handset.Kill(Family::kDisplay);
                if (mode == kHandleCleared) {
                    // The AIDL death clears every handle before it starts reconnecting.
                    state->cleared = mmisim::LogCapture::Install().waitForMessage(state->mark, kError, "RestartAidl",
                                                                                  kNoticeTimeout);
                }
            } else if (mode == kServiceDead && IsDeathLine(entry.message)) {
                std::unique_lock<std::mutex> lock(state->lock);
                state->released.wait_for(lock, kNoticeTimeout, [&state] { return state->isReleased; });
            }
        });
    }

    ~DeathUnderCall() {
        release();
        mmisim::LogCapture::Install().setObserver({});
    }

    // Lets the held death notice go on.
    void release() {
        std::lock_guard<std::mutex> lock(mState->lock);
        mState->isReleased = true;
        mState->released.notify_all();
    }

    bool killed() const { return mState->killed; }
    bool cleared() const { return mState->cleared; }

private:
    static bool IsDeathLine(const std::string& message) {
        return message == "ServiceDied, remote hal service died" ||
               StartsWith(message, Prefixed("ProcessServiceDied"));
    }

    struct State {
        size_t mark = 0;
        std::atomic<bool> killed{false};
        std::atomic<bool> cleared{false};
        std::mutex lock;
        std::condition_variable released;
        bool isReleased = false;
    };
    std::shared_ptr<State> mState;
};

class DisplayTest : public MmiTest, public ::testing::WithParamInterface<Backend> {
protected:
    void BootDisplay() { Boot(DisplayOver(GetParam().transport)); }
    std::string By(const std::string& operation) const { return operation + " by " + GetParam().name; }
    std::string Choice(const std::string& dispatcher) const {
        return dispatcher + (GetParam().transport == Transport::kAidl ? ", Aidl Called" : ", Hidl Called");
    }
    void ExpectAllCallsFrom(const std::string& origin) {
        for (const Call& call : handset().display().calls()) EXPECT_EQ(call.origin, origin) << call.method;
    }
};

TEST_P(DisplayTest, FrameRateAsksForTheCurrentRateAndReturnsTheTextWhateverTheStatus) {
    BootDisplay();
    handset().display().update([](DisplayAnswers& a) { a.screenCurrentFps = {3, "90"}; });
    EXPECT_EQ(Str("getScreenCurrentFpsNative", kText), "90");
    EXPECT_TRUE(Has(kInfo, Choice("GetScreenCurrentFps")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetScreenCurrentFps") + ", ret: 3, screenConfig: 90")));
    const std::vector<Call> calls = handset().display().callsTo("getScreenCurrentFps");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].args, std::vector<std::string>{"0"});

    // A failed status with no text gives the empty text, never null.
    handset().display().update([](DisplayAnswers& a) { a.screenCurrentFps = {1, ""}; });
    EXPECT_EQ(Str("getScreenCurrentFpsNative", kText), "");
    ExpectAllCallsFrom(GetParam().name);
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(DisplayTest, ConfigurationOfAStation) {
    BootDisplay();
    handset().display().update([](DisplayAnswers& a) {
        a.selectStationResult = 1;  // HIDL: the configuration answer's status replaces it
        a.screenConfig = {0, "1080x2400@120"};
    });
    EXPECT_EQ(Str("getScreenConfigNative", "(I)Ljava/lang/String;", 7), "1080x2400@120");
    EXPECT_TRUE(Has(kInfo, Choice("GetScreenConfig")));
    EXPECT_TRUE(Has(kInfo, Prefixed(By("GetScreenConfig") + ", station: 7, ret: 0, screenConfig: 1080x2400@120")));
    const std::vector<Call> calls = handset().display().calls();
    if (GetParam().transport == Transport::kAidl) {
        ASSERT_EQ(Methods(calls), std::vector<std::string>{"getScreenConfig"});
        EXPECT_EQ(calls[0].args, std::vector<std::string>{"7"});
    } else {
        // Two calls: the station first, then the configuration of the selected station.
        ASSERT_EQ(Methods(calls), (std::vector<std::string>{"selectScreenConfigStation", "getScreenConfig"}));
        EXPECT_EQ(calls[0].args, std::vector<std::string>{"7"});
        EXPECT_TRUE(calls[1].args.empty());
    }
    ExpectAllCallsFrom(GetParam().name);
}

TEST_P(DisplayTest, DisplayParameterStatusFoldsIntoZeroOrMinusOne) {
    BootDisplay();
    handset().display().update([](DisplayAnswers& a) { a.displayParameter = {0, "applied"}; });
    EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 4, 255, J("dc_dimming=on")), 0);
    EXPECT_TRUE(Has(kInfo, Choice("SetDisplayParameter")));
    // Both backends write the same parameter line.
    EXPECT_TRUE(Has(kInfo, Prefixed("SetDisplayParameter scence: 4, dataInt: 255, dataString: dc_dimming=on, ret: 0, "
                                    "result info: applied")));

    for (int status : {5, 1, -3}) {
        handset().display().update([status](DisplayAnswers& a) { a.displayParameter = {status, "panel busy"}; });
        Mark();
        EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 9, -1, J("")), -1) << status;
        EXPECT_TRUE(Has(kInfo, Prefixed("SetDisplayParameter scence: 9, dataInt: -1, dataString: , ret: " +
                                        std::to_string(status) + ", result info: panel busy")))
                << status;
    }
    const std::vector<Call> calls = handset().display().callsTo("setDisplayParameter");
    ASSERT_EQ(calls.size(), 4u);
    EXPECT_EQ(calls[0].args, (std::vector<std::string>{"4", "255", "dc_dimming=on"}));
    EXPECT_EQ(calls[3].args, (std::vector<std::string>{"9", "-1", ""}));
    ExpectAllCallsFrom(GetParam().name);
    EXPECT_TRUE(LinesWithPriority(kError).empty());
}

TEST_P(DisplayTest, NullParameterTextIsReportedAndNeverSent) {
    BootDisplay();
    EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 4, 255, static_cast<jstring>(nullptr)), -1);
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("SetDisplayParameter by " + std::string(GetParam().name) +
                                                   " fail, dataString is null")}}));
    EXPECT_TRUE(handset().display().calls().empty());
}

TEST_P(DisplayTest, IntegerResultsPassThroughUnchanged) {
    BootDisplay();
    handset().display().update([](DisplayAnswers& a) {
        a.selfAdaptMinFpsResult = -9;
        a.panelTypeRet = 1;
        a.panelType = 1;
    });
    EXPECT_EQ(Int("setDisplaySelfAdaptMinFpsNative", "(I)I", 24), -9);
    EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), 1);
    ASSERT_EQ(handset().display().callsTo("setDisplaySelfAdaptMinFps").size(), 1u);
    EXPECT_EQ(handset().display().callsTo("setDisplaySelfAdaptMinFps")[0].args, std::vector<std::string>{"24"});
    EXPECT_TRUE(Has(kInfo, Choice("SetDisplaySelfAdaptMinFps")));
    EXPECT_TRUE(Has(kInfo, Choice("GetDisplayPanelType")));
    if (GetParam().transport == Transport::kAidl) {
        EXPECT_TRUE(Has(kInfo, Prefixed("SetDisplaySelfAdaptMinFps dataInt: 24, ret: -9")));
        EXPECT_TRUE(Has(kInfo, Prefixed("GetDisplayPanelType by aidl, result: 1")));
    } else {
        EXPECT_TRUE(Has(kInfo, Prefixed("SetDisplaySelfAdaptMinFps by hidl dataInt: 24, ret: -9")));
        // The status, then the panel type.
        EXPECT_TRUE(Has(kInfo, Prefixed("GetDisplayPanelType by hidl, result: 1, panelType: 1")));
    }
    ExpectAllCallsFrom(GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Backends, DisplayTest, ::testing::Values(kAidl, kHidl),
                         [](const ::testing::TestParamInfo<Backend>& info) { return std::string(info.param.name); });

class AidlDisplayTest : public MmiTest {};

TEST_F(AidlDisplayTest, BacklightIsTheDisplayServicesOwn) {
    DeviceProfile profile = DisplayOver(Transport::kAidl);
    profile[Family::kLight].transport = Transport::kHidl;
    Boot(profile);
    handset().display().update([](DisplayAnswers& a) { a.backLightResult = 17; });
    EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 200), 17);
    EXPECT_TRUE(Has(kInfo, "SetBackLightBrightness, Aidl Called"));
    EXPECT_TRUE(Has(kInfo, Prefixed("SetBackLightBrightness by aidl, brightness: 200, ret: 17")));
    ASSERT_EQ(handset().display().callsTo("setBackLightBrightness").size(), 1u);
    EXPECT_EQ(handset().display().callsTo("setBackLightBrightness")[0].args, std::vector<std::string>{"200"});
    EXPECT_TRUE(handset().light().calls().empty());
}

// Without a handle at the moment the AIDL backend reads it (the service died after the
// dispatcher chose AIDL), every operation writes its own line and falls back.
TEST_F(AidlDisplayTest, HandleClearedUnderTheCallGivesEachFallback) {
    struct Case {
        std::string dispatcher;
        std::function<void()> call;
        std::string error;
    };
    Boot(DisplayOver(Transport::kAidl));
    const std::vector<Case> cases = {
            {"GetScreenCurrentFps",
             [this] { EXPECT_EQ(Str("getScreenCurrentFpsNative", kText), ""); },
             "GetScreenCurrentFps by aidl fail, g_aidlDisplay is null"},
            {"GetScreenConfig",
             [this] { EXPECT_EQ(Str("getScreenConfigNative", "(I)Ljava/lang/String;", 1), ""); },
             "GetScreenConfig by aidl fail, g_aidlDisplay is null"},
            {"SetDisplayParameter",
             [this] {
                 EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 1, 2, J("x")), -1);
             },
             "SetDisplayParameter, g_aidlDisplay is null"},
            {"SetBackLightBrightness",
             [this] { EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 100), -1); },
             "SetBackLightBrightness by aidl fail, g_aidlDisplay is null"},
            {"GetDisplayPanelType", [this] { EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), -1); },
             "GetDisplayPanelType by aidl fail, g_aidlDisplay is null"},
            {"SetDisplaySelfAdaptMinFps",
             [this] { EXPECT_EQ(Int("setDisplaySelfAdaptMinFpsNative", "(I)I", 30), -1); },
             "SetDisplaySelfAdaptMinFps, g_aidlDisplay is null"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.dispatcher);
        Mark();
        {
            DeathUnderCall death(handset(), DeathUnderCall::kHandleCleared, c.dispatcher + ", Aidl Called");
            c.call();
            ASSERT_TRUE(death.killed());
            ASSERT_TRUE(death.cleared());
        }
        // The AIDL backend was chosen and found no handle.
        EXPECT_TRUE(Has(kInfo, c.dispatcher + ", Aidl Called"));
        EXPECT_EQ(Count(kError, Prefixed(c.error)), 1);
        handset().Start(Family::kDisplay);
        ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlDisplay init success")));
        ASSERT_TRUE(NoticesDelivered());
    }
    EXPECT_TRUE(handset().display().calls().empty());
}

// A call that fails in transport leaves the out-values as preset: the fresh record's status
// 0 (so the parameter call reports success), -2 for the integer results, -1 for the panel
// type.
TEST_F(AidlDisplayTest, CallFailingInTransportAnswersWithThePresets) {
    struct Case {
        std::string dispatcher;
        std::function<void()> call;
        std::string resultLine;
    };
    Boot(DisplayOver(Transport::kAidl));
    handset().display().update([](DisplayAnswers& a) {
        a.screenCurrentFps = {4, "120"};
        a.displayParameter = {5, "busy"};
        a.backLightResult = 3;
        a.panelType = 2;
        a.selfAdaptMinFpsResult = 6;
    });
    const std::vector<Case> cases = {
            {"GetScreenCurrentFps", [this] { EXPECT_EQ(Str("getScreenCurrentFpsNative", kText), ""); },
             "GetScreenCurrentFps by aidl, ret: 0, screenConfig: "},
            {"SetDisplayParameter",
             [this] { EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 1, 2, J("x")), 0); },
             "SetDisplayParameter scence: 1, dataInt: 2, dataString: x, ret: 0, result info: "},
            {"SetBackLightBrightness", [this] { EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 100), -2); },
             "SetBackLightBrightness by aidl, brightness: 100, ret: -2"},
            {"GetDisplayPanelType", [this] { EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), -1); },
             "GetDisplayPanelType by aidl, result: -1"},
            {"SetDisplaySelfAdaptMinFps",
             [this] { EXPECT_EQ(Int("setDisplaySelfAdaptMinFpsNative", "(I)I", 30), -2); },
             "SetDisplaySelfAdaptMinFps dataInt: 30, ret: -2"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.dispatcher);
        Mark();
        {
            DeathUnderCall death(handset(), DeathUnderCall::kServiceDead, c.dispatcher + ", Aidl Called");
            c.call();
            ASSERT_TRUE(death.killed());
        }
        EXPECT_TRUE(Has(kInfo, Prefixed(c.resultLine)));
        // The operation wrote no error of its own (the recovery writes some).
        for (const Line& line : LinesWithPriority(kError)) {
            EXPECT_EQ(line.message.rfind(Prefixed(c.dispatcher), 0), std::string::npos) << line.message;
        }
        handset().Start(Family::kDisplay);
        ASSERT_TRUE(WaitFor(kInfo, Prefixed("g_aidlDisplay init success")));
        ASSERT_TRUE(NoticesDelivered());
    }
    // The dead service took none of the calls.
    EXPECT_TRUE(handset().display().calls().empty());
}

class HidlDisplayTest : public MmiTest {};

// Which operations a service of each minor version serves: 1.0 the panel type only, 1.1
// adds the frame rate and the configuration, 1.4 the self-adaptive minimum, 1.5 the display
// parameters. A missing version fails with the operation's hwDisplayNew line and the
// service is not called.
TEST_F(HidlDisplayTest, EachOperationNeedsItsMinorVersion) {
    struct Operation {
        int minor;  // the oldest version that has it
        std::string method;  // the service method it ends in
        std::function<bool()> served;
        std::string missingLine;
    };
    const std::vector<Operation> operations = {
            {0, "getDisplayPanelType", [this] { return Int("nativeGetDisplayPanelType", "()I") == 2; }, ""},
            {1, "getScreenCurrentFps", [this] { return Str("getScreenCurrentFpsNative", kText) == "60"; },
             "GetScreenCurrentFps by hidl fail, hwDisplayNew is null, not support multi fps"},
            {1, "getScreenConfig",
             [this] { return Str("getScreenConfigNative", "(I)Ljava/lang/String;", 0) == "1080x2400@60"; },
             "GetScreenConfig by hidl fail, hwDisplayNew is null, not support multi fps"},
            {4, "setDisplaySelfAdaptMinFps",
             [this] { return Int("setDisplaySelfAdaptMinFpsNative", "(I)I", 30) == 11; },
             "SetDisplaySelfAdaptMinFps by hidl fail, hwDisplayNew is null"},
            {5, "setDisplayParameter",
             [this] { return Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 1, 2, J("x")) == 0; },
             "SetDisplayParameter by hidl fail, hwDisplayNew is null"},
    };
    for (int minor : {0, 1, 3, 4, 5}) {
        Boot(DisplayOver(Transport::kHidl, minor));
        handset().display().update([](DisplayAnswers& a) {
            a.panelType = 2;
            a.screenCurrentFps = {0, "60"};
            a.screenConfig = {0, "1080x2400@60"};
            a.selfAdaptMinFpsResult = 11;
            a.displayParameter = {0, "ok"};
        });
        for (const Operation& op : operations) {
            SCOPED_TRACE("display " + std::to_string(minor) + ", " + op.method);
            Mark();
            handset().display().clearCalls();
            const bool served = op.served();
            if (minor >= op.minor) {
                EXPECT_TRUE(served);
                EXPECT_EQ(handset().display().callsTo(op.method).size(), 1u);
                EXPECT_TRUE(LinesWithPriority(kError).empty());
            } else {
                EXPECT_FALSE(served);
                EXPECT_TRUE(handset().display().calls().empty());
                EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, Prefixed(op.missingLine)}}));
            }
        }
    }
}

TEST_F(HidlDisplayTest, PanelTypeWithoutAnAnswerIsThePresetZero) {
    Boot(DisplayOver(Transport::kHidl));
    handset().display().update([](DisplayAnswers& a) { a.panelType = 2; });
    {
        DeathUnderCall death(handset(), DeathUnderCall::kServiceDead, "GetDisplayPanelType, Hidl Called");
        EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), 0);
        ASSERT_TRUE(death.killed());
    }
    EXPECT_TRUE(Has(kInfo, Prefixed("GetDisplayPanelType by hidl, result: -2, panelType: 0")));
    EXPECT_TRUE(handset().display().calls().empty());
    // The death then disconnects the family until the service registers anew.
    ASSERT_TRUE(NoticesDelivered());
    Mark();
    EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), -1);
    EXPECT_TRUE(Has(kError, Prefixed("GetDisplayPanelType by hidl fail, g_hwDisplay is null")));
}

TEST_F(HidlDisplayTest, WithoutTheServiceEveryOperationFallsBackWithOneError) {
    Boot(DeviceProfile::Bare());
    struct Case {
        std::function<void()> call;
        std::string error;
    };
    const std::vector<Case> cases = {
            {[this] { EXPECT_EQ(Str("getScreenCurrentFpsNative", kText), ""); },
             "GetScreenCurrentFps by hidl fail, g_hwDisplay is null"},
            {[this] { EXPECT_EQ(Str("getScreenConfigNative", "(I)Ljava/lang/String;", 1), ""); },
             "GetScreenConfig by hidl fail, g_hwDisplay is null"},
            {[this] { EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 1, 2, J("x")), -1); },
             "SetDisplayParameter by hidl, g_hwDisplay is null"},
            // The handle is checked before the text.
            {[this] {
                 EXPECT_EQ(Int("setDisplayParameterNative", "(IILjava/lang/String;)I", 1, 2,
                               static_cast<jstring>(nullptr)),
                           -1);
             },
             "SetDisplayParameter by hidl, g_hwDisplay is null"},
            {[this] { EXPECT_EQ(Int("nativeGetDisplayPanelType", "()I"), -1); },
             "GetDisplayPanelType by hidl fail, g_hwDisplay is null"},
            {[this] { EXPECT_EQ(Int("setDisplaySelfAdaptMinFpsNative", "(I)I", 30), -1); },
             "SetDisplaySelfAdaptMinFps by hidl, g_hwDisplay is null"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.error);
        Mark();
        c.call();
        EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, Prefixed(c.error)}}));
    }
}

class BacklightTest : public MmiTest {};

// Without an AIDL display the backlight is light 1 of the HIDL light service; no display
// line is written, the light family's are.
TEST_F(BacklightTest, HidlDisplayReachesLightOneOfTheHidlLightService) {
    DeviceProfile profile = DisplayOver(Transport::kHidl);
    profile[Family::kLight].transport = Transport::kHidl;
    Boot(profile);
    handset().light().update([](LightAnswers& a) { a.brightnessResult = 33; });
    EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 200), 33);
    const std::vector<Call> calls = handset().light().callsTo("setLightBrightness");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].origin, "hidl");
    EXPECT_EQ(calls[0].args, (std::vector<std::string>{"1", "200"}));
    EXPECT_TRUE(Has(kInfo, "SetBackLightBrightness, Hidl Called"));
    EXPECT_TRUE(Has(kInfo, Prefixed("SetLightBrightness by hidl, Id: 1, brightness: 200, result: 33")));
    EXPECT_TRUE(handset().display().calls().empty());
    for (const Line& line : Lines()) EXPECT_EQ(line.message.find("SetBackLightBrightness by"), std::string::npos);
}

// The display family steers the backlight: with the light family served over AIDL the call
// still goes to the HIDL light operation, which has no handle then.
TEST_F(BacklightTest, SteeredByTheDisplayFamilyNotTheLightFamily) {
    DeviceProfile profile = DisplayOver(Transport::kHidl);
    profile[Family::kLight].transport = Transport::kAidl;
    Boot(profile);
    EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 200), -1);
    EXPECT_TRUE(Has(kInfo, "IsDisplayAidlVersion"));
    EXPECT_FALSE(Has(kInfo, "IsLightAidlVersion"));
    EXPECT_TRUE(Has(kInfo, "SetBackLightBrightness, Hidl Called"));
    EXPECT_EQ(LinesWithPriority(kError),
              (std::vector<Line>{{kError, Prefixed("SetLightBrightness by hidl fail, g_hwLight is null")}}));
    EXPECT_TRUE(handset().light().calls().empty());
}

}  // namespace
}  // namespace mmitest
