// The vibrator test over the maker's AIDL extension, and light brightness over both
// backends (with the HIDL backlight path).
#include "device_support.h"

namespace mmitest {
namespace {

constexpr const char* kSetVibratorSig = "(Ljava/lang/String;)V";
constexpr const char* kGetVibratorSig = "(Ljava/lang/String;)Ljava/lang/String;";

class VibratorLightTest : public MmiTest {
protected:
    // A Java string of UTF-16 text (J() takes modified UTF-8 only).
    jstring JavaText(const std::u16string& text) {
        return mEnv->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    }
    // getVibratorCalibrateResultNative's answer as UTF-16; nullopt for null.
    std::optional<std::u16string> VibratorResult(jstring command) {
        jclass clazz = mEnv->GetObjectClass(mManager);
        jmethodID method = mEnv->GetMethodID(clazz, "getVibratorCalibrateResultNative", kGetVibratorSig);
        mEnv->DeleteLocalRef(clazz);
        auto result = static_cast<jstring>(mEnv->CallObjectMethod(mManager, method, command));
        EXPECT_FALSE(mEnv->ExceptionCheck());
        if (result == nullptr) return std::nullopt;
        std::u16string text(static_cast<size_t>(mEnv->GetStringLength(result)), u'\0');
        mEnv->GetStringRegion(result, 0, static_cast<jsize>(text.size()), reinterpret_cast<jchar*>(text.data()));
        return text;
    }
};

TEST_F(VibratorLightTest, CommandReachesTheServiceAsTheSameCharacters) {
    Boot(mmisim::DeviceProfile::AllAidl());
    // Non-ASCII text, one character outside the Basic Multilingual Plane among them.
    Void("setVibratorParameterNative", kSetVibratorSig, JavaText(u"强度=5;模式=振动📳"));
    EXPECT_EQ(CallsTo(handset().vibrator(), "setVibratorParameter"), (Rows{{"aidl", u8"强度=5;模式=振动📳"}}));
    EXPECT_EQ(Lines().back(), (Line{kInfo, Prefixed(u8"SetVibratorPar by aidl, strCmd = 强度=5;模式=振动📳")}));
    EXPECT_TRUE(Has(kInfo, "SetVibratorPar, Aidl Called"));
}

TEST_F(VibratorLightTest, ResultTextComesBackToJava) {
    Boot(mmisim::DeviceProfile::AllAidl());
    handset().vibrator().update([](mmisim::VibratorAnswers& a) { a.result = u8"校准完成 f0=170Hz 📳"; });
    EXPECT_EQ(VibratorResult(JavaText(u"f0?")), u"校准完成 f0=170Hz 📳");
    EXPECT_EQ(CallsTo(handset().vibrator(), "getVibratorResult"), (Rows{{"aidl", "f0?"}}));
    EXPECT_TRUE(Has(kInfo, "GetVibratorResult, Aidl Called"));
    EXPECT_TRUE(Has(kInfo, Prefixed(u8"GetVibratorResult by aidl, result:校准完成 f0=170Hz 📳")));

    // A service that answers nothing gives an empty text, not null.
    handset().vibrator().update([](mmisim::VibratorAnswers& a) { a.result = ""; });
    EXPECT_EQ(VibratorResult(J("f0?")), u"");
}

TEST_F(VibratorLightTest, NullCommandIsNotSent) {
    Boot(mmisim::DeviceProfile::AllAidl());
    Void("setVibratorParameterNative", kSetVibratorSig, (jstring) nullptr);
    EXPECT_EQ(VibratorResult(nullptr), u"");
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({Prefixed("SetVibratorPar by aidl fail, command is null"),
                      Prefixed("GetVibratorResult by aidl fail, command is null")}));
    EXPECT_TRUE(handset().vibrator().calls().empty());
}

TEST_F(VibratorLightTest, WithoutTheExtensionNothingIsSent) {
    mmisim::DeviceProfile profile = mmisim::DeviceProfile::AllAidl();
    profile[mmisim::Family::kVibrator].vibratorExtension = mmisim::VibratorExtension::kNone;
    Boot(profile);
    Void("setVibratorParameterNative", kSetVibratorSig, J("mode=1"));
    EXPECT_EQ(VibratorResult(J("f0?")), u"");
    EXPECT_EQ(LinesWithPriority(kError),
              Errors({"SetVibratorPar fail, Aidl is null", "GetVibratorResult fail, Aidl is null"}));
    EXPECT_TRUE(handset().vibrator().calls().empty());
}

class VibratorLightBackendTest : public DeviceBackendCase {};

TEST_P(VibratorLightBackendTest, LightBrightnessReachesTheServiceAndAnswersItsResult) {
    handset().light().update([](mmisim::LightAnswers& a) { a.brightnessResult = 6; });
    EXPECT_EQ(Int("setLightBrightnessNative", "(II)I", 3, 128), 6);
    EXPECT_EQ(CallsTo(handset().light(), "setLightBrightness"), (Rows{{GetParam().name, "3", "128"}}));
    EXPECT_TRUE(Has(kInfo, By("SetLightBrightness", ", Id: 3, brightness: 128, result: 6")));
}

INSTANTIATE_TEST_SUITE_P(Backends, VibratorLightBackendTest, ::testing::Values(kAidlDevices, kHidlDevices),
                         DeviceBackendName);

TEST_F(VibratorLightTest, BacklightOfAHidlDisplayIsLightOne) {
    Boot(mmisim::DeviceProfile::AllHidl());
    EXPECT_EQ(Int("setBackLightBrightnessNative", "(I)I", 200), 0);
    EXPECT_EQ(CallsTo(handset().light(), "setLightBrightness"), (Rows{{"hidl", "1", "200"}}));
    EXPECT_TRUE(Has(kInfo, Prefixed("SetLightBrightness by hidl, Id: 1, brightness: 200, result: 0")));
}

TEST_F(VibratorLightTest, LightWithoutServiceOrDyingUnderTheCallAnswersMinusOne) {
    Boot(mmisim::DeviceProfile::AllHidl());
    WithDeadService(mmisim::Family::kLight, [&] {
        EXPECT_EQ(Int("setLightBrightnessNative", "(II)I", 3, 128), -1);
    });
    EXPECT_TRUE(Has(kInfo, Prefixed("SetLightBrightness by hidl, Id: 3, brightness: 128, result: -1")));

    Boot(mmisim::DeviceProfile::Bare());
    EXPECT_EQ(Int("setLightBrightnessNative", "(II)I", 3, 128), -1);
    EXPECT_TRUE(Has(kError, Prefixed("SetLightBrightness by hidl fail, g_hwLight is null")));
}

}  // namespace
}  // namespace mmitest
