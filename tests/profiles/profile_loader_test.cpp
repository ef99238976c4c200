// Device profiles: the shipped ones load and say what they promise, malformed ones are rejected
// with the file, the place and the fault, and serving or changing one reaches the services.
#include <gtest/gtest.h>
#include <sim/handset.h>
#include <sim/profile.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>
#include <vector>

namespace {

using mmisim::Family;
using mmisim::Profile;
using mmisim::ProfileError;
using mmisim::Transport;
using nlohmann::json;

// A valid profile with every family unserved, to be changed by each case.
json MinimalProfile() {
    json families = json::object();
    for (Family family : mmisim::kAllFamilies) families[mmisim::FamilyName(family)] = json{{"service", "none"}};
    return json{{"name", "minimal"}, {"families", families}};
}

template <typename Call>
std::string ErrorOf(Call call) {
    try {
        call();
    } catch (const ProfileError& error) {
        return error.what();
    }
    return "(accepted)";
}

std::string ParseError(const std::string& text) {
    return ErrorOf([&] { mmisim::ParseProfile(text, "t.json"); });
}

// A profile's services, family by family: generation, HIDL minor version given (-1: the
// newest), options and faults.
std::string Services(const Profile& profile) {
    std::string text;
    for (Family family : mmisim::kAllFamilies) {
        const mmisim::FamilyConfig& c = profile.device[family];
        const mmisim::ServiceFaults& faults = profile.faultsOf(family);
        text += std::string(text.empty() ? "" : " ") + mmisim::FamilyName(family) + "=";
        text += c.transport == Transport::kAidl ? "aidl" : c.transport == Transport::kHidl ? "hidl" : "none";
        if (c.transport == Transport::kHidl) text += std::to_string(c.hidlMinor);
        if (family == Family::kSensors && c.transport == Transport::kHidl) text += c.sensorsV1 ? "+v1x" : "";
        if (family == Family::kSensors && c.transport == Transport::kHidl) text += c.sensorsV2 ? "+v20" : "";
        if (c.fingerprintNoSession) text += "+nosession";
        if (c.vibratorExtension != mmisim::VibratorExtension::kCustVibrator) text += "+otherextension";
        if (faults.failCalls) text += "+failCalls";
        if (faults.skipCallbacks) text += "+skipCallbacks";
        if (faults.latencyMs != 0) text += "+latency" + std::to_string(faults.latencyMs);
        if (c.lateStartMs != 0) text += "+lateStart" + std::to_string(c.lateStartMs);
    }
    return text;
}

TEST(ShippedProfiles, LoadUnderTheirNamesWithTheServicesTheyPromise) {
    const std::vector<std::pair<std::string, std::string>> expected = {
            {"aidl", "factory=aidl display=aidl touchscreen=aidl fingerprint=aidl sensors=aidl power=aidl light=aidl "
                     "camera=aidl vibrator=aidl"},
            {"bare", "factory=none display=none touchscreen=none fingerprint=none sensors=none power=none light=none "
                     "camera=none vibrator=none"},
            {"flaky", "factory=aidl display=hidl5+skipCallbacks touchscreen=aidl+failCalls fingerprint=aidl+nosession "
                      "sensors=aidl power=aidl light=hidl-1+latency300 camera=aidl+lateStart1000 vibrator=aidl"},
            {"hidl", "factory=hidl1 display=hidl5 touchscreen=hidl0 fingerprint=hidl2 sensors=hidl2+v1x+v20 power=hidl0 "
                     "light=hidl0 camera=none vibrator=none"},
            {"legacy", "factory=hidl0 display=hidl0 touchscreen=hidl0 fingerprint=hidl1 sensors=hidl0+v1x power=hidl0 "
                       "light=hidl0 camera=none vibrator=none"},
            {"mixed", "factory=aidl display=hidl4 touchscreen=hidl-1 fingerprint=aidl sensors=hidl1+v1x+v20 power=aidl "
                      "light=hidl-1 camera=aidl vibrator=none"}};
    std::vector<std::string> names;
    for (const auto& [name, services] : expected) names.push_back(name);
    ASSERT_EQ(mmisim::ShippedProfileNames(), names);
    for (const auto& [name, services] : expected) {
        SCOPED_TRACE(name);
        const Profile profile = mmisim::LoadProfile(name);
        EXPECT_EQ(profile.name, name);
        EXPECT_EQ(profile.device.name, name);
        EXPECT_FALSE(profile.description.empty());
        EXPECT_EQ(std::filesystem::path(profile.source).filename(), name + ".json");
        EXPECT_EQ(Services(profile), services);
        EXPECT_TRUE(profile.flicker.has_value());  // every one has a light, for the flicker plot
        // Written out (the newest version given by number), it reads back the same.
        const std::string written = mmisim::ProfileToJson(profile);
        EXPECT_EQ(mmisim::ProfileToJson(mmisim::ParseProfile(written, "again.json")), written);
    }
}

TEST(ProfileFormat, BadNamesFilesAndTextsAreRejected) {
    EXPECT_EQ(ErrorOf([] { mmisim::LoadProfile("pixel"); }),
              "unknown device profile \"pixel\"; the shipped profiles are aidl, bare, flaky, hidl, legacy, mixed "
              "(or give the path of a profile file)");
    EXPECT_EQ(ErrorOf([] { mmisim::LoadProfile("/nonexistent/phone.json"); }),
              "/nonexistent/phone.json: cannot be read: No such file or directory");
    const std::string invalid = ParseError("{\n  \"name\": \"x\",\n  \"families\": ]\n}");
    EXPECT_EQ(invalid.rfind("t.json: line 3, column 15: not valid JSON: ", 0), 0u) << invalid;
    EXPECT_EQ(ParseError("[]"), "t.json: top level: expected an object, not an array");
    EXPECT_EQ(ParseError("{\"name\": \"a\", \"name\": \"b\", \"families\": {}}"),
              "t.json: name: the key is given twice in one object");
    EXPECT_EQ(ParseError("{\"families\": {\"factory\": {\"service\": \"aidl\", \"answers\": "
                         "{\"stationFlags\": {\"1\": \"PASS\", \"1\": \"FAIL\"}}}}}"),
              "t.json: families.factory.answers.stationFlags.1: the key is given twice in one object");
}

// Each case changes the minimal profile by a JSON merge patch (null removes a key): of the
// whole profile when the family is empty, else of that family. Faults that setAnswer reports
// alike are in its test.
TEST(ProfileFormat, BrokenProfilesAreRejectedWithPlaceAndFault) {
    const struct {
        const char* family;
        const char* patch;
        const char* message;  // after "t.json: "
    } cases[] = {
            {"", R"({"families": null, "familes": {}})", "familes: unknown key; did you mean \"families\"?"},
            {"", R"({"families": null})",
             "top level: missing \"families\" (an object with the service of each family: factory, display, "
             "touchscreen, fingerprint, sensors, power, light, camera, vibrator)"},
            {"", R"({"families": {"camera": null}})",
             "families: missing \"camera\" (every family says its service, \"none\" for one not served)"},
            {"factory", R"({"service": 3})", "families.factory.service: expected a string, not the number 3"},
            {"camera", R"({"service": "hidl"})",
             "families.camera.service: the camera service exists only over AIDL (\"aidl\" or \"none\")"},
            {"light", R"({"service": "hidl", "version": "2.1"})",
             "families.light.version: HIDL light has no version 2.1 (served versions: only 2.0)"},
            {"sensors", R"({"service": "hidl", "version": "v1.2"})",
             "families.sensors.version: \"v1.2\" is not a version of the form MAJOR.MINOR (HIDL sensors versions: "
             "1.0 to 1.2)"},
            {"sensors", R"({"service": "hidl", "v1x": false, "v20": false})",
             "families.sensors.v20: with \"v1x\" false too no HIDL sensors service is left; say \"service\": \"none\""},
            {"factory", R"({"answers": {"serialNumber": {"ret": 0, "txt": "x"}}})",
             "families.factory.answers.serialNumber.txt: unknown key; did you mean \"text\"?"},
            {"sensors", R"({"answers": {"flicker": {"frequencyHz": 100}}})",
             "families.sensors.answers.flicker: missing \"sensorId\" (the light sensor the light shines on)"},
    };
    for (const auto& broken : cases) {
        SCOPED_TRACE(broken.patch);
        json document = MinimalProfile();
        json& patched = *broken.family != '\0' ? document["families"][broken.family] : document;
        patched.merge_patch(json::parse(broken.patch));
        EXPECT_EQ(ParseError(document.dump(2)), std::string("t.json: ") + broken.message);
    }
}

TEST(ProfileDirectory, TheEnvironmentNamesAnotherFolder) {
    const std::filesystem::path folder =
            std::filesystem::temp_directory_path() / ("mmi_profile_dir_test_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "lab.json") << MinimalProfile().dump();
    setenv("MMI_PROFILE_DIR", folder.c_str(), 1);
    const std::vector<std::string> names = mmisim::ShippedProfileNames();
    const Profile lab = mmisim::LoadProfile("lab");
    unsetenv("MMI_PROFILE_DIR");
    std::filesystem::remove_all(folder);
    EXPECT_EQ(names, std::vector<std::string>{"lab"});
    EXPECT_EQ(lab.name, "minimal");
}

// (The example Java suite sets the serial number, a station flag and the light's frequency.)
TEST(SetAnswer, ChangesOneAnswerOnly) {
    Profile profile = mmisim::LoadProfile("aidl");
    mmisim::SetAnswer(profile, "factory", "stationFlags.3", "{\"ret\": 1, \"text\": \"FAIL\"}");
    mmisim::SetAnswer(profile, "sensors", "sensorData.6", "[1, 2, 3]");
    mmisim::SetAnswer(profile, "factory", "deviceInfo.77", "\"other item\"");
    const mmisim::FactoryAnswers& f = profile.factory;
    EXPECT_EQ(std::make_tuple(f.stationFlags.at(3).ret, f.stationFlags.at(1).text, f.deviceInfo.at(35).text,
                              f.deviceInfo.at(77).text),
              std::make_tuple(1, "PASS", "com.corvex.mmitest", "other item"));
    EXPECT_EQ(profile.sensors.sensorData.at(6).data, (std::vector<int32_t>{1, 2, 3}));
    EXPECT_EQ(mmisim::GetAnswer(profile, "factory", "stationFlags.3"), "{\"ret\":1,\"text\":\"FAIL\"}");
    // A numbered device-info item with a name of its own is that named answer.
    mmisim::SetAnswer(profile, "factory", "deviceInfo.0", "\"BY-NUMBER\"");
    EXPECT_EQ(mmisim::GetAnswer(profile, "factory", "serialNumber"), "\"BY-NUMBER\"");
    // The flicker light can be removed and added again.
    mmisim::SetAnswer(profile, "sensors", "flicker", "null");
    EXPECT_FALSE(profile.flicker.has_value());
    mmisim::SetAnswer(profile, "sensors", "flicker", "{\"sensorId\": 9, \"frequencyHz\": 60}");
    ASSERT_TRUE(profile.flicker.has_value());
    EXPECT_EQ(std::make_pair(profile.flicker->sensorId, profile.flicker->light.frequencyHz), std::make_pair(9, 60.0));
}

TEST(SetAnswer, AWrongValueIsRejectedAndChangesNothing) {
    Profile profile = mmisim::LoadProfile("aidl");
    const std::string before = mmisim::ProfileToJson(profile);
    const std::vector<std::vector<std::string>> cases = {
            {"factory", "serialNumbr", "\"x\"", "factory.serialNumbr: unknown key; did you mean \"serialNumber\"?"},
            {"modem", "x", "1", "modem: unknown service family \"modem\"; known here: factory, display, touchscreen, "
                                "fingerprint, sensors, power, light, camera, vibrator"},
            {"factory", "serialNumber", "ZT", "factory.serialNumber: the value is not valid JSON: ZT"},
            {"factory", "manufactureMode.x", "1", "factory.manufactureMode: the answer is the number 1, which has no keys"},
            {"factory", "stationFlags..3", "\"x\"",
             "factory: \"stationFlags..3\" is not a key path (names joined by dots, such as \"stationFlags.3\")"},
            {"sensors", "flicker.frequencyHz", "700",
             "sensors.flicker.frequencyHz: the frequency must be at least 0 and below 500 (half the 1000 Hz sampling "
             "rate), not 700"}};
    for (const auto& c : cases) {
        EXPECT_EQ(ErrorOf([&] { mmisim::SetAnswer(profile, c[0], c[1], c[2]); }), "setAnswer: " + c[3]);
    }
    EXPECT_EQ(mmisim::ProfileToJson(profile), before);
}

// Serving a profile without the MMI library: the services run and answer as it says, and
// one family's answers can be changed while it runs.
TEST(ServedProfile, StartsTheServicesAndSetsTheAnswers) {
    mmisim::Handset& handset = mmisim::Handset::Get();
    Profile mixed = mmisim::LoadProfile("mixed");
    mmisim::ServeProfile(mixed, handset);
    EXPECT_EQ(std::make_tuple(handset.IsRunning(Family::kFactory), handset.IsRunning(Family::kDisplay),
                              handset.IsRunning(Family::kVibrator), handset.profile()[Family::kDisplay].transport,
                              handset.profile()[Family::kDisplay].hidlMinor),
              std::make_tuple(true, true, false, Transport::kHidl, 4));
    const mmisim::FactoryAnswers& f = handset.factory().answers();
    EXPECT_EQ(std::make_tuple(f.deviceInfo.at(0).text, f.oeminfo, handset.display().answers().screenConfig.text),
              std::make_tuple("ZT25M0055501", "BOARD=CVX25M", "1080x2400@60"));
    EXPECT_EQ(handset.sensors().answers().sensorData.at(5).data, mmisim::ServedSensorAnswers(mixed).sensorData.at(5).data);
    mmisim::SetAnswer(mixed, "display", "screenConfig", "\"720x1600@60\"");
    mmisim::ApplyAnswers(mixed, Family::kDisplay, handset);
    EXPECT_EQ(handset.display().answers().screenConfig.text, "720x1600@60");
    EXPECT_TRUE(handset.IsRunning(Family::kDisplay));

    // Every kind of answer the aidl profile gives reaches its service.
    mmisim::ServeProfile(mmisim::LoadProfile("aidl"), handset);
    const mmisim::FactoryAnswers& a = handset.factory().answers();
    EXPECT_EQ(std::make_tuple(a.deviceInfo.at(44).text, a.stationFlags.at(2).text, a.oeminfo,
                              handset.display().answers().screenCurrentFps.text,
                              handset.sensors().answers().parameter.para, handset.vibrator().answers().result),
              std::make_tuple("RSA2048:5f3a9c0e", "PASS", "BOARD=CVX26A;PCB=V3", "120", "als_cali=1.02",
                              "f0=170Hz;pass"));
    EXPECT_EQ(handset.sensors().answers().sensorData.at(6).data, (std::vector<int32_t>{812, 904, 655, 2371}));
    // The light's sensor over AIDL reports {frequency, amplitude} itself (over HIDL: raw samples).
    EXPECT_EQ(handset.sensors().answers().sensorData.at(5).data, (std::vector<int32_t>{100, 400}));
    handset.Configure(mmisim::DeviceProfile::Bare());
}

}  // namespace
