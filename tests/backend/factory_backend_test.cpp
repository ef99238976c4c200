// The factory operations of each backend called directly with no service connected: the
// dispatcher never routes a call to the AIDL backend while its handle is null, so these
// lines are only seen when the handle is cleared between the dispatcher's choice and the
// operation (a service death at that moment).
#include <aidl/mmi_aidl_manager.h>
#include <hidl/mmi_hidl_manager.h>

#include <functional>
#include <string>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

class FactoryBackendTest : public MmiTest {
protected:
    void SetUp() override {
        MmiTest::SetUp();
        handset().Configure(mmisim::DeviceProfile::Bare());
        Mark();
    }
    std::string Text(jstring text) {
        if (text == nullptr) return "<null>";
        const char* chars = mEnv->GetStringUTFChars(text, nullptr);
        std::string copy(chars);
        mEnv->ReleaseStringUTFChars(text, chars);
        return copy;
    }
    // Runs one operation and expects exactly the one error line.
    void ExpectOnlyError(const std::function<void()>& call, const std::string& error) {
        Mark();
        call();
        EXPECT_EQ(LinesWithPriority(kError), (std::vector<Line>{{kError, error}}));
        EXPECT_EQ(Lines().size(), 1u);
    }
};

TEST_F(FactoryBackendTest, AidlOperationsWithoutTheirHandle) {
    const std::string null = "aidl fail, g_aidlFactoryInterface is null";
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::IsFactoryVersion(mEnv, nullptr), JNI_FALSE); },
                    Prefixed("IsFactoryVersion by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(Text(native_aidl::GetManufactureFileName(mEnv, nullptr)), ""); },
                    Prefixed("GetManufactureFileName by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(Text(native_aidl::GetBsn(mEnv, nullptr)), ""); }, Prefixed("GetBsn by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(Text(native_aidl::GetTestApkPackageName(mEnv, nullptr)), ""); },
                    Prefixed("GetTestApkPackageName by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::GetManufactureMode(mEnv, nullptr), -1); },
                    Prefixed("GetManufactureMode by aidl, g_aidlFactoryInterface is null"));
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::GetMmiDeviceFeaturesCheckResult(mEnv, nullptr, 1), -1); },
                    Prefixed("GetMmiDeviceFeaturesCheckResult by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::ClearPackageName(mEnv, nullptr), -1); },
                    Prefixed("ClearPackageName by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::ReleaseFactoryHidlResource(mEnv, nullptr), -1); },
                    Prefixed("ReleaseFactoryHidlResource by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(Text(native_aidl::GetMmiAutoStartFlag(mEnv, nullptr)), ""); },
                    Prefixed("GetMmiAutoStartFlag by " + null));
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::SetMmiAutoStartFlag(mEnv, nullptr, nullptr), -1); },
                    Prefixed("SetMmiAutoStartFlag by " + null));
}

TEST_F(FactoryBackendTest, HidlVersionOneOneOperationsWithoutAnyHandle) {
    ExpectOnlyError([&] { EXPECT_EQ(native_hidl::GetManufactureMode(mEnv, nullptr), -1); },
                    Prefixed("GetManufactureMode by hidl, hwFactoryNew is null"));
    // The 1.0 handle is checked first here, so its own line comes instead of the cast's.
    ExpectOnlyError([&] { EXPECT_EQ(native_hidl::ClearPackageName(mEnv, nullptr), -1); },
                    Prefixed("ClearPackageName by hidl fail, g_hwFactoryInterface is null"));
}

}  // namespace
}  // namespace mmitest

namespace mmitest {
namespace {

TEST_F(FactoryBackendTest, AidlFlickerWithoutItsHandle) {
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::GetFlickerFrequency(mEnv, nullptr, 1), -1); },
                    Prefixed("GetFlickerFrequency by aidl fail, g_aidlSensors is null"));
    ExpectOnlyError([&] { EXPECT_EQ(native_aidl::GetFlickerFrequencyAndAmplitude(mEnv, nullptr, 1), nullptr); },
                    Prefixed("GetFlickerFrequencyAndAmplitude by aidl fail, g_aidlSensors is null"));
}

}  // namespace
}  // namespace mmitest
