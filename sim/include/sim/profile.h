// Device profiles of the simulated handset: JSON files that name, per service family, the
// generation served (AIDL, HIDL with its minor version, or none) and the answers the
// services give. The shipped profiles live in the repository's profiles/ folder.
//
// A profile file is one JSON object:
//
//   {
//     "name": "mixed",
//     "description": "free text",
//     "families": {
//       "factory":  { "service": "aidl", "answers": { "serialNumber": "ZT26A0012345" } },
//       "display":  { "service": "hidl", "version": "1.4",
//                     "faults": { "skipCallbacks": true, "latencyMs": 200 } },
//       "sensors":  { "service": "hidl", "version": "1.2", "v20": true,
//                     "answers": { "flicker": { "sensorId": 5, "frequencyHz": 100 } } },
//       ...                                   (all nine families must be present)
//     }
//   }
//
// Anything the format does not know (a key, a family, a type, a version outside the
// interface's range) is rejected with a ProfileError whose message reads
// "<file>: <json path>: <what is wrong>".
#pragma once

#include <sim/answers.h>
#include <sim/handset.h>
#include <sim/light_source.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace mmisim {

class ProfileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A light source in front of a light sensor, for the flicker measurement. Over AIDL, and
// over HIDL when the sensor service says it detects flicker itself, the service answers
// GetSensorData for `sensorId` with {frequency, amplitude}; otherwise with 256 raw samples
// of the light at 1000 Hz, which the library analyses itself.
struct FlickerLight {
    int32_t sensorId = 0;
    LightSource light{};
};

struct Profile {
    std::string name;
    std::string description;
    std::string source;  // the file the profile came from (or the name given to ParseProfile)
    DeviceProfile device;

    FactoryAnswers factory;
    DisplayAnswers display;
    TouchScreenAnswers touchScreen;
    FingerprintAnswers fingerprint;
    SensorAnswers sensors;  // without the flicker light's entry, which Serve adds
    PowerAnswers power;
    LightAnswers light;
    VaelonAnswers vaelon;
    VibratorAnswers vibrator;
    std::optional<FlickerLight> flicker;
    // How each family's services misbehave, by family (the late start is in `device`).
    std::array<ServiceFaults, kAllFamilies.size()> faults{};

    ServiceFaults& faultsOf(Family family) { return faults[static_cast<size_t>(family)]; }
    const ServiceFaults& faultsOf(Family family) const { return faults[static_cast<size_t>(family)]; }
};

// Parses profile text; `source` names it in error messages.
Profile ParseProfile(const std::string& text, const std::string& source);

// Reads and parses a profile file.
Profile LoadProfileFile(const std::string& path);

// The folder of the shipped profiles: $MMI_PROFILE_DIR when set, else the repository's
// profiles/ folder.
std::string ProfileDirectory();

// Names of the shipped profiles (file names without ".json"), sorted.
std::vector<std::string> ShippedProfileNames();

// A profile by shipped name ("hidl") or by file path (anything with a '/' or ending in
// ".json"). An unknown name is a ProfileError listing the shipped ones.
Profile LoadProfile(const std::string& nameOrPath);

// Serves the profile on the handset: its services are started as it says and every family
// answers and misbehaves as it says. Replaces whatever the handset served before
// (Handset::Configure).
void ServeProfile(const Profile& profile, Handset& handset = Handset::Get());

// Makes the handset answer as the profile says for one family, without touching the
// services.
void ApplyAnswers(const Profile& profile, Family family, Handset& handset = Handset::Get());

// The sensor answers as served: the profile's, plus the flicker light's entry.
SensorAnswers ServedSensorAnswers(const Profile& profile);

// Changes one answer of the profile: `key` is a path of the profile format below the
// family's "answers" object, with dots between levels ("serialNumber",
// "stationFlags.3", "flicker.frequencyHz"); `jsonValue` is the new value as JSON text.
// The result is checked like a profile file; a ProfileError leaves the profile unchanged.
void SetAnswer(Profile& profile, const std::string& family, const std::string& key, const std::string& jsonValue);

// The answer in force at the key path as JSON text ("" as key: the family's whole answers).
std::string GetAnswer(const Profile& profile, const std::string& family, const std::string& key);

// The profile in the file format (every answer written out).
std::string ProfileToJson(const Profile& profile);

}  // namespace mmisim
