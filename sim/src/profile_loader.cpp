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
#include <optional>
#include <type_traits>

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

// ---------------------------------------------------------------------------------------
// Records
//
// Each field of a record (the answers of a family, the light, the faults) is named once, in
// the record's table kFields<record>: reading a profile, writing it out and changing one
// answer all walk the tables. A value is read and written by the Codec of its type; a
// record with a table is an object of its fields.

// A value being read, and the object it was found in.
struct At {
    const Reader& reader;
    const json& object;
    const json& value;
    const std::string& path;
};

template <typename T>
struct Field {
    std::string key;
    std::function<void(const At& at, T& into)> read;
    std::function<json(const T& from)> write;
    const char* required = nullptr;  // a key that must be given: what it is ("" says nothing)
};

template <typename T>
using Table = std::vector<Field<T>>;

template <typename T>
extern const Table<T> kFields;

// Reads the fields of `into` from an object, in the order of its table.
template <typename T>
void ReadRecord(const Reader& reader, const json& object, const std::string& path, T& into) {
    Fields fields(reader, object, path);
    for (const Field<T>& field : kFields<T>) {
        const auto read = [&](const json& value, const std::string& at) {
            field.read(At{reader, object, value, at}, into);
        };
        if (field.required != nullptr) {
            fields.Required(field.key, field.required, read);
        } else {
            fields.Optional(field.key, read);
        }
    }
    fields.RejectOthers();
}

template <typename T>
json WriteRecord(const T& record) {
    json object = json::object();
    for (const Field<T>& field : kFields<T>) object[field.key] = field.write(record);
    return object;
}

template <typename V>
struct Codec {
    static V Read(const Reader& reader, const json& value, const std::string& path) {
        V record{};
        ReadRecord(reader, value, path, record);
        return record;
    }
    static json Write(const V& record) { return WriteRecord(record); }
};

template <typename V, V (*ReadValue)(const Reader&, const json&, const std::string&)>
struct ScalarCodec {
    static V Read(const Reader& reader, const json& value, const std::string& path) {
        return ReadValue(reader, value, path);
    }
    static json Write(const V& value) { return value; }
};
template <> struct Codec<int32_t> : ScalarCodec<int32_t, ReadInt> {};
template <> struct Codec<uint32_t> : ScalarCodec<uint32_t, ReadUnsigned> {};
template <> struct Codec<double> : ScalarCodec<double, ReadNumber> {};
template <> struct Codec<bool> : ScalarCodec<bool, ReadBool> {};
template <> struct Codec<std::string> : ScalarCodec<std::string, ReadString> {};

template <typename V>
struct Codec<std::vector<V>> {
    static std::vector<V> Read(const Reader& reader, const json& value, const std::string& path) {
        if (!value.is_array()) reader.Fail(path, "expected an array, not " + Describe(value));
        std::vector<V> items;
        for (size_t i = 0; i < value.size(); ++i) items.push_back(Codec<V>::Read(reader, value[i], Indexed(path, i)));
        return items;
    }
    static json Write(const std::vector<V>& items) {
        json array = json::array();
        for (const V& item : items) array.push_back(Codec<V>::Write(item));
        return array;
    }
};

// A member of the record, read and written by its type's Codec. `problem` may reject the
// value read: it returns what is wrong with it, or "".
template <typename T, typename V, typename Problem = std::nullptr_t>
Field<T> Member(const char* key, V T::*member, Problem problem = nullptr) {
    return Field<T>{key,
                    [member, problem](const At& at, T& into) {
                        V value = Codec<V>::Read(at.reader, at.value, at.path);
                        if constexpr (!std::is_null_pointer_v<Problem>) {
                            const std::string wrong = problem(value, at.value);
                            if (!wrong.empty()) at.reader.Fail(at.path, wrong);
                        }
                        into.*member = std::move(value);
                    },
                    [member](const T& from) { return Codec<V>::Write(from.*member); }};
}

template <typename T>
Field<T> Required(Field<T> field, const char* what) {
    field.required = what;
    return field;
}

// The fields of a member record as fields of the record that holds it.
template <typename T, typename M>
Table<T> Within(M T::*member) {
    Table<T> fields;
    for (const Field<M>& field : kFields<M>) {
        fields.push_back(Field<T>{field.key, [field, member](const At& at, T& into) { field.read(at, into.*member); },
                                  [field, member](const T& from) { return field.write(from.*member); },
                                  field.required});
    }
    return fields;
}

template <typename T>
Table<T> Concat(Table<T> first, const Table<T>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// Integer-keyed maps ("stationFlags": {"3": ...}), each id read as `idName`.
template <typename V>
std::map<int32_t, V> ReadIdMap(const At& at, const std::string& idName) {
    RequireObject(at.reader, at.value, at.path);
    std::map<int32_t, V> entries;
    for (auto it = at.value.begin(); it != at.value.end(); ++it) {
        const std::string entryPath = Join(at.path, it.key());
        char* end = nullptr;
        errno = 0;
        const long id = std::strtol(it.key().c_str(), &end, 10);
        if (it.key().empty() || *end != '\0' || errno != 0 || id < INT32_MIN || id > INT32_MAX) {
            at.reader.Fail(entryPath, "expected " + idName + " (an integer) as the key, not \"" + it.key() + "\"");
        }
        entries[static_cast<int32_t>(id)] = Codec<V>::Read(at.reader, it.value(), entryPath);
    }
    return entries;
}

template <typename V>
json WriteIdMap(const std::map<int32_t, V>& entries) {
    json object = json::object();
    for (const auto& [id, entry] : entries) object[std::to_string(id)] = Codec<V>::Write(entry);
    return object;
}

template <typename T, typename V>
Field<T> IdMap(const char* key, std::map<int32_t, V> T::*member, const char* idName) {
    return Field<T>{key,
                    [member, idName](const At& at, T& into) {
                        for (auto& [id, entry] : ReadIdMap<V>(at, idName)) (into.*member)[id] = entry;
                    },
                    [member](const T& from) { return WriteIdMap(from.*member); }};
}

// A status and a text: "text" (status 0) or {"ret": n, "text": "..."}.
template <>
const Table<TextReply> kFields<TextReply> = {Member("ret", &TextReply::ret), Member("text", &TextReply::text)};

template <>
struct Codec<TextReply> {
    static TextReply Read(const Reader& reader, const json& value, const std::string& path) {
        if (value.is_string()) return TextReply{0, value.get<std::string>()};
        if (!value.is_object()) reader.Fail(path, "expected a text or {\"ret\": ..., \"text\": ...}, not " + Describe(value));
        TextReply reply;
        ReadRecord(reader, value, path, reply);
        return reply;
    }
    static json Write(const TextReply& reply) { return reply.ret == 0 ? json(reply.text) : WriteRecord(reply); }
};

// A result and ints: [...] (result 0) or {"result": n, "data": [...]}.
template <>
const Table<DataReply> kFields<DataReply> = {Member("result", &DataReply::result), Member("data", &DataReply::data)};

template <>
struct Codec<DataReply> {
    static DataReply Read(const Reader& reader, const json& value, const std::string& path) {
        if (value.is_array()) return DataReply{0, Codec<std::vector<int32_t>>::Read(reader, value, path)};
        if (!value.is_object()) {
            reader.Fail(path, "expected an array of integers or {\"result\": ..., \"data\": [...]}, not " + Describe(value));
        }
        DataReply reply;
        ReadRecord(reader, value, path, reply);
        return reply;
    }
    static json Write(const DataReply& reply) { return reply.result == 0 ? json(reply.data) : WriteRecord(reply); }
};

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

const std::string* AliasOf(int32_t item) {
    for (const auto& [alias, aliased] : DeviceInfoAliases()) {
        if (aliased == item) return &alias;
    }
    return nullptr;
}

// The device-info items: those with names of their own (always written out: an item nobody
// scripted answers {0, ""}), then "deviceInfo" with the others by number.
Table<FactoryAnswers> DeviceInfoFields() {
    Table<FactoryAnswers> fields;
    for (const auto& [alias, item] : DeviceInfoAliases()) {
        fields.push_back({alias,
                          [item = item](const At& at, FactoryAnswers& into) {
                              into.deviceInfo[item] = Codec<TextReply>::Read(at.reader, at.value, at.path);
                          },
                          [item = item](const FactoryAnswers& from) {
                              auto it = from.deviceInfo.find(item);
                              return Codec<TextReply>::Write(it == from.deviceInfo.end() ? TextReply{} : it->second);
                          }});
    }
    fields.push_back({"deviceInfo",
                      [](const At& at, FactoryAnswers& into) {
                          for (const auto& [item, reply] : ReadIdMap<TextReply>(at, "an item number")) {
                              const std::string* alias = AliasOf(item);
                              if (alias != nullptr && at.object.contains(*alias)) {
                                  at.reader.Fail(Join(at.path, std::to_string(item)), "item " + std::to_string(item) +
                                                         " is also given as \"" + *alias + "\"; give it once");
                              }
                              into.deviceInfo[item] = reply;
                          }
                      },
                      [](const FactoryAnswers& from) {
                          std::map<int32_t, TextReply> others;
                          for (const auto& [item, reply] : from.deviceInfo) {
                              if (AliasOf(item) == nullptr) others[item] = reply;
                          }
                          return WriteIdMap(others);
                      }});
    return fields;
}

// "oeminfo": a text reply kept in two fields.
const Field<FactoryAnswers> kOeminfo{
        "oeminfo",
        [](const At& at, FactoryAnswers& into) {
            const TextReply reply = Codec<TextReply>::Read(at.reader, at.value, at.path);
            into.oeminfoRet = reply.ret;
            into.oeminfo = reply.text;
        },
        [](const FactoryAnswers& from) { return Codec<TextReply>::Write(TextReply{from.oeminfoRet, from.oeminfo}); }};

template <>
const Table<FactoryAnswers> kFields<FactoryAnswers> = [] {
    using A = FactoryAnswers;
    const Table<A> first = {Member("factoryVersion", &A::factoryVersion),
                            Member("manufactureFileName", &A::manufactureFileName)};
    return Concat(Concat(first, DeviceInfoFields()),
                  {Member("setDeviceInfoResult", &A::setDeviceInfoResult), Member("manufactureMode", &A::manufactureMode),
                   Member("featuresCheckResult", &A::featuresCheckResult),
                   Member("clearDeviceInfoResult", &A::clearDeviceInfoResult),
                   Member("releaseFactoryResourceResult", &A::releaseFactoryResourceResult),
                   Member("mmiTestResultResult", &A::mmiTestResultResult),
                   IdMap("stationFlags", &A::stationFlags, "a station id"),
                   Member("commandDataResult", &A::commandDataResult), Member("fmdCmdDataResult", &A::fmdCmdDataResult),
                   Member("fmdMessageResult", &A::fmdMessageResult), kOeminfo});
}();

template <>
const Table<DisplayAnswers> kFields<DisplayAnswers> = [] {
    using A = DisplayAnswers;
    return Table<A>{Member("screenCurrentFps", &A::screenCurrentFps),
                    Member("selectStationResult", &A::selectStationResult), Member("screenConfig", &A::screenConfig),
                    Member("displayParameter", &A::displayParameter),
                    Member("backLightResult", &A::backLightResult), Member("panelTypeRet", &A::panelTypeRet),
                    Member("panelType", &A::panelType), Member("selfAdaptMinFpsResult", &A::selfAdaptMinFpsResult)};
}();

template <>
const Table<TouchScreenAnswers> kFields<TouchScreenAnswers> = [] {
    using A = TouchScreenAnswers;
    return Table<A>{Member("capacitanceTest", &A::capacitanceTest),
                    Member("capacitanceCalibrate", &A::capacitanceCalibrate), Member("rotateCrown", &A::rotateCrown),
                    Member("featureConfigResult", &A::featureConfigResult)};
}();

template <>
const Table<FingerprintAnswers> kFields<FingerprintAnswers> = {Member("cmdResult", &FingerprintAnswers::cmdResult)};

template <>
const Table<ParameterReply> kFields<ParameterReply> = {
        Member("ret", &ParameterReply::ret), Member("para", &ParameterReply::para),
        Member("data", &ParameterReply::data), Member("keepCallerData", &ParameterReply::keepCallerData)};

std::string NotNegative(const std::string& what, double value) {
    return value < 0.0 ? what + " must not be negative" : "";
}

template <>
const Table<LightSource> kFields<LightSource> = {
        Required(Member("frequencyHz", &LightSource::frequencyHz,
                        [](double hz, const json& given) {
                            if (hz >= 0.0 && hz < kFlickerSampleRate / 2) return std::string();
                            return "the frequency must be at least 0 and below 500 (half the 1000 Hz sampling rate), "
                                   "not " + given.dump();
                        }),
                 "the flicker frequency"),
        Member("amplitude", &LightSource::amplitude,
               [](double v, const json&) { return NotNegative("the amplitude", v); }),
        Member("offset", &LightSource::offset),
        Member("noise", &LightSource::noise,
               [](double v, const json&) { return NotNegative("the noise (a standard deviation)", v); }),
        Member("seed", &LightSource::seed)};

template <>
const Table<FlickerLight> kFields<FlickerLight> =
        Concat({Required(Member("sensorId", &FlickerLight::sensorId), "the light sensor the light shines on")},
               Within(&FlickerLight::light));

// No light (null), or the light over the defaults of its optional numbers.
template <>
struct Codec<std::optional<FlickerLight>> {
    static std::optional<FlickerLight> Read(const Reader& reader, const json& value, const std::string& path) {
        if (value.is_null()) return std::nullopt;
        FlickerLight flicker{0, LightSource{0.0, 100.0, 1000.0, 0.0, 1}};
        ReadRecord(reader, value, path, flicker);
        return flicker;
    }
    static json Write(const std::optional<FlickerLight>& flicker) { return flicker ? WriteRecord(*flicker) : json(); }
};

template <>
const Table<SensorAnswers> kFields<SensorAnswers> = [] {
    using A = SensorAnswers;
    return Table<A>{Member("startCalibrateResult", &A::startCalibrateResult),
                    Member("startSelfTestResult", &A::startSelfTestResult),
                    Member("calibrateDelayTime", &A::calibrateDelayTime),
                    Member("selfTestDelayTime", &A::selfTestDelayTime),
                    Member("calibrateResult", &A::calibrateResult), Member("selfTestResult", &A::selfTestResult),
                    Member("calibrateType", &A::calibrateType), IdMap("sensorData", &A::sensorData, "a sensor id"),
                    Member("flickerSupported", &A::flickerSupported), Member("parameter", &A::parameter),
                    Member("activateResult", &A::activateResult),
                    Member("compassRawValueLimit", &A::compassRawValueLimit)};
}();

// The sensors' answers with the light in front of a light sensor, which a profile gives
// among them ("flicker").
struct SensorsAndLight {
    SensorAnswers sensors;
    std::optional<FlickerLight> flicker;
};

template <>
const Table<SensorsAndLight> kFields<SensorsAndLight> =
        Concat(Within(&SensorsAndLight::sensors), {Member("flicker", &SensorsAndLight::flicker)});

template <>
const Table<PowerAnswers> kFields<PowerAnswers> = {Member("setPowerStateResult", &PowerAnswers::setPowerStateResult),
                                                   Member("powerState", &PowerAnswers::powerState),
                                                   Member("usbSpeed", &PowerAnswers::usbSpeed)};

template <>
const Table<LightAnswers> kFields<LightAnswers> = {Member("brightnessResult", &LightAnswers::brightnessResult)};

template <>
const Table<Capability> kFields<Capability> = {Required(Member("serviceType", &Capability::serviceType), ""),
                                               Member("overtimes", &Capability::overtimes)};

template <>
const Table<VaelonAnswers> kFields<VaelonAnswers> = {Member("capabilities", &VaelonAnswers::capabilities),
                                                     Member("registerResult", &VaelonAnswers::registerResult),
                                                     Member("clientHandle", &VaelonAnswers::clientHandle),
                                                     Member("unregisterResult", &VaelonAnswers::unregisterResult)};

template <>
const Table<VibratorAnswers> kFields<VibratorAnswers> = {Member("result", &VibratorAnswers::result)};

// Calls `use` with the family's answers (the sensors' with the light, as a copy).
template <typename P, typename Use>
auto WithAnswers(P& profile, Family family, Use use) {
    switch (family) {
        case Family::kFactory: return use(profile.factory);
        case Family::kDisplay: return use(profile.display);
        case Family::kTouchScreen: return use(profile.touchScreen);
        case Family::kFingerprint: return use(profile.fingerprint);
        case Family::kPower: return use(profile.power);
        case Family::kLight: return use(profile.light);
        case Family::kVaelon: return use(profile.vaelon);
        case Family::kVibrator: return use(profile.vibrator);
        case Family::kSensors: break;
    }
    SensorsAndLight sensors{profile.sensors, profile.flicker};
    return use(sensors);
}

// Reads a family's answers over the defaults of its answer record.
void ReadAnswers(const Reader& reader, Family family, const json& value, const std::string& path, Profile& profile) {
    WithAnswers(profile, family, [&](auto& answers) {
        answers = std::decay_t<decltype(answers)>();
        ReadRecord(reader, value, path, answers);
        if constexpr (std::is_same_v<std::decay_t<decltype(answers)>, SensorsAndLight>) {
            const std::optional<FlickerLight>& flicker = answers.flicker;
            if (flicker && answers.sensors.sensorData.count(flicker->sensorId) != 0) {
                const std::string sensor = std::to_string(flicker->sensorId);
                reader.Fail(Join(Join(path, "sensorData"), sensor),
                            "sensor " + sensor + " is the flicker light's sensor (flicker.sensorId), whose data the "
                                                 "light gives; give it in one place");
            }
            profile.sensors = answers.sensors;
            profile.flicker = answers.flicker;
        }
    });
}

json AnswersJson(const Profile& profile, Family family) {
    return WithAnswers(profile, family, [](const auto& answers) { return WriteRecord(answers); });
}

// ---------------------------------------------------------------------------------------
// Faults of a family's services

// A family's "faults": how its services misbehave, and their late start.
struct FaultsAndStart {
    ServiceFaults faults;
    int32_t lateStartMs = 0;
};

std::string NotNegativeTime(int32_t millis, const json&) {
    return millis < 0 ? "a time in milliseconds must not be negative" : "";
}

template <>
const Table<ServiceFaults> kFields<ServiceFaults> = {Member("failCalls", &ServiceFaults::failCalls),
                                                     Member("skipCallbacks", &ServiceFaults::skipCallbacks),
                                                     Member("latencyMs", &ServiceFaults::latencyMs, NotNegativeTime)};

template <>
const Table<FaultsAndStart> kFields<FaultsAndStart> = Concat(
        Within(&FaultsAndStart::faults), {Member("lateStartMs", &FaultsAndStart::lateStartMs, NotNegativeTime)});

void ReadFaults(const Reader& reader, Family family, const json& value, const std::string& path, Profile& profile) {
    FaultsAndStart read{profile.faultsOf(family), profile.device[family].lateStartMs};
    ReadRecord(reader, value, path, read);
    if (read.faults.skipCallbacks && profile.device[family].transport != Transport::kHidl) {
        reader.Fail(Join(path, "skipCallbacks"), "only a HIDL service answers through result callbacks");
    }
    profile.faultsOf(family) = read.faults;
    profile.device[family].lateStartMs = read.lateStartMs;
}

json FaultsJson(const Profile& profile, Family family) {
    return WriteRecord(FaultsAndStart{profile.faultsOf(family), profile.device[family].lateStartMs});
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
        for (VibratorExtension known :
             {VibratorExtension::kCustVibrator, VibratorExtension::kNone, VibratorExtension::kOtherInterface}) {
            if (extension == ExtensionText(known)) {
                config.vibratorExtension = known;
                return;
            }
        }
        reader.Fail(p, "expected \"custVibrator\", \"none\" or \"other\", not \"" + extension + "\"");
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

// The parts of a key path below a family's answers; a device-info item with a name of its
// own ("deviceInfo.0") is that name ("serialNumber").
std::vector<std::string> SplitKey(Family family, const std::string& key) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream stream(key);
    while (std::getline(stream, part, '.')) parts.push_back(part);
    if (!key.empty() && key.back() == '.') parts.emplace_back();
    if (family == Family::kFactory && parts.size() == 2 && parts[0] == "deviceInfo") {
        for (const auto& [alias, item] : DeviceInfoAliases()) {
            if (parts[1] == std::to_string(item)) parts = {alias};
        }
    }
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
    top.Optional("description",
                 [&](const json& v, const std::string& p) { profile.description = ReadString(reader, v, p); });
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
    const std::vector<std::string> parts = SplitKey(family, key);
    if (parts.empty() || std::any_of(parts.begin(), parts.end(), [](const std::string& p) { return p.empty(); })) {
        reader.Fail(familyName, "\"" + key + "\" is not a key path (names joined by dots, such as \"stationFlags.3\")");
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
    const json* node = &answers;
    std::string path = familyName;
    for (const std::string& part : SplitKey(family, key)) {
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
