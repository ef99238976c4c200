// The touch, power, light, vibrator, fingerprint and camera operations of the AIDL backend
// called directly with no service connected: the dispatcher routes a call there only while
// the handle is set, so these lines are seen when the handle is cleared between the
// dispatcher's choice and the operation (a service death at that moment).
#include <aidl/mmi_aidl_manager.h>

#include <functional>
#include <string>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

class DeviceBackendTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        handset().Configure(mmisim::DeviceProfile::Bare());
    }
    std::string Text(jstring text) {
        if (text == nullptr) return "<null>";
        const char* chars = mEnv->GetStringUTFChars(text, nullptr);
        std::string copy(chars);
        mEnv->ReleaseStringUTFChars(text, chars);
        return copy;
    }
    // Runs one operation, which must answer `expected` and write only the error line of its
    // missing handle (before looking at any argument: the Java texts here are null).
    void Expect(const std::function<std::string()>& call, const std::string& expected, const std::string& operation,
                const std::string& handle) {
        Mark();
        EXPECT_EQ(call(), expected) << operation;
        const std::string error = Prefixed(operation + " by aidl fail, " + handle + " is null");
        EXPECT_EQ(Lines(), (std::vector<Line>{{kError, error}}));
    }
};

TEST_F(DeviceBackendTest, AidlOperationsWithoutTheirHandle) {
    using namespace native_aidl;
    JNIEnv* env = mEnv;
    auto n = [](jint value) { return std::to_string(value); };
    const char* touch = "g_aidlTouchScreen";
    Expect([&] { return n(GetCapacitanceTestResult(env, nullptr, 0)); }, "-1", "GetCapacitanceTestResult", touch);
    Expect([&] { return Text(GetCapacitanceCalibrateResult(env, nullptr, 5)); }, "", "GetCapacitanceCalibrateResult",
           touch);
    Expect([&] { return n(SetTouchScreenFeatureConfig(env, nullptr, 3, nullptr)); }, "-1",
           "SetTouchScreenFeatureConfig", touch);
    Expect([&] { return Text(GetRotateCrownTestResult(env, nullptr)); }, "", "GetRotateCrownTestResult", touch);

    Expect([&] { return n(SetPowerState(env, nullptr, nullptr, nullptr)); }, "-1", "SetPowerState", "g_aidlPower");
    Expect([&] { return Text(GetPowerState(env, nullptr, nullptr)); }, "", "GetPowerState", "g_aidlPower");
    Expect([&] { return n(CheckUsbSpeed(env, nullptr, nullptr)); }, "-1", "CheckUsbSpeed", "g_aidlPower");

    Expect([&] { return n(SetLightBrightness(env, nullptr, 1, 200)); }, "-1", "SetLightBrightness", "g_aidlLight");
    Expect([&] {
        SetVibratorPar(env, nullptr, nullptr);
        return std::string("(void)");
    },
           "(void)", "SetVibratorPar", "g_aidlVibrator");
    Expect([&] { return Text(GetVibratorResult(env, nullptr, nullptr)); }, "", "GetVibratorResult", "g_aidlVibrator");
    Expect([&] { return n(SendCmdToFingerprintHal(env, nullptr, 7)); }, "-1", "SendCmdToFingerprintHal",
           "g_aidlFingerprintSession");

    const char* vaelon = "g_aidlVaelon";
    Expect([&] { return GetCapabilities(env, nullptr) == nullptr ? "<null>" : "array"; }, "<null>", "GetCapabilities",
           vaelon);
    Expect([&] { return n(GetVaelonOvertime(env, nullptr, 1)); }, "-1", "GetVaelonOvertime", vaelon);
    Expect([&] { return n(RegisterClient(env, nullptr, 4)); }, "-1", "RegisterClient", vaelon);
    Expect([&] { return n(UnregisterClient(env, nullptr)); }, "-1", "UnregisterClient", vaelon);
}

}  // namespace
}  // namespace mmitest
