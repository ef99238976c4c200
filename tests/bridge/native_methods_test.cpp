// The 61 native methods of the table in tests/harness, each called through the JVM: the
// dispatcher's choice, what the backend logs, what the services receive and the answer, on
// a handset of each backend, without any service, with the AIDL handle gone under the call,
// with calls failing in transport or HIDL callbacks never coming, and with null references.
#include <atomic>
#include <functional>
#include <memory>
#include <set>

#include "mmi_fixture.h"
#include "native_methods.h"

namespace mmitest {
namespace {

using mmisim::Family;

std::string PredicateOf(Family family) {
    if (family == Family::kFactory) return "isFactoryInterfaceAidlVersion";
    static const std::map<Family, std::string> kNames = {
            {Family::kDisplay, "Display"}, {Family::kTouchScreen, "TouchScreen"}, {Family::kFingerprint, "Fingerprint"},
            {Family::kSensors, "Sensor"},  {Family::kPower, "Power"},             {Family::kLight, "Light"},
            {Family::kVaelon, "Vaelon"},   {Family::kVibrator, "Vibrator"}};
    return "Is" + kNames.at(family) + "AidlVersion";
}

// The predicate's and the dispatcher's lines: the choice, or the dispatcher's own answer.
std::vector<std::string> DispatcherLines(const NativeMethod& m, bool aidl) {
    const std::string name = m.dispatcher;
    if (!m.family) return {name + ", Hidl Called"};
    const std::string predicate = PredicateOf(*m.family);
    if (aidl) return {predicate, predicate + ", true", name + ", Aidl Called"};
    if (m.family == Family::kVibrator) return {predicate, "!" + name + " fail, Aidl is null"};
    if (m.family == Family::kVaelon) return {predicate, name + ", no Hidl Called"};
    if (name == "GetFlickerFrequencyAndAmplitude") return {predicate, name + ", Aidl is null"};
    return {predicate, name + ", Hidl Called"};
}

std::vector<std::string> Joined(std::vector<std::string> lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

std::vector<std::string> Errors(const std::vector<std::string>& transcript) {
    std::vector<std::string> errors;
    for (const std::string& line : transcript) {
        if (line.front() == '!') errors.push_back(line);
    }
    return errors;
}

class NativeMethodsTest : public MmiTest {
protected:
    void BootScripted(const mmisim::DeviceProfile& profile) {
        Boot(profile);
        ScriptAnswers(handset(), profile);
        mCalls.emplace(mEnv, mManager);
    }

    // Calls the method; returns its answer, and in `transcript` the lines written ("!" before
    // an ERROR line) followed by the calls the services received ("> name(args)").
    std::string Run(size_t method, std::vector<std::string>& transcript, int nullReference = -1) {
        ClearCalls();
        Mark();
        const std::string answer = mCalls->Call(method, nullReference);
        transcript.clear();
        for (const Line& line : Lines()) transcript.push_back((line.priority == kError ? "!" : "") + line.message);
        mOrigins.clear();
        for (Family family : mmisim::kAllFamilies) {
            for (const mmisim::Call& call : handset().calls(family)) {
                std::string args;
                for (const std::string& arg : call.args) args += (args.empty() ? "" : ",") + arg;
                transcript.push_back("> " + call.method + "(" + args + ")");
                mOrigins.insert(call.origin);
            }
        }
        return answer;
    }

    // Every method with each of its Java references null in turn: the fallback, the one
    // ERROR line `nullLine` gives, and no service call.
    void ExpectNullReferencesRefused(const std::function<std::vector<std::string>(const NativeMethod&,
                                                                                  const std::string&)>& nullLine) {
        for (size_t i = 0; i < NativeMethods().size(); ++i) {
            const NativeMethod& m = NativeMethods()[i];
            for (size_t r = 0; r < m.references.size(); ++r) {
                SCOPED_TRACE(std::string(m.java) + ", " + m.references[r] + " null");
                std::vector<std::string> transcript;
                EXPECT_EQ(Run(i, transcript, static_cast<int>(r)), m.fallback);
                EXPECT_EQ(transcript, Joined(DispatcherLines(m, handset().profile()[*m.family].transport ==
                                                                        mmisim::Transport::kAidl),
                                             nullLine(m, m.references[r])));
            }
        }
    }

    std::optional<NativeCalls> mCalls;
    std::set<std::string> mOrigins;
};

class ServedMethodsTest : public NativeMethodsTest, public ::testing::WithParamInterface<mmisim::Transport> {
protected:
    bool Served(const NativeMethod& m) { return handset().profile()[*m.family].transport == GetParam(); }
};

TEST_P(ServedMethodsTest, EachMethodGivesItsServicesAnswer) {
    const bool aidl = GetParam() == mmisim::Transport::kAidl;
    BootScripted(EveryFamilyOver(GetParam()));
    for (size_t i = 0; i < NativeMethods().size(); ++i) {
        const NativeMethod& m = NativeMethods()[i];
        SCOPED_TRACE(m.java);
        std::vector<std::string> transcript;
        const std::string answer = Run(i, transcript);
        if (!m.family) {
            // No family is consulted; the display processor's library is not on this loader's path.
            EXPECT_EQ(answer, m.fallback);
            EXPECT_EQ(transcript.front(), DispatcherLines(m, false).front());
            continue;
        }
        if (!Served(m)) {
            EXPECT_EQ(answer, m.fallback);
            EXPECT_EQ(transcript, Joined(DispatcherLines(m, false), NoServiceLines(m)));
            continue;
        }
        EXPECT_EQ(answer, !aidl && m.hidlServed ? m.hidlServed : m.served);
        EXPECT_EQ(transcript, Joined(DispatcherLines(m, aidl), aidl ? m.aidlLines : m.hidlLines));
        for (const std::string& origin : mOrigins) EXPECT_EQ(origin, NameOf(GetParam()));
    }
}

// A failed transaction (or HIDL transport) leaves the operation's presets; a HIDL service
// that never calls its result callback leaves them too, unless the call's value answers.
TEST_P(ServedMethodsTest, FailedCallsAndMissingCallbacksLeaveThePresets) {
    const bool aidl = GetParam() == mmisim::Transport::kAidl;
    BootScripted(EveryFamilyOver(GetParam()));
    for (bool skip : {false, true}) {
        if (skip && aidl) break;
        mmisim::ServiceFaults faults;
        (skip ? faults.skipCallbacks : faults.failCalls) = true;
        for (Family family : mmisim::kAllFamilies) {
            if (handset().profile()[family].transport == GetParam()) handset().setFaults(family, faults);
        }
        for (size_t i = 0; i < NativeMethods().size(); ++i) {
            const NativeMethod& m = NativeMethods()[i];
            if (!m.family) continue;
            SCOPED_TRACE(std::string(m.java) + (skip ? ", callbacks skipped" : ", calls failing"));
            std::string expected = m.fallback;
            if (Served(m)) {
                expected = aidl ? m.aidlFailed : m.hidlFailed;
                if (skip && !m.callback) expected = m.hidlServed ? m.hidlServed : m.served;
            }
            EXPECT_EQ(mCalls->Call(i), expected);
        }
    }
}

TEST_P(ServedMethodsTest, NullReferencesGiveTheFallbackAndOneErrorLine) {
    BootScripted(EveryFamilyOver(GetParam()));
    const std::string by = std::string(" by ") + NameOf(GetParam()) + " fail, ";
    ExpectNullReferencesRefused([&](const NativeMethod& m, const std::string& reference) {
        if (!Served(m)) return NoServiceLines(m);
        return std::vector<std::string>{"!ZtMmiTest_jni: " + std::string(m.dispatcher) + by + reference + " is null"};
    });
}

MMI_ON_BOTH_BACKENDS(ServedMethodsTest);

TEST_F(NativeMethodsTest, WithoutServicesEachMethodFallsBack) {
    BootScripted(mmisim::DeviceProfile::Bare());
    for (size_t i = 0; i < NativeMethods().size(); ++i) {
        const NativeMethod& m = NativeMethods()[i];
        SCOPED_TRACE(m.java);
        std::vector<std::string> transcript;
        EXPECT_EQ(Run(i, transcript), m.fallback);
        if (m.family) {
            EXPECT_EQ(transcript, Joined(DispatcherLines(m, false), NoServiceLines(m)));
        }
    }
    // The service is looked at before the references, except by the NM-card mode.
    ExpectNullReferencesRefused([](const NativeMethod& m, const std::string& reference) {
        if (std::string(m.dispatcher) != "SetNmCardTestMode") return NoServiceLines(m);
        return std::vector<std::string>{"!SetNmCardTestMode by hidl fail, "_p + reference + " is null"};
    });
}

// With only the second HIDL sensors generation, it takes every request but the colour
// values', which only the first answers.
TEST_F(NativeMethodsTest, SecondSensorsGenerationAlone) {
    mmisim::DeviceProfile profile = mmisim::DeviceProfile::AllHidl();
    profile[Family::kSensors].sensorsV1 = false;
    BootScripted(profile);
    for (size_t i = 0; i < NativeMethods().size(); ++i) {
        const NativeMethod& m = NativeMethods()[i];
        if (m.family != Family::kSensors) continue;
        SCOPED_TRACE(m.java);
        std::vector<std::string> transcript;
        const std::string answer = Run(i, transcript);
        if (std::string(m.dispatcher) == "GetColorSensorValues") {
            EXPECT_EQ(answer, m.fallback);
            EXPECT_EQ(transcript, Joined(DispatcherLines(m, false), NoServiceLines(m)));
            continue;
        }
        std::vector<std::string> expected = DispatcherLines(m, false);
        for (std::string line : m.hidlLines) {
            for (const auto& [from, to] : {std::pair<std::string, std::string>{"g_hwSensors", "g_zentelSensors"},
                                           {"use sensorNewVer", "use g_zentelSensors"}}) {
                if (const size_t at = line.find(from); at != std::string::npos) line.replace(at, from.size(), to);
            }
            expected.push_back(line);
        }
        EXPECT_EQ(answer, m.hidlServed ? m.hidlServed : m.served);
        EXPECT_EQ(transcript, expected);
        for (const std::string& origin : mOrigins) EXPECT_EQ(origin, "hidl2");
    }
}

// Which HIDL sensors service takes the parameter requests and the colour values as the
// served versions vary ("-": none can, the fallback and the operation's line).
TEST_F(NativeMethodsTest, SensorsVersionsDecideWhoTakesTheParameterRequests) {
    struct Row {
        int firstMinor;  // newest 1.x minor version served, -1 for no 1.x service
        bool second;     // 2.0 service served
        const char* ambient;
        const char* handle;
        const char* colour;
    };
    const Row rows[] = {{2, false, "hidl", "hidl", "hidl"}, {1, true, "hidl2", "hidl", "hidl"},
                        {1, false, "-", "hidl", "hidl"},    {0, true, "hidl2", "hidl2", "hidl"},
                        {0, false, "-", "-", "hidl"},       {-1, true, "hidl2", "hidl2", "-"}};
    for (const Row& row : rows) {
        mmisim::DeviceProfile profile = mmisim::DeviceProfile::AllHidl();
        profile[Family::kSensors].sensorsV1 = row.firstMinor >= 0;
        profile[Family::kSensors].hidlMinor = std::max(row.firstMinor, 0);
        profile[Family::kSensors].sensorsV2 = row.second;
        BootScripted(profile);
        for (const auto& [java, origin] : {std::pair{"getAmbientLightParameterNative", row.ambient},
                                           {"setAmbientLightParameterNative", row.ambient},
                                           {"handleSensorParameterNative", row.handle},
                                           {"getColorSensorNative", row.colour}}) {
            SCOPED_TRACE(std::string(java) + " on 1." + std::to_string(row.firstMinor) + (row.second ? " and 2.0" : ""));
            const NativeMethod& m = MethodNamed(java);
            std::vector<std::string> transcript;
            const std::string answer = Run(static_cast<size_t>(&m - NativeMethods().data()), transcript);
            const bool served = std::string(origin) != "-";
            EXPECT_EQ(answer, served ? m.served : m.fallback);
            EXPECT_EQ(Errors(transcript), served ? std::vector<std::string>{} : Errors(NoServiceLines(m)));
            EXPECT_EQ(mOrigins, served ? std::set<std::string>{origin} : std::set<std::string>{});
        }
    }
}

// Operations that need a newer HIDL minor version than the service's fail with their own
// line and call nothing; the others are served (factory 1.0-1.1, display 1.0-1.5).
TEST_F(NativeMethodsTest, OlderHidlVersionsLackTheirOperations) {
    const std::map<std::string, std::string> kMissing = {
            {"GetManufactureMode", "!GetManufactureMode by hidl, hwFactoryNew is null"_p},
            {"ClearPackageName", "!ClearPackageName by hidl, hwFactoryNew is null, HwFactoryV11 not support!"},
            {"SetTestCycle", "!SetTestCycle by hidl fail, hwFactoryNew is null"_p},
            {"GetOeminfo", "!GetOeminfo by hidl fail, hwFactoryNew is null"_p},
            {"GetScreenCurrentFps", "!GetScreenCurrentFps by hidl fail, hwDisplayNew is null, not support multi fps"_p},
            {"GetScreenConfig", "!GetScreenConfig by hidl fail, hwDisplayNew is null, not support multi fps"_p},
            {"SetDisplaySelfAdaptMinFps", "!SetDisplaySelfAdaptMinFps by hidl fail, hwDisplayNew is null"_p},
            {"SetDisplayParameter", "!SetDisplayParameter by hidl fail, hwDisplayNew is null"_p}};
    for (int minor : {0, 1, 3, 4}) {
        mmisim::DeviceProfile profile = mmisim::DeviceProfile::AllHidl();
        profile[Family::kFactory].hidlMinor = std::min(minor, 1);
        profile[Family::kDisplay].hidlMinor = minor;
        BootScripted(profile);
        for (size_t i = 0; i < NativeMethods().size(); ++i) {
            const NativeMethod& m = NativeMethods()[i];
            if (m.family != Family::kFactory && m.family != Family::kDisplay) continue;
            SCOPED_TRACE(std::string(m.java) + " on minor version " + std::to_string(minor));
            std::vector<std::string> transcript;
            const std::string answer = Run(i, transcript);
            if (profile[*m.family].hidlMinor >= m.hidlMinor) {
                EXPECT_EQ(answer, m.hidlServed ? m.hidlServed : m.served);
                EXPECT_TRUE(Errors(transcript).empty());
            } else {
                EXPECT_EQ(answer, m.fallback);
                EXPECT_EQ(Errors(transcript), std::vector<std::string>{kMissing.at(m.dispatcher)});
                EXPECT_TRUE(handset().calls(*m.family).empty());
            }
        }
    }
}

// The AIDL service dies after the dispatcher chose AIDL and before the operation reads its
// handle: the operation finds none, writes its own line and answers its fallback.
TEST_F(NativeMethodsTest, AidlHandleGoneAfterTheChoice) {
    BootScripted(mmisim::DeviceProfile::AllAidl());
    for (size_t i = 0; i < NativeMethods().size(); ++i) {
        const NativeMethod& m = NativeMethods()[i];
        if (!m.family) continue;
        SCOPED_TRACE(m.java);
        auto cleared = std::make_shared<std::atomic<int>>(0);
        const std::string choice = std::string(m.dispatcher) + ", Aidl Called";
        const Family family = *m.family;
        log().setObserver([cleared, choice, family](const mmisim::LogEntry& entry) {
            if (entry.message != choice || *cleared != 0) return;
            mmisim::LogCapture& capture = mmisim::LogCapture::Install();
            const size_t mark = capture.mark();
            mmisim::Handset::Get().Kill(family);
            // Every AIDL handle is cleared before the recovery connects again.
            *cleared = capture.waitForMessage(mark, kError, "RestartAidl", kNoticeTimeout) ? 1 : 2;
        });
        std::vector<std::string> transcript;
        const std::string answer = Run(i, transcript);
        log().setObserver({});
        EXPECT_EQ(*cleared, 1) << "the handles were not cleared under the call";
        // The AIDL calibration answers an empty text where the HIDL one answers its failure text.
        EXPECT_EQ(answer, std::string(m.dispatcher) == "GetCapacitanceCalibrateResult" ? "" : m.fallback);
        std::vector<std::string> operationErrors;
        for (const std::string& line : Errors(transcript)) {
            if (line.find(m.dispatcher) != std::string::npos || line.find(" by aidl") != std::string::npos) {
                operationErrors.push_back(line);
            }
        }
        EXPECT_EQ(operationErrors, std::vector<std::string>{AidlNullLine(m)});
        EXPECT_TRUE(handset().calls(family).empty());
        const size_t mark = log().mark();
        handset().Start(family);
        ASSERT_TRUE(log().waitForMessage(mark, kInfo, "g_aidlVibrator init success"_p, kNoticeTimeout));
        ASSERT_TRUE(NoticesDelivered());
    }
}

}  // namespace
}  // namespace mmitest
