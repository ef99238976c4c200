// Device profiles: reading and checking profile files, writing profiles back out, serving
// them on the simulated handset and changing single answers.
#include <sim/profile.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <variant>

#ifndef MMI_PROFILE_DIR
#define MMI_PROFILE_DIR "profiles"
#endif

namespace mmisim {
namespace {

using nlohmann::json;

constexpr double kFlickerSampleRate = 1000.0;
constexpr size_t kFlickerSamples = 256;

// ---------------------------------------------------------------------------------------
// Errors and paths

class Reader {
public:
    explicit Reader(std::string source) : mSource(std::move(source)) {}

    [[noreturn]] void Fail(const std::string& path, const std::string& what) const {
        throw ProfileError(mSource + ": " + (path.empty() ? std::string("top level") : path) + ": " + what);
    }

private:
    std::string mSource;
};

std::string Join(const std::string& path, const std::string& key) { return path.empty() ? key : path + "." + key; }

std::string Indexed(const std::string& path, size_t index) { return path + "[" + std::to_string(index) + "]"; }

std::string Describe(const json& value) {
    switch (value.type()) {
        case json::value_t::null: return "null";
        case json::value_t::boolean: return value.get<bool>() ? "true" : "false";
        case json::value_t::string: {
            std::string text = value.get<std::string>();
            if (text.size() > 40) text = text.substr(0, 37) + "...";
            return "the string " + json(text).dump();
        }
        case json::value_t::number_integer:
        case json::value_t::number_unsigned:
        case json::value_t::number_float: return "the number " + value.dump();
        case json::value_t::object: return "an object";
        case json::value_t::array: return "an array";
        default: return "a value of another kind";
    }
}

size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t above = row[j];
            const bool same = std::tolower(static_cast<unsigned char>(a[i - 1])) ==
                              std::tolower(static_cast<unsigned char>(b[j - 1]));
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (same ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string JoinWords(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words) joined += (joined.empty() ? "" : ", ") + word;
    return joined;
}

// "unknown key" with the closest known key, or the list of known keys.
std::string UnknownKeyMessage(const std::string& what, const std::string& key, const std::vector<std::string>& known) {
    std::string best;
    size_t bestDistance = SIZE_MAX;
    for (const std::string& candidate : known) {
        const size_t distance = EditDistance(key, candidate);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = candidate;
        }
    }
    if (!best.empty() && bestDistance <= std::max<size_t>(2, key.size() / 4)) {
        return "unknown " + what + "; did you mean \"" + best + "\"?";
    }
    return "unknown " + what + "; known here: " + JoinWords(known);
}

// ---------------------------------------------------------------------------------------
// Typed reads

const json& RequireObject(const Reader& reader, const json& value, const std::string& path) {
    if (!value.is_object()) reader.Fail(path, "expected an object, not " + Describe(value));
    return value;
}

const json& RequireArray(const Reader& reader, const json& value, const std::string& path) {
    if (!value.is_array()) reader.Fail(path, "expected an array, not " + Describe(value));
    return value;
}

int32_t ReadInt(const Reader& reader, const json& value, const std::string& path) {
    if (value.is_number_integer()) {
        if (value.is_number_unsigned()) {
            const auto number = value.get<uint64_t>();
            if (number > static_cast<uint64_t>(INT32_MAX)) reader.Fail(path, value.dump() + " does not fit in 32 bits");
            return static_cast<int32_t>(number);
        }
        const auto number = value.get<int64_t>();
        if (number < INT32_MIN || number > INT32_MAX) reader.Fail(path, value.dump() + " does not fit in 32 bits");
        return static_cast<int32_t>(number);
    }
    reader.Fail(path, "expected an integer, not " + Describe(value));
}

uint32_t ReadUnsigned(const Reader& reader, const json& value, const std::string& path) {
    if (value.is_number_unsigned() || (value.is_number_integer() && value.get<int64_t>() >= 0)) {
        const auto number = value.get<uint64_t>();
        if (number > UINT32_MAX) reader.Fail(path, value.dump() + " does not fit in 32 bits");
        return static_cast<uint32_t>(number);
    }
    reader.Fail(path, "expected an integer from 0 to 4294967295, not " + Describe(value));
}

double ReadNumber(const Reader& reader, const json& value, const std::string& path) {
    if (!value.is_number()) reader.Fail(path, "expected a number, not " + Describe(value));
    return value.get<double>();
}

bool ReadBool(const Reader& reader, const json& value, const std::string& path) {
    if (!value.is_boolean()) reader.Fail(path, "expected true or false, not " + Describe(value));
    return value.get<bool>();
}

std::string ReadString(const Reader& reader, const json& value, const std::string& path) {
    if (!value.is_string()) reader.Fail(path, "expected a string, not " + Describe(value));
    return value.get<std::string>();
}

std::vector<int32_t> ReadInts(const Reader& reader, const json& value, const std::string& path) {
    RequireArray(reader, value, path);
    std::vector<int32_t> ints;
    ints.reserve(value.size());
    for (size_t i = 0; i < value.size(); ++i) ints.push_back(ReadInt(reader, value[i], Indexed(path, i)));
    return ints;
}

// An object whose keys are read one by one; keys nobody asked for are errors.
class Fields {
public:
    Fields(const Reader& reader, const json& object, std::string path)
        : mReader(reader), mObject(RequireObject(reader, object, path)), mPath(std::move(path)) {}

    // Runs `read` with the value and its path when the key is present.
    void Optional(const std::string& key, const std::function<void(const json&, const std::string&)>& read) {
        mKnown.push_back(key);
        auto it = mObject.find(key);
        if (it != mObject.end()) read(*it, Join(mPath, key));
    }

    void Required(const std::string& key, const std::string& hint,
                  const std::function<void(const json&, const std::string&)>& read) {
        mKnown.push_back(key);
        auto it = mObject.find(key);
        if (it == mObject.end()) mReader.Fail(mPath, "missing \"" + key + "\"" + (hint.empty() ? "" : " (" + hint + ")"));
        read(*it, Join(mPath, key));
    }

    bool Has(const std::string& key) const { return mObject.contains(key); }

    // Rejects every key that no Optional/Required call named.
    void RejectOthers(const std::string& what = "key") const {
        for (auto it = mObject.begin(); it != mObject.end(); ++it) {
            if (std::find(mKnown.begin(), mKnown.end(), it.key()) == mKnown.end()) {
                mReader.Fail(Join(mPath, it.key()), UnknownKeyMessage(what, it.key(), mKnown));
            }
        }
    }

    // Checks the keys first, so that a misspelt key is reported before anything else.
    void ExpectOnly(const std::vector<std::string>& keys, const std::string& what = "key") {
        mKnown.insert(mKnown.end(), keys.begin(), keys.end());
        RejectOthers(what);
    }

private:
    const Reader& mReader;
    const json& mObject;
    std::string mPath;
    std::vector<std::string> mKnown;
};

// Integer-keyed maps ("stationFlags": {"3": ...}).
template <typename T>
void ReadIdMap(const Reader& reader, const json& value, const std::string& path, const std::string& idName,
               std::map<int32_t, T>& into, const std::function<T(const json&, const std::string&)>& readEntry) {
    RequireObject(reader, value, path);
    for (auto it = value.begin(); it != value.end(); ++it) {
        const std::string entryPath = Join(path, it.key());
        char* end = nullptr;
        errno = 0;
        const long id = std::strtol(it.key().c_str(), &end, 10);
        if (it.key().empty() || *end != '\0' || errno != 0 || id < INT32_MIN || id > INT32_MAX) {
            reader.Fail(entryPath, "expected " + idName + " (an integer) as the key, not \"" + it.key() + "\"");
        }
        into[static_cast<int32_t>(id)] = readEntry(it.value(), entryPath);
    }
}

// A status and a text: "text" (status 0) or {"ret": n, "text": "..."}.
TextReply ReadTextReply(const Reader& reader, const json& value, const std::string& path) {
    if (value.is_string()) return TextReply{0, value.get<std::string>()};
    if (!value.is_object()) reader.Fail(path, "expected a text or {\"ret\": ..., \"text\": ...}, not " + Describe(value));
    TextReply reply;
    Fields fields(reader, value, path);
    fields.Optional("ret", [&](const json& v, const std::string& p) { reply.ret = ReadInt(reader, v, p); });
    fields.Optional("text", [&](const json& v, const std::string& p) { reply.text = ReadString(reader, v, p); });
    fields.RejectOthers();
    return reply;
}

json TextReplyJson(const TextReply& reply) {
    if (reply.ret == 0) return reply.text;
    return json{{"ret", reply.ret}, {"text", reply.text}};
}

// ---------------------------------------------------------------------------------------
// Families and versions

struct HidlVersions {
    int major;
    int oldestMinor;
    int newestMinor;
};

// The HIDL versions each family's interface exists in (none for camera and vibrator).
std::optional<HidlVersions> HidlVersionsOf(Family family) {
    switch (family) {
        case Family::kFactory: return HidlVersions{1, 0, 1};
        case Family::kDisplay: return HidlVersions{1, 0, 5};
        case Family::kTouchScreen: return HidlVersions{1, 0, 0};
        case Family::kFingerprint: return HidlVersions{2, 1, 2};
        case Family::kSensors: return HidlVersions{1, 0, 2};
        case Family::kPower: return HidlVersions{1, 0, 0};
        case Family::kLight: return HidlVersions{2, 0, 0};
        case Family::kVaelon:
        case Family::kVibrator: return std::nullopt;
    }
    return std::nullopt;
}

std::string VersionText(int major, int minor) { return std::to_string(major) + "." + std::to_string(minor); }

std::string VersionRange(const HidlVersions& versions) {
    if (versions.oldestMinor == versions.newestMinor) return "only " + VersionText(versions.major, versions.newestMinor);
    return VersionText(versions.major, versions.oldestMinor) + " to " + VersionText(versions.major, versions.newestMinor);
}

int ReadVersion(const Reader& reader, const json& value, const std::string& path, Family family) {
    const HidlVersions versions = *HidlVersionsOf(family);
    const std::string range = VersionRange(versions);
    if (!value.is_string()) {
        reader.Fail(path, "expected a version text such as \"" + VersionText(versions.major, versions.newestMinor) +
                              "\", not " + Describe(value));
    }
    const std::string text = value.get<std::string>();
    int major = -1;
    int minor = -1;
    char extra = 0;
    if (std::sscanf(text.c_str(), "%d.%d%c", &major, &minor, &extra) != 2 || major < 0 || minor < 0 ||
        text.find_first_not_of("0123456789.") != std::string::npos) {
        reader.Fail(path, "\"" + text + "\" is not a version of the form MAJOR.MINOR (HIDL " + FamilyName(family) +
                              " versions: " + range + ")");
    }
    if (major != versions.major || minor < versions.oldestMinor || minor > versions.newestMinor) {
        reader.Fail(path, "HIDL " + std::string(FamilyName(family)) + " has no version " + text + " (served versions: " +
                              range + ")");
    }
    return minor;
}

const char* TransportText(Transport transport) {
    switch (transport) {
        case Transport::kNone: return "none";
        case Transport::kAidl: return "aidl";
        case Transport::kHidl: return "hidl";
    }
    return "none";
}

const char* ExtensionText(VibratorExtension extension) {
    switch (extension) {
        case VibratorExtension::kCustVibrator: return "custVibrator";
        case VibratorExtension::kNone: return "none";
        case VibratorExtension::kOtherInterface: return "other";
    }
    return "custVibrator";
}

std::string FamilyList() {
    std::vector<std::string> names;
    for (Family family : kAllFamilies) names.emplace_back(FamilyName(family));
    return JoinWords(names);
}

Family FamilyByName(const Reader& reader, const std::string& name, const std::string& path) {
    std::optional<Family> family = FamilyFromName(name);
    if (!family) {
        std::vector<std::string> names;
        for (Family known : kAllFamilies) names.emplace_back(FamilyName(known));
        reader.Fail(path, UnknownKeyMessage("service family \"" + name + "\"", name, names));
    }
    return *family;
}

// ---------------------------------------------------------------------------------------
// Answers of each family

// Items of getDeviceInfo with names of their own in the profile format.
const std::vector<std::pair<std::string, int32_t>>& DeviceInfoAliases() {
    static const std::vector<std::pair<std::string, int32_t>> aliases = {
            {"serialNumber", 0}, {"autoStartFlag", 5}, {"nmCardTestResult", 14},
            {"testPackageName", 35}, {"rsaSignInfo", 44}};
    return aliases;
}

using FieldReader = std::function<void(const json&, const std::string&)>;

FieldReader IntInto(const Reader& reader, int32_t& into) {
    return [&reader, &into](const json& v, const std::string& p) { into = ReadInt(reader, v, p); };
}
FieldReader BoolInto(const Reader& reader, bool& into) {
    return [&reader, &into](const json& v, const std::string& p) { into = ReadBool(reader, v, p); };
}
FieldReader TextReplyInto(const Reader& reader, TextReply& into) {
    return [&reader, &into](const json& v, const std::string& p) { into = ReadTextReply(reader, v, p); };
}
FieldReader StringInto(const Reader& reader, std::string& into) {
    return [&reader, &into](const json& v, const std::string& p) { into = ReadString(reader, v, p); };
}

void ReadFactory(const Reader& reader, const json& value, const std::string& path, FactoryAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("factoryVersion", BoolInto(reader, a.factoryVersion));
    f.Optional("manufactureFileName", TextReplyInto(reader, a.manufactureFileName));
    std::map<int32_t, std::string> givenBy;  // item -> the key that gave it
    for (const auto& [alias, item] : DeviceInfoAliases()) {
        f.Optional(alias, [&, item = item, alias = alias](const json& v, const std::string& p) {
            a.deviceInfo[item] = ReadTextReply(reader, v, p);
            givenBy[item] = alias;
        });
    }
    f.Optional("deviceInfo", [&](const json& v, const std::string& p) {
        std::map<int32_t, TextReply> items;
        ReadIdMap<TextReply>(reader, v, p, "an item number", items,
                             [&](const json& e, const std::string& ep) { return ReadTextReply(reader, e, ep); });
        for (const auto& [item, reply] : items) {
            auto given = givenBy.find(item);
            if (given != givenBy.end()) {
                reader.Fail(Join(p, std::to_string(item)),
                            "item " + std::to_string(item) + " is also given as \"" + given->second + "\"; give it once");
            }
            a.deviceInfo[item] = reply;
        }
    });
    f.Optional("setDeviceInfoResult", IntInto(reader, a.setDeviceInfoResult));
    f.Optional("manufactureMode", IntInto(reader, a.manufactureMode));
    f.Optional("featuresCheckResult", IntInto(reader, a.featuresCheckResult));
    f.Optional("clearDeviceInfoResult", IntInto(reader, a.clearDeviceInfoResult));
    f.Optional("releaseFactoryResourceResult", IntInto(reader, a.releaseFactoryResourceResult));
    f.Optional("mmiTestResultResult", IntInto(reader, a.mmiTestResultResult));
    f.Optional("stationFlags", [&](const json& v, const std::string& p) {
        ReadIdMap<TextReply>(reader, v, p, "a station id", a.stationFlags,
                             [&](const json& e, const std::string& ep) { return ReadTextReply(reader, e, ep); });
    });
    f.Optional("commandDataResult", IntInto(reader, a.commandDataResult));
    f.Optional("fmdCmdDataResult", IntInto(reader, a.fmdCmdDataResult));
    f.Optional("fmdMessageResult", IntInto(reader, a.fmdMessageResult));
    f.Optional("oeminfo", [&](const json& v, const std::string& p) {
        const TextReply reply = ReadTextReply(reader, v, p);
        a.oeminfoRet = reply.ret;
        a.oeminfo = reply.text;
    });
    f.RejectOthers();
}

json FactoryJson(const FactoryAnswers& a) {
    json j;
    j["factoryVersion"] = a.factoryVersion;
    j["manufactureFileName"] = TextReplyJson(a.manufactureFileName);
    // Items with names of their own always appear (an item nobody scripted answers {0, ""}).
    const auto& aliases = DeviceInfoAliases();
    for (const auto& [alias, item] : aliases) {
        auto it = a.deviceInfo.find(item);
        j[alias] = TextReplyJson(it == a.deviceInfo.end() ? TextReply{} : it->second);
    }
    json others = json::object();
    for (const auto& [item, reply] : a.deviceInfo) {
        const bool named = std::any_of(aliases.begin(), aliases.end(), [item = item](const auto& e) { return e.second == item; });
        if (!named) others[std::to_string(item)] = TextReplyJson(reply);
    }
    j["deviceInfo"] = others;
    j["setDeviceInfoResult"] = a.setDeviceInfoResult;
    j["manufactureMode"] = a.manufactureMode;
    j["featuresCheckResult"] = a.featuresCheckResult;
    j["clearDeviceInfoResult"] = a.clearDeviceInfoResult;
    j["releaseFactoryResourceResult"] = a.releaseFactoryResourceResult;
    j["mmiTestResultResult"] = a.mmiTestResultResult;
    json flags = json::object();
    for (const auto& [station, reply] : a.stationFlags) flags[std::to_string(station)] = TextReplyJson(reply);
    j["stationFlags"] = flags;
    j["commandDataResult"] = a.commandDataResult;
    j["fmdCmdDataResult"] = a.fmdCmdDataResult;
    j["fmdMessageResult"] = a.fmdMessageResult;
    j["oeminfo"] = TextReplyJson(TextReply{a.oeminfoRet, a.oeminfo});
    return j;
}

void ReadDisplay(const Reader& reader, const json& value, const std::string& path, DisplayAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("screenCurrentFps", TextReplyInto(reader, a.screenCurrentFps));
    f.Optional("selectStationResult", IntInto(reader, a.selectStationResult));
    f.Optional("screenConfig", TextReplyInto(reader, a.screenConfig));
    f.Optional("displayParameter", TextReplyInto(reader, a.displayParameter));
    f.Optional("backLightResult", IntInto(reader, a.backLightResult));
    f.Optional("panelTypeRet", IntInto(reader, a.panelTypeRet));
    f.Optional("panelType", IntInto(reader, a.panelType));
    f.Optional("selfAdaptMinFpsResult", IntInto(reader, a.selfAdaptMinFpsResult));
    f.RejectOthers();
}

json DisplayJson(const DisplayAnswers& a) {
    return json{{"screenCurrentFps", TextReplyJson(a.screenCurrentFps)},
                {"selectStationResult", a.selectStationResult},
                {"screenConfig", TextReplyJson(a.screenConfig)},
                {"displayParameter", TextReplyJson(a.displayParameter)},
                {"backLightResult", a.backLightResult},
                {"panelTypeRet", a.panelTypeRet},
                {"panelType", a.panelType},
                {"selfAdaptMinFpsResult", a.selfAdaptMinFpsResult}};
}

void ReadTouchScreen(const Reader& reader, const json& value, const std::string& path, TouchScreenAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("capacitanceTest", TextReplyInto(reader, a.capacitanceTest));
    f.Optional("capacitanceCalibrate", TextReplyInto(reader, a.capacitanceCalibrate));
    f.Optional("rotateCrown", TextReplyInto(reader, a.rotateCrown));
    f.Optional("featureConfigResult", IntInto(reader, a.featureConfigResult));
    f.RejectOthers();
}

json TouchScreenJson(const TouchScreenAnswers& a) {
    return json{{"capacitanceTest", TextReplyJson(a.capacitanceTest)},
                {"capacitanceCalibrate", TextReplyJson(a.capacitanceCalibrate)},
                {"rotateCrown", TextReplyJson(a.rotateCrown)},
                {"featureConfigResult", a.featureConfigResult}};
}

void ReadFingerprint(const Reader& reader, const json& value, const std::string& path, FingerprintAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("cmdResult", IntInto(reader, a.cmdResult));
    f.RejectOthers();
}

json FingerprintJson(const FingerprintAnswers& a) { return json{{"cmdResult", a.cmdResult}}; }

DataReply ReadDataReply(const Reader& reader, const json& value, const std::string& path) {
    if (value.is_array()) return DataReply{0, ReadInts(reader, value, path)};
    if (!value.is_object()) {
        reader.Fail(path, "expected an array of integers or {\"result\": ..., \"data\": [...]}, not " + Describe(value));
    }
    DataReply reply;
    Fields f(reader, value, path);
    f.Optional("result", IntInto(reader, reply.result));
    f.Optional("data", [&](const json& v, const std::string& p) { reply.data = ReadInts(reader, v, p); });
    f.RejectOthers();
    return reply;
}

json DataReplyJson(const DataReply& reply) {
    if (reply.result == 0) return reply.data;
    return json{{"result", reply.result}, {"data", reply.data}};
}

FlickerLight ReadFlicker(const Reader& reader, const json& value, const std::string& path) {
    FlickerLight flicker;
    flicker.light = LightSource{0.0, 100.0, 1000.0, 0.0, 1};
    Fields f(reader, value, path);
    f.Required("sensorId", "the light sensor the light shines on",
               [&](const json& v, const std::string& p) { flicker.sensorId = ReadInt(reader, v, p); });
    f.Required("frequencyHz", "the flicker frequency", [&](const json& v, const std::string& p) {
        flicker.light.frequencyHz = ReadNumber(reader, v, p);
        if (!(flicker.light.frequencyHz >= 0.0 && flicker.light.frequencyHz < kFlickerSampleRate / 2)) {
            reader.Fail(p, "the frequency must be at least 0 and below 500 (half the 1000 Hz sampling rate), not " +
                                   v.dump());
        }
    });
    f.Optional("amplitude", [&](const json& v, const std::string& p) {
        flicker.light.amplitude = ReadNumber(reader, v, p);
        if (flicker.light.amplitude < 0.0) reader.Fail(p, "the amplitude must not be negative");
    });
    f.Optional("offset", [&](const json& v, const std::string& p) { flicker.light.offset = ReadNumber(reader, v, p); });
    f.Optional("noise", [&](const json& v, const std::string& p) {
        flicker.light.noise = ReadNumber(reader, v, p);
        if (flicker.light.noise < 0.0) reader.Fail(p, "the noise (a standard deviation) must not be negative");
    });
    f.Optional("seed", [&](const json& v, const std::string& p) { flicker.light.seed = ReadUnsigned(reader, v, p); });
    f.RejectOthers();
    return flicker;
}

json FlickerJson(const FlickerLight& flicker) {
    return json{{"sensorId", flicker.sensorId},         {"frequencyHz", flicker.light.frequencyHz},
                {"amplitude", flicker.light.amplitude}, {"offset", flicker.light.offset},
                {"noise", flicker.light.noise},         {"seed", flicker.light.seed}};
}

void ReadSensors(const Reader& reader, const json& value, const std::string& path, SensorAnswers& a,
                 std::optional<FlickerLight>& flicker) {
    Fields f(reader, value, path);
    f.Optional("startCalibrateResult", IntInto(reader, a.startCalibrateResult));
    f.Optional("startSelfTestResult", IntInto(reader, a.startSelfTestResult));
    f.Optional("calibrateDelayTime", IntInto(reader, a.calibrateDelayTime));
    f.Optional("selfTestDelayTime", IntInto(reader, a.selfTestDelayTime));
    f.Optional("calibrateResult", IntInto(reader, a.calibrateResult));
    f.Optional("selfTestResult", IntInto(reader, a.selfTestResult));
    f.Optional("calibrateType", TextReplyInto(reader, a.calibrateType));
    f.Optional("sensorData", [&](const json& v, const std::string& p) {
        ReadIdMap<DataReply>(reader, v, p, "a sensor id", a.sensorData,
                             [&](const json& e, const std::string& ep) { return ReadDataReply(reader, e, ep); });
    });
    f.Optional("flickerSupported", BoolInto(reader, a.flickerSupported));
    f.Optional("parameter", [&](const json& v, const std::string& p) {
        Fields pf(reader, v, p);
        pf.Optional("ret", IntInto(reader, a.parameter.ret));
        pf.Optional("para", StringInto(reader, a.parameter.para));
        pf.Optional("data", [&](const json& dv, const std::string& dp) { a.parameter.data = ReadInts(reader, dv, dp); });
        pf.Optional("keepCallerData", BoolInto(reader, a.parameter.keepCallerData));
        pf.RejectOthers();
    });
    f.Optional("activateResult", IntInto(reader, a.activateResult));
    f.Optional("compassRawValueLimit", IntInto(reader, a.compassRawValueLimit));
    f.Optional("flicker", [&](const json& v, const std::string& p) {
        if (v.is_null()) {
            flicker.reset();
            return;
        }
        flicker = ReadFlicker(reader, v, p);
    });
    f.RejectOthers();
    if (flicker && a.sensorData.count(flicker->sensorId) != 0) {
        reader.Fail(Join(Join(path, "sensorData"), std::to_string(flicker->sensorId)),
                    "sensor " + std::to_string(flicker->sensorId) +
                            " is the flicker light's sensor (flicker.sensorId), whose data the light gives; "
                            "give it in one place");
    }
}

json SensorsJson(const SensorAnswers& a, const std::optional<FlickerLight>& flicker) {
    json data = json::object();
    for (const auto& [sensor, reply] : a.sensorData) data[std::to_string(sensor)] = DataReplyJson(reply);
    return json{{"startCalibrateResult", a.startCalibrateResult},
                {"startSelfTestResult", a.startSelfTestResult},
                {"calibrateDelayTime", a.calibrateDelayTime},
                {"selfTestDelayTime", a.selfTestDelayTime},
                {"calibrateResult", a.calibrateResult},
                {"selfTestResult", a.selfTestResult},
                {"calibrateType", TextReplyJson(a.calibrateType)},
                {"sensorData", data},
                {"flickerSupported", a.flickerSupported},
                {"parameter",
                 {{"ret", a.parameter.ret},
                  {"para", a.parameter.para},
                  {"data", a.parameter.data},
                  {"keepCallerData", a.parameter.keepCallerData}}},
                {"activateResult", a.activateResult},
                {"compassRawValueLimit", a.compassRawValueLimit},
                {"flicker", flicker ? FlickerJson(*flicker) : json(nullptr)}};
}

void ReadPower(const Reader& reader, const json& value, const std::string& path, PowerAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("setPowerStateResult", IntInto(reader, a.setPowerStateResult));
    f.Optional("powerState", TextReplyInto(reader, a.powerState));
    f.Optional("usbSpeed", TextReplyInto(reader, a.usbSpeed));
    f.RejectOthers();
}

json PowerJson(const PowerAnswers& a) {
    return json{{"setPowerStateResult", a.setPowerStateResult},
                {"powerState", TextReplyJson(a.powerState)},
                {"usbSpeed", TextReplyJson(a.usbSpeed)}};
}

void ReadLight(const Reader& reader, const json& value, const std::string& path, LightAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("brightnessResult", IntInto(reader, a.brightnessResult));
    f.RejectOthers();
}

json LightJson(const LightAnswers& a) { return json{{"brightnessResult", a.brightnessResult}}; }

void ReadVaelon(const Reader& reader, const json& value, const std::string& path, VaelonAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("capabilities", [&](const json& v, const std::string& p) {
        RequireArray(reader, v, p);
        a.capabilities.clear();
        for (size_t i = 0; i < v.size(); ++i) {
            Capability capability;
            Fields cf(reader, v[i], Indexed(p, i));
            cf.Required("serviceType", "", IntInto(reader, capability.serviceType));
            cf.Optional("overtimes",
                        [&](const json& ov, const std::string& op) { capability.overtimes = ReadInts(reader, ov, op); });
            cf.RejectOthers();
            a.capabilities.push_back(capability);
        }
    });
    f.Optional("registerResult", IntInto(reader, a.registerResult));
    f.Optional("clientHandle", IntInto(reader, a.clientHandle));
    f.Optional("unregisterResult", IntInto(reader, a.unregisterResult));
    f.RejectOthers();
}

json VaelonJson(const VaelonAnswers& a) {
    json capabilities = json::array();
    for (const Capability& capability : a.capabilities) {
        capabilities.push_back(json{{"serviceType", capability.serviceType}, {"overtimes", capability.overtimes}});
    }
    return json{{"capabilities", capabilities},
                {"registerResult", a.registerResult},
                {"clientHandle", a.clientHandle},
                {"unregisterResult", a.unregisterResult}};
}

void ReadVibrator(const Reader& reader, const json& value, const std::string& path, VibratorAnswers& a) {
    Fields f(reader, value, path);
    f.Optional("result", StringInto(reader, a.result));
    f.RejectOthers();
}

json VibratorJson(const VibratorAnswers& a) { return json{{"result", a.result}}; }

// Reads a family's answers over the defaults of its answer record.
void ReadAnswers(const Reader& reader, Family family, const json& value, const std::string& path, Profile& profile) {
    switch (family) {
        case Family::kFactory: profile.factory = FactoryAnswers(); return ReadFactory(reader, value, path, profile.factory);
        case Family::kDisplay: profile.display = DisplayAnswers(); return ReadDisplay(reader, value, path, profile.display);
        case Family::kTouchScreen:
            profile.touchScreen = TouchScreenAnswers();
            return ReadTouchScreen(reader, value, path, profile.touchScreen);
        case Family::kFingerprint:
            profile.fingerprint = FingerprintAnswers();
            return ReadFingerprint(reader, value, path, profile.fingerprint);
        case Family::kSensors:
            profile.sensors = SensorAnswers();
            profile.flicker.reset();
            return ReadSensors(reader, value, path, profile.sensors, profile.flicker);
        case Family::kPower: profile.power = PowerAnswers(); return ReadPower(reader, value, path, profile.power);
        case Family::kLight: profile.light = LightAnswers(); return ReadLight(reader, value, path, profile.light);
        case Family::kVaelon: profile.vaelon = VaelonAnswers(); return ReadVaelon(reader, value, path, profile.vaelon);
        case Family::kVibrator:
            profile.vibrator = VibratorAnswers();
            return ReadVibrator(reader, value, path, profile.vibrator);
    }
}

json AnswersJson(const Profile& profile, Family family) {
    switch (family) {
        case Family::kFactory: return FactoryJson(profile.factory);
        case Family::kDisplay: return DisplayJson(profile.display);
        case Family::kTouchScreen: return TouchScreenJson(profile.touchScreen);
        case Family::kFingerprint: return FingerprintJson(profile.fingerprint);
        case Family::kSensors: return SensorsJson(profile.sensors, profile.flicker);
        case Family::kPower: return PowerJson(profile.power);
        case Family::kLight: return LightJson(profile.light);
        case Family::kVaelon: return VaelonJson(profile.vaelon);
        case Family::kVibrator: return VibratorJson(profile.vibrator);
    }
    return json::object();
}

// ---------------------------------------------------------------------------------------
// Faults of a family's services

// Each key of a family's "faults" object, named once here: where its value lives. Reading
// and writing both walk this list.
using FaultValue = std::variant<bool*, int32_t*>;
struct FaultKey {
    const char* key;
    FaultValue (*at)(Profile& profile, Family family);
};

const std::vector<FaultKey>& FaultKeys() {
    static const std::vector<FaultKey> keys = {
            {"failCalls", [](Profile& p, Family f) -> FaultValue { return &p.faultsOf(f).failCalls; }},
            {"skipCallbacks", [](Profile& p, Family f) -> FaultValue { return &p.faultsOf(f).skipCallbacks; }},
            {"latencyMs", [](Profile& p, Family f) -> FaultValue { return &p.faultsOf(f).latencyMs; }},
            {"lateStartMs", [](Profile& p, Family f) -> FaultValue { return &p.device[f].lateStartMs; }},
    };
    return keys;
}

void ReadFaults(const Reader& reader, Family family, const json& value, const std::string& path, Profile& profile) {
    Fields f(reader, value, path);
    for (const FaultKey& key : FaultKeys()) {
        f.Optional(key.key, [&](const json& v, const std::string& p) {
            const FaultValue at = key.at(profile, family);
            if (std::holds_alternative<bool*>(at)) {
                *std::get<bool*>(at) = ReadBool(reader, v, p);
                return;
            }
            const int32_t millis = ReadInt(reader, v, p);
            if (millis < 0) reader.Fail(p, "a time in milliseconds must not be negative");
            *std::get<int32_t*>(at) = millis;
        });
    }
    f.RejectOthers();
    if (profile.faultsOf(family).skipCallbacks && profile.device[family].transport != Transport::kHidl) {
        reader.Fail(Join(path, "skipCallbacks"), "only a HIDL service answers through result callbacks");
    }
}

json FaultsJson(const Profile& profile, Family family) {
    json j = json::object();
    // The keys' places are only read here.
    Profile& readable = const_cast<Profile&>(profile);
    for (const FaultKey& key : FaultKeys()) {
        std::visit([&](auto* value) { j[key.key] = *value; }, key.at(readable, family));
    }
    return j;
}

// ---------------------------------------------------------------------------------------
// The service of a family

void ReadFamily(const Reader& reader, Family family, const json& value, const std::string& path, Profile& profile) {
    FamilyConfig& config = profile.device[family];
    config = FamilyConfig();
    profile.faultsOf(family) = ServiceFaults();
    Fields f(reader, value, path);
    f.ExpectOnly({"service", "version", "v1x", "v20", "session", "extension", "answers", "faults"});
    const std::string name = FamilyName(family);
    const bool hasHidl = HidlVersionsOf(family).has_value();
    f.Required("service", hasHidl ? "\"aidl\", \"hidl\" or \"none\"" : "\"aidl\" or \"none\"",
               [&](const json& v, const std::string& p) {
                   const std::string service = ReadString(reader, v, p);
                   if (service == "aidl") {
                       config.transport = Transport::kAidl;
                   } else if (service == "hidl" && hasHidl) {
                       config.transport = Transport::kHidl;
                   } else if (service == "none") {
                       config.transport = Transport::kNone;
                   } else if (service == "hidl") {
                       reader.Fail(p, "the " + name + " service exists only over AIDL (\"aidl\" or \"none\")");
                   } else {
                       reader.Fail(p, "expected " + std::string(hasHidl ? "\"aidl\", \"hidl\" or \"none\"" : "\"aidl\" or \"none\"") +
                                              ", not \"" + service + "\"");
                   }
               });
    const bool hidl = config.transport == Transport::kHidl;
    const bool aidl = config.transport == Transport::kAidl;
    f.Optional("version", [&](const json& v, const std::string& p) {
        if (!hidl) reader.Fail(p, "only a HIDL service has a version (this one is \"" + std::string(TransportText(config.transport)) + "\")");
        config.hidlMinor = ReadVersion(reader, v, p, family);
    });
    for (const char* key : {"v1x", "v20"}) {
        f.Optional(key, [&, key](const json& v, const std::string& p) {
            if (family != Family::kSensors || !hidl) reader.Fail(p, "only for a HIDL sensors service");
            (std::string(key) == "v1x" ? config.sensorsV1 : config.sensorsV2) = ReadBool(reader, v, p);
        });
    }
    if (family == Family::kSensors && hidl && !config.sensorsV1 && !config.sensorsV2) {
        reader.Fail(Join(path, "v20"), "with \"v1x\" false too no HIDL sensors service is left; say \"service\": \"none\"");
    }
    f.Optional("session", [&](const json& v, const std::string& p) {
        if (family != Family::kFingerprint || !aidl) reader.Fail(p, "only for an AIDL fingerprint service");
        config.fingerprintNoSession = !ReadBool(reader, v, p);
    });
    f.Optional("extension", [&](const json& v, const std::string& p) {
        if (family != Family::kVibrator || !aidl) reader.Fail(p, "only for an AIDL vibrator service");
        const std::string extension = ReadString(reader, v, p);
        if (extension == "custVibrator") {
            config.vibratorExtension = VibratorExtension::kCustVibrator;
        } else if (extension == "none") {
            config.vibratorExtension = VibratorExtension::kNone;
        } else if (extension == "other") {
            config.vibratorExtension = VibratorExtension::kOtherInterface;
        } else {
            reader.Fail(p, "expected \"custVibrator\", \"none\" or \"other\", not \"" + extension + "\"");
        }
    });
    f.Optional("answers", [&](const json& v, const std::string& p) { ReadAnswers(reader, family, v, p, profile); });
    f.Optional("faults", [&](const json& v, const std::string& p) {
        if (config.transport == Transport::kNone) reader.Fail(p, "no service is served to misbehave");
        ReadFaults(reader, family, v, p, profile);
    });
}

json FamilyJson(const Profile& profile, Family family) {
    const FamilyConfig& config = profile.device[family];
    json j;
    j["service"] = TransportText(config.transport);
    if (config.transport == Transport::kHidl) {
        const HidlVersions versions = *HidlVersionsOf(family);
        const int minor = config.hidlMinor < 0 ? versions.newestMinor
                                               : std::clamp(config.hidlMinor, versions.oldestMinor, versions.newestMinor);
        j["version"] = VersionText(versions.major, minor);
        if (family == Family::kSensors) {
            j["v1x"] = config.sensorsV1;
            j["v20"] = config.sensorsV2;
        }
    }
    if (config.transport == Transport::kAidl && family == Family::kFingerprint) j["session"] = !config.fingerprintNoSession;
    if (config.transport == Transport::kAidl && family == Family::kVibrator) {
        j["extension"] = ExtensionText(config.vibratorExtension);
    }
    j["answers"] = AnswersJson(profile, family);
    if (config.transport != Transport::kNone) j["faults"] = FaultsJson(profile, family);
    return j;
}

// Line and column of a byte offset, both counted from 1.
std::string Place(const std::string& text, size_t byte) {
    size_t line = 1;
    size_t column = 1;
    for (size_t i = 0; i < byte && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

std::string StemOf(const std::string& source) {
    std::string stem = std::filesystem::path(source).filename().string();
    const std::string suffix = ".json";
    if (stem.size() > suffix.size() && stem.compare(stem.size() - suffix.size(), suffix.size(), suffix) == 0) {
        stem.resize(stem.size() - suffix.size());
    }
    return stem;
}

std::vector<std::string> SplitKey(const std::string& key) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream stream(key);
    while (std::getline(stream, part, '.')) parts.push_back(part);
    if (!key.empty() && key.back() == '.') parts.emplace_back();
    return parts;
}

}  // namespace

Profile ParseProfile(const std::string& text, const std::string& source) {
    const Reader reader(source);
    json document;
    // A key given twice in one object would silently lose the first value: reject it.
    struct Level {
        std::set<std::string> keys;
        std::string path;
        bool isObject;
    };
    std::vector<Level> levels;
    std::string lastKey;
    const json::parser_callback_t checkKeys = [&](int /*depth*/, json::parse_event_t event, json& parsed) {
        switch (event) {
            case json::parse_event_t::object_start:
            case json::parse_event_t::array_start: {
                std::string path;
                if (!levels.empty()) {
                    path = levels.back().isObject ? Join(levels.back().path, lastKey) : levels.back().path + "[]";
                }
                levels.push_back(Level{{}, path, event == json::parse_event_t::object_start});
                break;
            }
            case json::parse_event_t::object_end:
            case json::parse_event_t::array_end:
                if (!levels.empty()) levels.pop_back();
                break;
            case json::parse_event_t::key:
                lastKey = parsed.get<std::string>();
                if (!levels.empty() && !levels.back().keys.insert(lastKey).second) {
                    reader.Fail(Join(levels.back().path, lastKey), "the key is given twice in one object");
                }
                break;
            case json::parse_event_t::value: break;
        }
        return true;
    };
    try {
        document = json::parse(text, checkKeys);
    } catch (const json::parse_error& error) {
        std::string what = error.what();
        const size_t detail = what.find(": ", what.find("column"));
        what = detail == std::string::npos ? what : what.substr(detail + 2);
        throw ProfileError(source + ": " + Place(text, error.byte == 0 ? 0 : error.byte - 1) + ": not valid JSON: " + what);
    }
    Profile profile;
    profile.source = source;
    profile.name = StemOf(source);
    Fields top(reader, document, "");
    top.ExpectOnly({"name", "description", "families"});
    top.Optional("name", [&](const json& v, const std::string& p) {
        profile.name = ReadString(reader, v, p);
        if (profile.name.empty()) reader.Fail(p, "the name must not be empty");
    });
    top.Optional("description", StringInto(reader, profile.description));
    top.Required("families", "an object with the service of each family: " + FamilyList(),
                 [&](const json& families, const std::string& path) {
                     RequireObject(reader, families, path);
                     for (auto it = families.begin(); it != families.end(); ++it) {
                         const Family family = FamilyByName(reader, it.key(), Join(path, it.key()));
                         ReadFamily(reader, family, it.value(), Join(path, it.key()), profile);
                     }
                     for (Family family : kAllFamilies) {
                         if (!families.contains(FamilyName(family))) {
                             reader.Fail(path, std::string("missing \"") + FamilyName(family) +
                                                       "\" (every family says its service, \"none\" for one not served)");
                         }
                     }
                 });
    profile.device.name = profile.name;
    return profile;
}

Profile LoadProfileFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw ProfileError(path + ": cannot be read: " + std::strerror(errno));
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) throw ProfileError(path + ": cannot be read: " + std::strerror(errno));
    return ParseProfile(text.str(), path);
}

std::string ProfileDirectory() {
    const char* configured = std::getenv("MMI_PROFILE_DIR");
    if (configured != nullptr && *configured != '\0') return configured;
    return MMI_PROFILE_DIR;
}

std::vector<std::string> ShippedProfileNames() {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(ProfileDirectory(), error)) {
        if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Profile LoadProfile(const std::string& nameOrPath) {
    const bool isPath = nameOrPath.find('/') != std::string::npos ||
                        (nameOrPath.size() > 5 && nameOrPath.compare(nameOrPath.size() - 5, 5, ".json") == 0);
    if (isPath) return LoadProfileFile(nameOrPath);
    const std::vector<std::string> shipped = ShippedProfileNames();
    if (nameOrPath.empty() || std::find(shipped.begin(), shipped.end(), nameOrPath) == shipped.end()) {
        throw ProfileError("unknown device profile \"" + nameOrPath + "\"; the shipped profiles are " +
                           (shipped.empty() ? std::string("missing from ") + ProfileDirectory() : JoinWords(shipped)) +
                           " (or give the path of a profile file)");
    }
    return LoadProfileFile((std::filesystem::path(ProfileDirectory()) / (nameOrPath + ".json")).string());
}

SensorAnswers ServedSensorAnswers(const Profile& profile) {
    SensorAnswers answers = profile.sensors;
    if (profile.flicker) {
        const FlickerLight& flicker = *profile.flicker;
        const bool serviceDetects =
                profile.device[Family::kSensors].transport == Transport::kAidl || answers.flickerSupported;
        if (serviceDetects) {
            answers.sensorData[flicker.sensorId] =
                    DataReply{0,
                              {static_cast<int32_t>(std::lround(flicker.light.frequencyHz)),
                               static_cast<int32_t>(std::lround(flicker.light.amplitude))}};
        } else {
            answers.sensorData[flicker.sensorId] =
                    DataReply{0, LightSourceSamples(flicker.light, kFlickerSamples, kFlickerSampleRate)};
        }
    }
    return answers;
}

void ApplyAnswers(const Profile& profile, Family family, Handset& handset) {
    switch (family) {
        case Family::kFactory: handset.factory().update([&](FactoryAnswers& a) { a = profile.factory; }); break;
        case Family::kDisplay: handset.display().update([&](DisplayAnswers& a) { a = profile.display; }); break;
        case Family::kTouchScreen:
            handset.touchScreen().update([&](TouchScreenAnswers& a) { a = profile.touchScreen; });
            break;
        case Family::kFingerprint:
            handset.fingerprint().update([&](FingerprintAnswers& a) { a = profile.fingerprint; });
            break;
        case Family::kSensors: {
            const SensorAnswers served = ServedSensorAnswers(profile);
            handset.sensors().update([&](SensorAnswers& a) { a = served; });
            break;
        }
        case Family::kPower: handset.power().update([&](PowerAnswers& a) { a = profile.power; }); break;
        case Family::kLight: handset.light().update([&](LightAnswers& a) { a = profile.light; }); break;
        case Family::kVaelon: handset.vaelon().update([&](VaelonAnswers& a) { a = profile.vaelon; }); break;
        case Family::kVibrator: handset.vibrator().update([&](VibratorAnswers& a) { a = profile.vibrator; }); break;
    }
}

void ServeProfile(const Profile& profile, Handset& handset) {
    handset.Configure(profile.device);
    for (Family family : kAllFamilies) {
        ApplyAnswers(profile, family, handset);
        handset.setFaults(family, profile.faultsOf(family));
    }
}

void SetAnswer(Profile& profile, const std::string& familyName, const std::string& key, const std::string& jsonValue) {
    const Reader reader("setAnswer");
    const Family family = FamilyByName(reader, familyName, familyName);
    json value;
    try {
        value = json::parse(jsonValue);
    } catch (const json::parse_error&) {
        reader.Fail(Join(familyName, key), "the value is not valid JSON: " + jsonValue);
    }
    std::vector<std::string> parts = SplitKey(key);
    if (parts.empty() || std::any_of(parts.begin(), parts.end(), [](const std::string& p) { return p.empty(); })) {
        reader.Fail(familyName, "\"" + key + "\" is not a key path (names joined by dots, such as \"stationFlags.3\")");
    }
    // Device-info items with names of their own are set by that name.
    if (family == Family::kFactory && parts.size() == 2 && parts[0] == "deviceInfo") {
        for (const auto& [alias, item] : DeviceInfoAliases()) {
            if (parts[1] == std::to_string(item)) parts = {alias};
        }
    }
    json answers = AnswersJson(profile, family);
    json* node = &answers;
    std::string path = familyName;
    for (size_t i = 0; i + 1 < parts.size(); ++i) {
        path = Join(path, parts[i]);
        if (node->is_object() && !node->contains(parts[i])) {
            (*node)[parts[i]] = json::object();
        } else if (!node->is_object()) {
            reader.Fail(path, "the answer above this key is " + Describe(*node) + ", which has no keys");
        }
        node = &(*node)[parts[i]];
        if (node->is_null()) *node = json::object();
    }
    if (!node->is_object()) reader.Fail(path, "the answer is " + Describe(*node) + ", which has no keys");
    (*node)[parts.back()] = value;
    Profile changed = profile;
    ReadAnswers(reader, family, answers, familyName, changed);
    profile = std::move(changed);
}

std::string GetAnswer(const Profile& profile, const std::string& familyName, const std::string& key) {
    const Reader reader("answer");
    const Family family = FamilyByName(reader, familyName, familyName);
    json answers = AnswersJson(profile, family);
    if (key.empty()) return answers.dump();
    std::vector<std::string> parts = SplitKey(key);
    if (family == Family::kFactory && parts.size() == 2 && parts[0] == "deviceInfo") {
        for (const auto& [alias, item] : DeviceInfoAliases()) {
            if (parts[1] == std::to_string(item)) parts = {alias};
        }
    }
    const json* node = &answers;
    std::string path = familyName;
    for (const std::string& part : parts) {
        path = Join(path, part);
        if (!node->is_object() || !node->contains(part)) reader.Fail(path, "no such answer");
        node = &(*node)[part];
    }
    return node->dump();
}

std::string ProfileToJson(const Profile& profile) {
    json families = json::object();
    for (Family family : kAllFamilies) families[FamilyName(family)] = FamilyJson(profile, family);
    json document{{"name", profile.name}, {"description", profile.description}, {"families", families}};
    return document.dump(2);
}

}  // namespace mmisim
