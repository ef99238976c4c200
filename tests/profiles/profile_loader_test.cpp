// Device profiles: the shipped ones load and say what they promise, malformed ones are
// rejected with the file, the place and the fault, and serving or changing a profile
// reaches the simulated services.
#include <gtest/gtest.h>
#include <sim/handset.h>
#include <sim/profile.h>

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
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

std::string ErrorOf(const std::string& text, const std::string& source = "t.json") {
    try {
        mmisim::ParseProfile(text, source);
    } catch (const ProfileError& error) {
        return error.what();
    }
    return "(accepted)";
}

std::string ErrorOfDocument(const json& document) { return ErrorOf(document.dump(2)); }

json With(const std::function<void(json&)>& change) {
    json document = MinimalProfile();
    change(document);
    return document;
}

TEST(ShippedProfiles, AllLoadUnderTheirOwnNames) {
    const std::vector<std::string> names = mmisim::ShippedProfileNames();
    EXPECT_EQ(names, (std::vector<std::string>{"aidl", "bare", "flaky", "hidl", "legacy", "mixed"}));
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        Profile profile;
        ASSERT_NO_THROW(profile = mmisim::LoadProfile(name));
        EXPECT_EQ(profile.name, name);
        EXPECT_EQ(profile.device.name, name);
        EXPECT_FALSE(profile.description.empty());
        EXPECT_EQ(std::filesystem::path(profile.source).filename(), name + ".json");
        // Every shipped profile has a light in front of the sensor, for the flicker plot.
        ASSERT_TRUE(profile.flicker.has_value());
    }
}

TEST(ShippedProfiles, AidlServesEveryFamilyOverAidl) {
    const Profile profile = mmisim::LoadProfile("aidl");
    for (Family family : mmisim::kAllFamilies) {
        EXPECT_EQ(profile.device[family].transport, Transport::kAidl) << mmisim::FamilyName(family);
    }
    EXPECT_FALSE(profile.device[Family::kFingerprint].fingerprintNoSession);
    EXPECT_EQ(profile.device[Family::kVibrator].vibratorExtension, mmisim::VibratorExtension::kCustVibrator);
}

TEST(ShippedProfiles, HidlServesTheNewestMinorVersionsAndNoAidlOnlyFamily) {
    const Profile profile = mmisim::LoadProfile("hidl");
    EXPECT_EQ(profile.device[Family::kFactory].hidlMinor, 1);
    EXPECT_EQ(profile.device[Family::kDisplay].hidlMinor, 5);
    EXPECT_EQ(profile.device[Family::kSensors].hidlMinor, 2);
    EXPECT_EQ(profile.device[Family::kFingerprint].hidlMinor, 2);
    EXPECT_TRUE(profile.device[Family::kSensors].sensorsV1);
    EXPECT_TRUE(profile.device[Family::kSensors].sensorsV2);
    for (Family family : {Family::kFactory, Family::kDisplay, Family::kTouchScreen, Family::kFingerprint,
                          Family::kSensors, Family::kPower, Family::kLight}) {
        EXPECT_EQ(profile.device[family].transport, Transport::kHidl) << mmisim::FamilyName(family);
    }
    EXPECT_EQ(profile.device[Family::kVaelon].transport, Transport::kNone);
    EXPECT_EQ(profile.device[Family::kVibrator].transport, Transport::kNone);
    EXPECT_FALSE(profile.sensors.flickerSupported);
}

TEST(ShippedProfiles, LegacyServesOnlyTheFirstVersions) {
    const Profile profile = mmisim::LoadProfile("legacy");
    EXPECT_EQ(profile.device[Family::kFactory].hidlMinor, 0);
    EXPECT_EQ(profile.device[Family::kDisplay].hidlMinor, 0);
    EXPECT_EQ(profile.device[Family::kSensors].hidlMinor, 0);
    EXPECT_EQ(profile.device[Family::kFingerprint].hidlMinor, 1);
    EXPECT_FALSE(profile.device[Family::kSensors].sensorsV2);
}

TEST(ShippedProfiles, MixedServesSomeFamiliesEachWayAndBareNone) {
    const Profile mixed = mmisim::LoadProfile("mixed");
    int aidl = 0;
    int hidl = 0;
    for (Family family : mmisim::kAllFamilies) {
        aidl += mixed.device[family].transport == Transport::kAidl;
        hidl += mixed.device[family].transport == Transport::kHidl;
    }
    EXPECT_GE(aidl, 2);
    EXPECT_GE(hidl, 2);
    EXPECT_EQ(mixed.device[Family::kDisplay].hidlMinor, 4);

    const Profile bare = mmisim::LoadProfile("bare");
    for (Family family : mmisim::kAllFamilies) EXPECT_EQ(bare.device[family].transport, Transport::kNone);
}

TEST(ShippedProfiles, AnswersReachTheAnswerRecords) {
    const Profile profile = mmisim::LoadProfile("aidl");
    EXPECT_EQ(profile.factory.deviceInfo.at(0).text, "ZT26A0012345");
    EXPECT_EQ(profile.factory.deviceInfo.at(5).text, "1");
    EXPECT_EQ(profile.factory.deviceInfo.at(14).text, "PASS");
    EXPECT_EQ(profile.factory.deviceInfo.at(35).text, "com.corvex.mmitest");
    EXPECT_EQ(profile.factory.deviceInfo.at(44).text, "RSA2048:5f3a9c0e");
    EXPECT_EQ(profile.factory.stationFlags.at(2).text, "PASS");
    EXPECT_EQ(profile.factory.oeminfo, "BOARD=CVX26A;PCB=V3");
    EXPECT_EQ(profile.display.screenCurrentFps.text, "120");
    EXPECT_EQ(profile.sensors.sensorData.at(6).data, (std::vector<int32_t>{812, 904, 655, 2371}));
    EXPECT_EQ(profile.sensors.parameter.para, "als_cali=1.02");
    EXPECT_EQ(profile.vibrator.result, "f0=170Hz;pass");
    ASSERT_TRUE(profile.flicker.has_value());
    EXPECT_EQ(profile.flicker->sensorId, 5);
    EXPECT_EQ(profile.flicker->light.frequencyHz, 100.0);
    EXPECT_EQ(profile.flicker->light.seed, 7u);
}

TEST(ProfileFormat, UnknownNameListsTheShippedProfiles) {
    try {
        mmisim::LoadProfile("pixel");
        FAIL() << "accepted";
    } catch (const ProfileError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "unknown device profile \"pixel\"; the shipped profiles are aidl, bare, flaky, hidl, legacy, mixed "
                  "(or give the path of a profile file)");
    }
}

TEST(ProfileFormat, UnreadableFileNamesIt) {
    try {
        mmisim::LoadProfile("/nonexistent/phone.json");
        FAIL() << "accepted";
    } catch (const ProfileError& error) {
        EXPECT_EQ(std::string(error.what()), "/nonexistent/phone.json: cannot be read: No such file or directory");
    }
}

TEST(ProfileFormat, InvalidJsonGivesLineAndColumn) {
    const std::string error = ErrorOf("{\n  \"name\": \"x\",\n  \"families\": ]\n}");
    EXPECT_EQ(error.rfind("t.json: line 3, column 15: not valid JSON: ", 0), 0u) << error;
}

TEST(ProfileFormat, AKeyGivenTwiceIsRejected) {
    EXPECT_EQ(ErrorOf("{\"families\": {\"factory\": {\"service\": \"aidl\", \"answers\": "
                      "{\"stationFlags\": {\"1\": \"PASS\", \"1\": \"FAIL\"}}}}}"),
              "t.json: families.factory.answers.stationFlags.1: the key is given twice in one object");
    EXPECT_EQ(ErrorOf("{\"name\": \"a\", \"name\": \"b\", \"families\": {}}"),
              "t.json: name: the key is given twice in one object");
}

struct BrokenCase {
    const char* what;
    std::function<void(json&)> change;
    const char* message;
};

class BrokenProfile : public ::testing::TestWithParam<BrokenCase> {};

TEST_P(BrokenProfile, IsRejectedWithPlaceAndFault) { EXPECT_EQ(ErrorOfDocument(With(GetParam().change)), GetParam().message); }

INSTANTIATE_TEST_SUITE_P(
        Cases, BrokenProfile,
        ::testing::Values(
                BrokenCase{"TopLevelNotAnObject", [](json& d) { d = json::array(); },
                           "t.json: top level: expected an object, not an array"},
                BrokenCase{"MisspeltTopLevelKey",
                           [](json& d) {
                               d["familes"] = d["families"];
                               d.erase("families");
                           },
                           "t.json: familes: unknown key; did you mean \"families\"?"},
                BrokenCase{"NoFamilies", [](json& d) { d.erase("families"); },
                           "t.json: top level: missing \"families\" (an object with the service of each family: "
                           "factory, display, touchscreen, fingerprint, sensors, power, light, camera, vibrator)"},
                BrokenCase{"UnknownFamily", [](json& d) { d["families"]["modem"] = json{{"service", "aidl"}}; },
                           "t.json: families.modem: unknown service family \"modem\"; known here: factory, display, "
                           "touchscreen, fingerprint, sensors, power, light, camera, vibrator"},
                BrokenCase{"MisspeltFamily",
                           [](json& d) {
                               d["families"]["sensor"] = d["families"]["sensors"];
                               d["families"].erase("sensors");
                           },
                           "t.json: families.sensor: unknown service family \"sensor\"; did you mean \"sensors\"?"},
                BrokenCase{"MissingFamily", [](json& d) { d["families"].erase("camera"); },
                           "t.json: families: missing \"camera\" (every family says its service, \"none\" for one "
                           "not served)"},
                BrokenCase{"ServiceNotAString", [](json& d) { d["families"]["factory"]["service"] = 3; },
                           "t.json: families.factory.service: expected a string, not the number 3"},
                BrokenCase{"UnknownService", [](json& d) { d["families"]["power"]["service"] = "binder"; },
                           "t.json: families.power.service: expected \"aidl\", \"hidl\" or \"none\", not \"binder\""},
                BrokenCase{"CameraOverHidl", [](json& d) { d["families"]["camera"]["service"] = "hidl"; },
                           "t.json: families.camera.service: the camera service exists only over AIDL (\"aidl\" or "
                           "\"none\")"},
                BrokenCase{"NoService", [](json& d) { d["families"]["light"] = json::object(); },
                           "t.json: families.light: missing \"service\" (\"aidl\", \"hidl\" or \"none\")"},
                BrokenCase{"VersionOutOfRange",
                           [](json& d) { d["families"]["display"] = json{{"service", "hidl"}, {"version", "1.9"}}; },
                           "t.json: families.display.version: HIDL display has no version 1.9 (served versions: 1.0 "
                           "to 1.5)"},
                BrokenCase{"VersionOfAnotherMajor",
                           [](json& d) { d["families"]["fingerprint"] = json{{"service", "hidl"}, {"version", "1.0"}}; },
                           "t.json: families.fingerprint.version: HIDL fingerprint has no version 1.0 (served "
                           "versions: 2.1 to 2.2)"},
                BrokenCase{"VersionOfASingleVersionFamily",
                           [](json& d) { d["families"]["light"] = json{{"service", "hidl"}, {"version", "2.1"}}; },
                           "t.json: families.light.version: HIDL light has no version 2.1 (served versions: only 2.0)"},
                BrokenCase{"VersionAsNumber",
                           [](json& d) { d["families"]["factory"] = json{{"service", "hidl"}, {"version", 1.1}}; },
                           "t.json: families.factory.version: expected a version text such as \"1.1\", not the number "
                           "1.1"},
                BrokenCase{"VersionMalformed",
                           [](json& d) { d["families"]["sensors"] = json{{"service", "hidl"}, {"version", "v1.2"}}; },
                           "t.json: families.sensors.version: \"v1.2\" is not a version of the form MAJOR.MINOR (HIDL "
                           "sensors versions: 1.0 to 1.2)"},
                BrokenCase{"VersionOfAnAidlService",
                           [](json& d) { d["families"]["display"] = json{{"service", "aidl"}, {"version", "1.5"}}; },
                           "t.json: families.display.version: only a HIDL service has a version (this one is "
                           "\"aidl\")"},
                BrokenCase{"SensorsOptionOnAidl",
                           [](json& d) { d["families"]["sensors"] = json{{"service", "aidl"}, {"v20", false}}; },
                           "t.json: families.sensors.v20: only for a HIDL sensors service"},
                BrokenCase{"NoSensorsServiceLeft",
                           [](json& d) {
                               d["families"]["sensors"] = json{{"service", "hidl"}, {"v1x", false}, {"v20", false}};
                           },
                           "t.json: families.sensors.v20: with \"v1x\" false too no HIDL sensors service is left; say "
                           "\"service\": \"none\""},
                BrokenCase{"UnknownVibratorExtension",
                           [](json& d) { d["families"]["vibrator"] = json{{"service", "aidl"}, {"extension", "x"}}; },
                           "t.json: families.vibrator.extension: expected \"custVibrator\", \"none\" or \"other\", not "
                           "\"x\""},
                BrokenCase{"NegativeLatency",
                           [](json& d) { d["families"]["light"] = json{{"service", "aidl"}, {"faults", {{"latencyMs", -5}}}}; },
                           "t.json: families.light.faults.latencyMs: a time in milliseconds must not be negative"},
                BrokenCase{"SkippedCallbacksOverAidl",
                           [](json& d) {
                               d["families"]["display"] = json{{"service", "aidl"}, {"faults", {{"skipCallbacks", true}}}};
                           },
                           "t.json: families.display.faults.skipCallbacks: only a HIDL service answers through result "
                           "callbacks"},
                BrokenCase{"UnknownFamilyKey", [](json& d) { d["families"]["power"]["answer"] = json::object(); },
                           "t.json: families.power.answer: unknown key; did you mean \"answers\"?"},
                BrokenCase{"AnswerOfWrongType",
                           [](json& d) { d["families"]["factory"]["answers"] = json{{"manufactureMode", "1"}}; },
                           "t.json: families.factory.answers.manufactureMode: expected an integer, not the string "
                           "\"1\""},
                BrokenCase{"AnswerTooBig",
                           [](json& d) { d["families"]["display"]["answers"] = json{{"panelType", 3000000000u}}; },
                           "t.json: families.display.answers.panelType: 3000000000 does not fit in 32 bits"},
                BrokenCase{"AnswerFractional",
                           [](json& d) { d["families"]["power"]["answers"] = json{{"setPowerStateResult", 0.5}}; },
                           "t.json: families.power.answers.setPowerStateResult: expected an integer, not the number "
                           "0.5"},
                BrokenCase{"MisspeltAnswer",
                           [](json& d) { d["families"]["factory"]["answers"] = json{{"serialNumbr", "x"}}; },
                           "t.json: families.factory.answers.serialNumbr: unknown key; did you mean \"serialNumber\"?"},
                BrokenCase{"TextReplyWithUnknownKey",
                           [](json& d) {
                               d["families"]["factory"]["answers"] = json{{"serialNumber", {{"ret", 0}, {"txt", "x"}}}};
                           },
                           "t.json: families.factory.answers.serialNumber.txt: unknown key; did you mean \"text\"?"},
                BrokenCase{"StationKeyNotANumber",
                           [](json& d) {
                               d["families"]["factory"]["answers"] = json{{"stationFlags", {{"first", "PASS"}}}};
                           },
                           "t.json: families.factory.answers.stationFlags.first: expected a station id (an integer) "
                           "as the key, not \"first\""},
                BrokenCase{"DeviceInfoItemGivenTwice",
                           [](json& d) {
                               d["families"]["factory"]["answers"] =
                                       json{{"serialNumber", "A"}, {"deviceInfo", {{"0", "B"}}}};
                           },
                           "t.json: families.factory.answers.deviceInfo.0: item 0 is also given as \"serialNumber\"; "
                           "give it once"},
                BrokenCase{"SensorDataNotInts",
                           [](json& d) {
                               d["families"]["sensors"]["answers"] = json{{"sensorData", {{"6", {1, "2"}}}}};
                           },
                           "t.json: families.sensors.answers.sensorData.6[1]: expected an integer, not the string "
                           "\"2\""},
                BrokenCase{"CapabilityOvertimeWrong",
                           [](json& d) {
                               d["families"]["camera"]["answers"] = json{
                                       {"capabilities", {{{"serviceType", 1}}, {{"serviceType", 2}, {"overtimes", {true}}}}}};
                           },
                           "t.json: families.camera.answers.capabilities[1].overtimes[0]: expected an integer, not "
                           "true"},
                BrokenCase{"FlickerWithoutSensor",
                           [](json& d) { d["families"]["sensors"]["answers"] = json{{"flicker", {{"frequencyHz", 100}}}}; },
                           "t.json: families.sensors.answers.flicker: missing \"sensorId\" (the light sensor the light "
                           "shines on)"},
                BrokenCase{"FlickerAboveHalfTheSampleRate",
                           [](json& d) {
                               d["families"]["sensors"]["answers"] =
                                       json{{"flicker", {{"sensorId", 5}, {"frequencyHz", 600}}}};
                           },
                           "t.json: families.sensors.answers.flicker.frequencyHz: the frequency must be at least 0 and "
                           "below 500 (half the 1000 Hz sampling rate), not 600"},
                BrokenCase{"FlickerSensorAlsoInSensorData",
                           [](json& d) {
                               d["families"]["sensors"]["answers"] =
                                       json{{"sensorData", {{"5", {1}}}}, {"flicker", {{"sensorId", 5}, {"frequencyHz", 50}}}};
                           },
                           "t.json: families.sensors.answers.sensorData.5: sensor 5 is the flicker light's sensor "
                           "(flicker.sensorId), whose data the light gives; give it in one place"}),
        [](const ::testing::TestParamInfo<BrokenCase>& info) { return std::string(info.param.what); });

TEST(ProfileFormat, DefaultsFillWhatAProfileLeavesOut) {
    json document = MinimalProfile();
    document["families"]["factory"] = json{{"service", "hidl"}, {"answers", {{"serialNumber", "S1"}}}};
    document.erase("name");
    const Profile profile = mmisim::ParseProfile(document.dump(), "/some/where/prototype.json");
    EXPECT_EQ(profile.name, "prototype");  // the file's name when the profile has none
    EXPECT_EQ(profile.device[Family::kFactory].hidlMinor, -1);  // the newest
    EXPECT_EQ(profile.factory.deviceInfo.at(0).text, "S1");
    EXPECT_EQ(profile.factory.deviceInfo.at(35).text, mmisim::FactoryAnswers().deviceInfo.at(35).text);
    EXPECT_EQ(profile.factory.manufactureMode, mmisim::FactoryAnswers().manufactureMode);
    EXPECT_FALSE(profile.flicker.has_value());
}

TEST(ProfileFormat, TextRepliesCarryAStatus) {
    json document = MinimalProfile();
    document["families"]["factory"]["answers"] = json{{"stationFlags", {{"3", {{"ret", -5}, {"text", "no"}}}}},
                                                      {"oeminfo", {{"ret", 2}}}};
    const Profile profile = mmisim::ParseProfile(document.dump(), "t.json");
    EXPECT_EQ(profile.factory.stationFlags.at(3).ret, -5);
    EXPECT_EQ(profile.factory.stationFlags.at(3).text, "no");
    EXPECT_EQ(profile.factory.oeminfoRet, 2);
    EXPECT_EQ(profile.factory.oeminfo, "");
}

TEST(ProfileFormat, WrittenOutItReadsBackTheSame) {
    for (const std::string& name : mmisim::ShippedProfileNames()) {
        SCOPED_TRACE(name);
        const Profile profile = mmisim::LoadProfile(name);
        const std::string written = mmisim::ProfileToJson(profile);
        const Profile again = mmisim::ParseProfile(written, "again.json");
        EXPECT_EQ(mmisim::ProfileToJson(again), written);
        for (Family family : mmisim::kAllFamilies) {
            EXPECT_EQ(again.device[family].transport, profile.device[family].transport);
        }
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

TEST(SetAnswer, ChangesOneAnswerOnly) {
    Profile profile = mmisim::LoadProfile("aidl");
    mmisim::SetAnswer(profile, "factory", "serialNumber", "\"ZT00NEW\"");
    mmisim::SetAnswer(profile, "factory", "stationFlags.3", "{\"ret\": 1, \"text\": \"FAIL\"}");
    mmisim::SetAnswer(profile, "sensors", "sensorData.6", "[1, 2, 3]");
    EXPECT_EQ(profile.factory.deviceInfo.at(0).text, "ZT00NEW");
    EXPECT_EQ(profile.factory.stationFlags.at(3).ret, 1);
    EXPECT_EQ(profile.factory.stationFlags.at(3).text, "FAIL");
    EXPECT_EQ(profile.factory.stationFlags.at(1).text, "PASS");
    EXPECT_EQ(profile.sensors.sensorData.at(6).data, (std::vector<int32_t>{1, 2, 3}));
    EXPECT_EQ(profile.factory.deviceInfo.at(35).text, "com.corvex.mmitest");
    EXPECT_EQ(mmisim::GetAnswer(profile, "factory", "serialNumber"), "\"ZT00NEW\"");
    EXPECT_EQ(mmisim::GetAnswer(profile, "factory", "stationFlags.3"), "{\"ret\":1,\"text\":\"FAIL\"}");
}

TEST(SetAnswer, NumberedDeviceInfoItemsAreTheirNamedAnswers) {
    Profile profile = mmisim::LoadProfile("aidl");
    mmisim::SetAnswer(profile, "factory", "deviceInfo.0", "\"BY-NUMBER\"");
    mmisim::SetAnswer(profile, "factory", "deviceInfo.77", "\"other item\"");
    EXPECT_EQ(profile.factory.deviceInfo.at(0).text, "BY-NUMBER");
    EXPECT_EQ(profile.factory.deviceInfo.at(77).text, "other item");
    EXPECT_EQ(mmisim::GetAnswer(profile, "factory", "serialNumber"), "\"BY-NUMBER\"");
    EXPECT_EQ(mmisim::GetAnswer(profile, "factory", "deviceInfo.0"), "\"BY-NUMBER\"");
}

TEST(SetAnswer, AWrongValueIsRejectedAndChangesNothing) {
    Profile profile = mmisim::LoadProfile("aidl");
    const std::string before = mmisim::ProfileToJson(profile);
    auto errorOf = [&](const std::string& family, const std::string& key, const std::string& value) {
        try {
            mmisim::SetAnswer(profile, family, key, value);
        } catch (const ProfileError& error) {
            return std::string(error.what());
        }
        return std::string("(accepted)");
    };
    EXPECT_EQ(errorOf("factory", "manufactureMode", "\"one\""),
              "setAnswer: factory.manufactureMode: expected an integer, not the string \"one\"");
    EXPECT_EQ(errorOf("factory", "serialNumbr", "\"x\""),
              "setAnswer: factory.serialNumbr: unknown key; did you mean \"serialNumber\"?");
    EXPECT_EQ(errorOf("modem", "x", "1"), "setAnswer: modem: unknown service family \"modem\"; known here: factory, "
                                          "display, touchscreen, fingerprint, sensors, power, light, camera, vibrator");
    EXPECT_EQ(errorOf("factory", "serialNumber", "ZT"), "setAnswer: factory.serialNumber: the value is not valid JSON: ZT");
    EXPECT_EQ(errorOf("factory", "manufactureMode.x", "1"),
              "setAnswer: factory.manufactureMode: the answer is the number 1, which has no keys");
    EXPECT_EQ(errorOf("factory", "stationFlags..3", "\"x\""),
              "setAnswer: factory: \"stationFlags..3\" is not a key path (names joined by dots, such as "
              "\"stationFlags.3\")");
    EXPECT_EQ(errorOf("sensors", "flicker.frequencyHz", "700"),
              "setAnswer: sensors.flicker.frequencyHz: the frequency must be at least 0 and below 500 (half the 1000 "
              "Hz sampling rate), not 700");
    EXPECT_EQ(mmisim::ProfileToJson(profile), before);
}

TEST(SetAnswer, AFlickerLightCanBeAddedChangedAndRemoved) {
    Profile profile = mmisim::LoadProfile("bare");
    mmisim::SetAnswer(profile, "sensors", "flicker", "null");
    EXPECT_FALSE(profile.flicker.has_value());
    mmisim::SetAnswer(profile, "sensors", "flicker", "{\"sensorId\": 9, \"frequencyHz\": 60}");
    ASSERT_TRUE(profile.flicker.has_value());
    EXPECT_EQ(profile.flicker->sensorId, 9);
    mmisim::SetAnswer(profile, "sensors", "flicker.frequencyHz", "75.5");
    EXPECT_EQ(profile.flicker->light.frequencyHz, 75.5);
    EXPECT_EQ(profile.flicker->sensorId, 9);
}

// Serving a profile without the MMI library: the services run as the profile says and
// answer as it says.
class ServedProfile : public ::testing::Test {
protected:
    void TearDown() override { mmisim::Handset::Get().Configure(mmisim::DeviceProfile::Bare()); }
};

TEST_F(ServedProfile, StartsTheServicesAndSetsTheAnswers) {
    mmisim::Handset& handset = mmisim::Handset::Get();
    mmisim::ServeProfile(mmisim::LoadProfile("mixed"), handset);
    EXPECT_TRUE(handset.IsRunning(Family::kFactory));
    EXPECT_TRUE(handset.IsRunning(Family::kDisplay));
    EXPECT_FALSE(handset.IsRunning(Family::kVibrator));
    EXPECT_EQ(handset.profile()[Family::kDisplay].transport, Transport::kHidl);
    EXPECT_EQ(handset.profile()[Family::kDisplay].hidlMinor, 4);
    EXPECT_EQ(handset.factory().answers().deviceInfo.at(0).text, "ZT25M0055501");
    EXPECT_EQ(handset.factory().answers().oeminfo, "BOARD=CVX25M");
    EXPECT_EQ(handset.display().answers().screenConfig.text, "1080x2400@60");

    Profile changed = mmisim::LoadProfile("mixed");
    mmisim::SetAnswer(changed, "display", "screenConfig", "\"720x1600@60\"");
    mmisim::ApplyAnswers(changed, Family::kDisplay, handset);
    EXPECT_EQ(handset.display().answers().screenConfig.text, "720x1600@60");
    EXPECT_TRUE(handset.IsRunning(Family::kDisplay));
}

TEST_F(ServedProfile, AnAidlSensorServiceReportsTheLightsFrequencyAndAmplitude) {
    mmisim::ServeProfile(mmisim::LoadProfile("aidl"));
    const mmisim::SensorAnswers answers = mmisim::Handset::Get().sensors().answers();
    EXPECT_EQ(answers.sensorData.at(5).result, 0);
    EXPECT_EQ(answers.sensorData.at(5).data, (std::vector<int32_t>{100, 400}));
    EXPECT_EQ(answers.sensorData.at(6).data, (std::vector<int32_t>{812, 904, 655, 2371}));
}

TEST_F(ServedProfile, AHidlSensorServiceThatCannotDetectHandsOverRawSamples) {
    const Profile profile = mmisim::LoadProfile("hidl");
    mmisim::ServeProfile(profile);
    const mmisim::SensorAnswers answers = mmisim::Handset::Get().sensors().answers();
    EXPECT_FALSE(answers.flickerSupported);
    EXPECT_EQ(answers.sensorData.at(5).data, mmisim::LightSourceSamples(profile.flicker->light, 256, 1000.0));

    // A HIDL service that says it detects flicker reports the frequency like an AIDL one.
    Profile detecting = profile;
    mmisim::SetAnswer(detecting, "sensors", "flickerSupported", "true");
    EXPECT_EQ(mmisim::ServedSensorAnswers(detecting).sensorData.at(5).data, (std::vector<int32_t>{120, 350}));
}

}  // namespace
