// A sensor service lost under a call that already chose it: the AIDL service dying between
// the dispatcher's choice and the operation's handle read (the operation finds no handle),
// and a service of either generation dead while the library still holds it (the call fails
// in transport and the operation answers with its presets, without aborting).
#include <hostcontrol/binder_control.h>
#include <hostcontrol/hidl_control.h>

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;

constexpr const char* kAidlDeathLine = "ServiceDied, remote hal service died";

class SensorServiceLossTest : public MmiTest {
protected:
    static std::string Render(jint value) { return std::to_string(value); }
    static std::string Render(bool value) { return value ? "true" : "false"; }
    static std::string Render(const std::optional<std::string>& text) { return text ? "\"" + *text + "\"" : "null"; }
    static std::string Render(const std::optional<std::vector<int>>& values) {
        if (!values) return "null";
        std::string text = "int[" + std::to_string(values->size()) + "]";
        for (int value : *values) {
            if (value != 0) return text + " with non-zero values";
        }
        return text;
    }

    // Calls the operation's native method with fixed arguments (sensor 1; command, main
    // command or type 2; sub command 3; length 4; switch on at rate 10).
    std::string Call(const std::string& operation) {
        if (operation == "StartSensorCalibrate") return Render(Int("startSensorCalibrateNative", "(II)I", 1, 2));
        if (operation == "StartSensorSelfTest") return Render(Int("startSensorSelfTestNative", "(II)I", 1, 2));
        if (operation == "GetSensorCalibrateDelayTime") return Render(Int("getSensorCalibrateDelayTimeNative", "(I)I", 1));
        if (operation == "GetSensorSelfTestDelayTime") return Render(Int("getSensorSelfTestDelayTimeNative", "(I)I", 1));
        if (operation == "GetSensorCalibrateResult") return Render(Int("getSensorCalibrateResultNative", "(I)I", 1));
        if (operation == "GetSensorSelfTestResult") return Render(Int("getSensorSelfTestResultNative", "(I)I", 1));
        if (operation == "GetSensorCalibrateType") {
            return Render(Str("getSensorCalibrateTypeNative", "(I)Ljava/lang/String;", 1));
        }
        if (operation == "GetCompassRawValueLimit") return Render(Int("getCompassRawValueLimitNative", "()I"));
        if (operation == "SensorActivate") return Render(Bool("sensorActivateNative", "(IZI)Z", 2, JNI_TRUE, 10));
        if (operation == "HandleSensorParameter") {
            return Render(Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", 1, 2, 3, 4));
        }
        if (operation == "GetAmbientLightParameter") {
            return Render(Ints("getAmbientLightParameterNative", "(IIII)[I", 1, 2, 3, 4));
        }
        if (operation == "SetAmbientLightParameter") return Render(Int("setAmbientLightParameterNative", "(IIII)I", 1, 2, 3, 4));
        if (operation == "GetColorSensorValues") return Render(Ints("getColorSensorNative", "(I)[I", 1));
        ADD_FAILURE() << "no call for " << operation;
        return "";
    }

    // Runs `call` with the AIDL sensor service dying right after the dispatcher chose AIDL
    // for `operation` and before the operation reads its handle. The service is back and
    // reconnected on return.
    void WithAidlSensorsDroppedAfterChoice(const std::string& operation, const std::function<void()>& call) {
        const std::string choice = operation + ", Aidl Called";
        auto fired = std::make_shared<std::atomic<bool>>(false);
        auto dropped = std::make_shared<std::atomic<bool>>(false);
        log().setObserver([choice, fired, dropped](const mmisim::LogEntry& entry) {
            if (entry.message != choice || fired->exchange(true)) return;
            mmisim::LogCapture& capture = mmisim::LogCapture::Install();
            const size_t mark = capture.mark();
            mmisim::Handset::Get().Kill(Family::kSensors);
            // Every AIDL handle is cleared before the recovery starts connecting again (and
            // waits there for the sensor service).
            dropped->store(capture.waitForMessage(mark, kError, "RestartAidl", kNoticeTimeout));
        });
        call();
        log().setObserver({});
        EXPECT_TRUE(fired->load()) << operation << " did not choose AIDL";
        EXPECT_TRUE(dropped->load()) << "the AIDL handles were not dropped under " << operation;
        const size_t mark = log().mark();
        handset().Start(Family::kSensors);
        EXPECT_TRUE(log().waitForMessage(mark, kInfo, Prefixed("g_aidlSensors init success"), kNoticeTimeout));
        EXPECT_TRUE(NoticesDelivered());
    }

    // Kills the sensor services and runs `calls` while their death notices wait, so the
    // library still holds services whose calls fail. Then lets the notices through and
    // brings the services back.
    void WithSensorsDeadUnderCalls(bool aidl, const std::function<void()>& calls) {
        // The death notices wait until the calls are made.
        aidl ? hostcontrol::HoldBinderNotices() : hostcontrol::HoldHidlNotices();
        handset().sensors().clearCalls();
        handset().Kill(Family::kSensors);
        calls();
        EXPECT_TRUE(handset().sensors().calls().empty()) << "a dead service answered";
        const size_t deathMark = log().mark();
        aidl ? hostcontrol::ReleaseBinderNotices() : hostcontrol::ReleaseHidlNotices();
        const std::string deathLine = aidl ? kAidlDeathLine : Prefixed("ProcessServiceDied, cookie is:");
        EXPECT_TRUE(log().waitFor(
                deathMark, [&](const mmisim::LogEntry& entry) { return entry.message.rfind(deathLine, 0) == 0; },
                kNoticeTimeout))
                << "no death notice came";
        if (aidl) {
            // The AIDL recovery waits for the sensor service to come back.
            const size_t mark = log().mark();
            handset().Start(Family::kSensors);
            EXPECT_TRUE(log().waitForMessage(mark, kInfo, Prefixed("g_aidlSensors init success"), kNoticeTimeout));
        } else {
            // The HIDL handles are dropped first; the services' registration notices
            // reconnect them.
            EXPECT_TRUE(NoticesDelivered());
            handset().Start(Family::kSensors);
        }
        EXPECT_TRUE(NoticesDelivered());
    }
};

TEST_F(SensorServiceLossTest, AidlServiceDroppedAfterTheChoiceGivesEachOperationsNullPath) {
    Boot(DeviceProfile::AllAidl());
    const std::string null = "g_aidlSensors is null";
    // Operation, fallback answer, end of its ERROR line after "<operation> by aidl fail, ".
    const std::vector<std::array<std::string, 3>> outcomes = {
            {"StartSensorCalibrate", "-1", null},        {"StartSensorSelfTest", "-1", null},
            {"GetSensorCalibrateDelayTime", "-1", null}, {"GetSensorSelfTestDelayTime", "-1", null},
            {"GetSensorCalibrateResult", "-1", null},    {"GetSensorSelfTestResult", "-1", null},
            {"GetSensorCalibrateType", "\"\"", "g_aidlSensors are null"},
            {"GetCompassRawValueLimit", "-1", null},     {"SensorActivate", "false", null},
            {"HandleSensorParameter", "\"\"", null},      {"GetAmbientLightParameter", "null", ""},
            {"SetAmbientLightParameter", "-1", null},    {"GetColorSensorValues", "int[0]", null + "."}};
    for (const auto& [operation, fallback, failure] : outcomes) {
        handset().sensors().clearCalls();
        Mark();
        std::string answer;
        WithAidlSensorsDroppedAfterChoice(operation, [&, op = operation] { answer = Call(op); });
        EXPECT_EQ(answer, fallback) << operation;
        EXPECT_EQ(Count(kError, Prefixed(operation + " by aidl fail, " + failure)), 1) << operation;
        EXPECT_TRUE(handset().sensors().calls().empty()) << operation << " reached the service";
        // The ambient-light operations write their length line before looking at the handle.
        if (operation.find("AmbientLight") != std::string::npos) {
            EXPECT_TRUE(Has(kInfo, Prefixed(operation + " by aidl, length: 4"))) << operation;
        }
    }
}

// Every operation with the answer it gives when its service call fails in transport: the
// presets (the AIDL ambient-light read returns the buffer it offered).
std::vector<std::pair<std::string, std::string>> PresetAnswers(bool aidl) {
    return {{"StartSensorCalibrate", "-1"},        {"StartSensorSelfTest", "-1"},
            {"GetSensorCalibrateDelayTime", "-1"}, {"GetSensorSelfTestDelayTime", "-1"},
            {"GetSensorCalibrateResult", "-1"},    {"GetSensorSelfTestResult", "-1"},
            {"GetSensorCalibrateType", "\"\""},     {"GetCompassRawValueLimit", "-1"},
            {"SensorActivate", "false"},           {"HandleSensorParameter", "\"\""},
            {"GetAmbientLightParameter", aidl ? "int[4096]" : "int[0]"},
            {"SetAmbientLightParameter", "-1"},    {"GetColorSensorValues", "int[0]"}};
}

TEST_F(SensorServiceLossTest, AidlServiceDeadUnderTheCallsAnswersWithThePresets) {
    Boot(DeviceProfile::AllAidl());
    WithSensorsDeadUnderCalls(true, [&] {
        for (const auto& [operation, answer] : PresetAnswers(true)) EXPECT_EQ(Call(operation), answer) << operation;
        EXPECT_TRUE(Has(kInfo, Prefixed("StartSensorCalibrate by aidl, g_aidlSensors sensorId: 1, command: 2, result: -1")));
    });
}

TEST_F(SensorServiceLossTest, HidlServicesDeadUnderTheCallsAnswerWithThePresets) {
    DeviceProfile secondOnly = DeviceProfile::AllHidl();
    secondOnly[Family::kSensors].sensorsV1 = false;
    for (const DeviceProfile& profile : {DeviceProfile::AllHidl(), secondOnly}) {
        Boot(profile);
        WithSensorsDeadUnderCalls(false, [&] {
            for (const auto& [operation, answer] : PresetAnswers(false)) EXPECT_EQ(Call(operation), answer) << operation;
            const std::string handle = profile[Family::kSensors].sensorsV1 ? "g_hwSensors" : "g_zentelSensors";
            EXPECT_TRUE(Has(kInfo, Prefixed("GetSensorCalibrateResult by hidl, " + handle + " sensorId: 1, result: -1\n")));
            // A dead first generation cannot be cast to a newer version: the second is asked.
            EXPECT_TRUE(Has(kInfo, "SetAmbientLightParameter by hidl, use g_zentelSensors"));
        });
    }
}

}  // namespace
}  // namespace mmitest
