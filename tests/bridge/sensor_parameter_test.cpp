// The sensor parameter channel (ambient-light read and write, the generic sensor command)
// and the colour-sensor values: the AIDL reply buffers, the per-call minor-version casts of
// the first HIDL generation and the fallback to the second.
#include <string>
#include <vector>

#include "mmi_fixture.h"

namespace mmitest {
namespace {

using mmisim::DeviceProfile;
using mmisim::Family;
using mmisim::SensorAnswers;

class SensorParameterTest : public MmiTest {
protected:
    void ScriptReply(int32_t ret, const std::string& para, std::vector<int32_t> data, bool keepCallerData = false) {
        handset().sensors().update([&](SensorAnswers& a) { a.parameter = {ret, para, data, keepCallerData}; });
    }
    std::optional<std::vector<int>> GetAmbient() { return Ints("getAmbientLightParameterNative", "(IIII)[I", 5, 1, 2, 16); }
    jint SetAmbient() { return Int("setAmbientLightParameterNative", "(IIII)I", 5, 3, 4, 8); }
    std::optional<std::string> Handle() { return Str("handleSensorParameterNative", "(IIII)Ljava/lang/String;", 6, 7, 8, 32); }
    std::optional<std::vector<int>> Colour() { return Ints("getColorSensorNative", "(I)[I", 40); }

    // The services that took the parameter requests, and the arguments of each.
    std::vector<std::string> ParameterCalls() {
        std::vector<std::string> calls;
        for (const mmisim::Call& call : handset().sensors().callsTo("processSensorParameter")) {
            std::string text = call.origin;
            for (const std::string& arg : call.args) text += " " + arg;
            calls.push_back(text);
        }
        return calls;
    }
};

TEST_F(SensorParameterTest, AidlRepliesAndTheBufferSizesOffered) {
    Boot(DeviceProfile::AllAidl());
    ScriptReply(-9, "gain=4", {120, -7, 3});
    handset().sensors().update([](SensorAnswers& a) { a.sensorData[40] = {-5, {310, 0, -2, 77}}; });
    EXPECT_EQ(GetAmbient(), (std::vector<int>{120, -7, 3}));
    EXPECT_EQ(SetAmbient(), -9);
    EXPECT_EQ(Handle(), "gain=4");
    // Colour values come back whatever the status.
    EXPECT_EQ(Colour(), (std::vector<int>{310, 0, -2, 77}));
    EXPECT_EQ(LinesWithPriority(kInfo),
              (std::vector<Line>{
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "IsSensorAidlVersion, true"},
                      {kInfo, "GetAmbientLightParameter, Aidl Called"},
                      {kInfo, Prefixed("GetAmbientLightParameter by aidl, length: 16")},
                      // The length reported is the count that came back.
                      {kInfo, Prefixed("GetAmbientLightParameter by aidl, ret: -9, para: gain=4, sensorId: 5, "
                                       "mainCmd: 1, subCmd: 2, length: 3")},
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "IsSensorAidlVersion, true"},
                      {kInfo, "SetAmbientLightParameter, Aidl Called"},
                      {kInfo, Prefixed("SetAmbientLightParameter by aidl, length: 8")},
                      {kInfo, Prefixed("SetAmbientLightParameter by aidl, ret: -9, para: gain=4, sensorId: 5, "
                                       "mainCmd: 3, subCmd: 4")},
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "IsSensorAidlVersion, true"},
                      {kInfo, "HandleSensorParameter, Aidl Called"},
                      {kInfo, Prefixed("HandleSensorParameter by aidl, ret: -9, resultInfo: gain=4, sensorId: 6, "
                                       "mainCmd: 7, subCmd: 8, length: 32 ")},
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "IsSensorAidlVersion, true"},
                      {kInfo, "GetColorSensorValues, Aidl Called"},
                      {kInfo, Prefixed("GetColorSensorValues by aidl success, return 4 ints.")}}));
    // The request's arguments, then the size of the reply buffer the library offered.
    EXPECT_EQ(ParameterCalls(), (std::vector<std::string>{"aidl 5 1 2 16 4096", "aidl 5 3 4 8 64", "aidl 6 7 8 32 64"}));
    ASSERT_EQ(handset().sensors().callsTo("getSensorData").size(), 1u);
    EXPECT_EQ(handset().sensors().callsTo("getSensorData")[0].args, (std::vector<std::string>{"40"}));
}

TEST_F(SensorParameterTest, AidlAmbientReadOfAnUntouchedBufferReturnsItsZeros) {
    Boot(DeviceProfile::AllAidl());
    ScriptReply(3, "busy", {9}, /*keepCallerData=*/true);
    EXPECT_EQ(GetAmbient(), std::vector<int>(4096, 0));
    EXPECT_TRUE(Has(kInfo, Prefixed("GetAmbientLightParameter by aidl, ret: 3, para: busy, sensorId: 5, mainCmd: 1, "
                                    "subCmd: 2, length: 4096")));
    // An empty reply is an empty array, not null.
    ScriptReply(-1, "", {});
    EXPECT_EQ(GetAmbient(), std::vector<int>{});
    EXPECT_EQ(Colour(), std::vector<int>{});
}

TEST_F(SensorParameterTest, HidlNewestFirstGenerationTakesEveryRequest) {
    Boot(DeviceProfile::AllHidl());
    ScriptReply(4, "cct", {5000, 6500});
    handset().sensors().update([](SensorAnswers& a) { a.sensorData[40] = {-5, {310, -2}}; });
    EXPECT_EQ(GetAmbient(), (std::vector<int>{5000, 6500}));
    EXPECT_EQ(SetAmbient(), 4);
    EXPECT_EQ(Handle(), "cct");
    EXPECT_EQ(Colour(), (std::vector<int>{310, -2}));
    EXPECT_EQ(LinesWithPriority(kInfo),
              (std::vector<Line>{
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "GetAmbientLightParameter, Hidl Called"},
                      {kInfo, Prefixed("GetAmbientLightParameter by hidl, length: 16")},
                      {kInfo, "GetAmbientLightParameter by hidl, use sensorNewVer"},
                      {kInfo, Prefixed("GetAmbientLightParameter by hidl, ret: 4, para: cct, sensorId: 5, mainCmd: 1, "
                                       "subCmd: 2, length: 2")},
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "SetAmbientLightParameter, Hidl Called"},
                      {kInfo, Prefixed("SetAmbientLightParameter by hidl, length: 8")},
                      {kInfo, "SetAmbientLightParameter by hidl, use sensorNewVer"},
                      {kInfo, Prefixed("SetAmbientLightParameter by hidl, ret: 4, para: cct, sensorId: 5, mainCmd: 3, "
                                       "subCmd: 4")},
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "HandleSensorParameter, Hidl Called"},
                      {kInfo, Prefixed("HandleSensorParameter by hidl, ret: 4, resultInfo: cct, sensorId: 6, "
                                       "mainCmd: 7, subCmd: 8, length: 32")},
                      {kInfo, "IsSensorAidlVersion"}, {kInfo, "GetColorSensorValues, Hidl Called"},
                      {kInfo, Prefixed("GetColorSensorValues by hidl success, return 2 ints.")}}));
    EXPECT_EQ(ParameterCalls(), (std::vector<std::string>{"hidl 5 1 2 16", "hidl 5 3 4 8", "hidl 6 7 8 32"}));
}

// Which service takes each request as the served versions vary; "-" is the operation's
// fallback (null array, -1, "" and int[0]) with its ERROR line.
TEST_F(SensorParameterTest, ServedVersionsDecideWhereEachRequestGoes) {
    struct Row {
        int firstMinor;  // newest 1.x minor version served, -1 for no 1.x service
        bool second;     // 2.0 service served
        const char* ambient;
        const char* handle;
        const char* colour;
    };
    const Row rows[] = {{2, false, "hidl", "hidl", "hidl"},  {1, true, "hidl2", "hidl", "hidl"},
                        {1, false, "-", "hidl", "hidl"},      {0, true, "hidl2", "hidl2", "hidl"},
                        {0, false, "-", "-", "hidl"},         {-1, true, "hidl2", "hidl2", "-"},
                        {-1, false, "-", "-", "-"}};
    for (const Row& row : rows) {
        SCOPED_TRACE("1." + std::to_string(row.firstMinor) + (row.second ? " and 2.0" : " alone"));
        DeviceProfile profile = DeviceProfile::AllHidl();
        profile[Family::kSensors].sensorsV1 = row.firstMinor >= 0;
        profile[Family::kSensors].hidlMinor = row.firstMinor >= 0 ? row.firstMinor : 0;
        profile[Family::kSensors].sensorsV2 = row.second;
        Boot(profile);
        ScriptReply(0, "ok", {1, 2});
        handset().sensors().update([](SensorAnswers& a) { a.sensorData[40] = {0, {7}}; });
        const bool ambient = std::string(row.ambient) != "-";
        const bool handle = std::string(row.handle) != "-";
        const bool colour = std::string(row.colour) != "-";
        EXPECT_EQ(GetAmbient(), ambient ? std::optional(std::vector<int>{1, 2}) : std::nullopt);
        EXPECT_EQ(SetAmbient(), ambient ? 0 : -1);
        EXPECT_EQ(Handle(), handle ? "ok" : "");
        EXPECT_EQ(Colour(), colour ? std::vector<int>{7} : std::vector<int>{});

        std::vector<std::string> origins;
        for (const mmisim::Call& call : handset().sensors().calls()) origins.push_back(call.origin);
        std::vector<std::string> expected;
        if (ambient) expected.insert(expected.end(), 2, row.ambient);
        if (handle) expected.push_back(row.handle);
        if (colour) expected.push_back(row.colour);
        EXPECT_EQ(origins, expected);

        std::vector<Line> errors;
        if (!ambient) {
            errors.push_back({kError, Prefixed("GetAmbientLightParameter by hidl fail, no sensor version can be used")});
            errors.push_back({kError, Prefixed("SetAmbientLightParameter by hidl fail, no sensor version can be used")});
        }
        if (!handle) {
            errors.push_back({kError, Prefixed("HandleSensorParameter by hidl fail, sensorNewVer and g_zentelSensors "
                                               "are null")});
        }
        if (!colour) {
            // Only the first generation is asked, although the line names both.
            errors.push_back({kError, Prefixed("GetColorSensorValues by hidl fail, g_hwSensors and g_zentelSensors "
                                               "are null.")});
        }
        EXPECT_EQ(LinesWithPriority(kError), errors);
        if (std::string(row.ambient) == "hidl2") {
            EXPECT_TRUE(Has(kInfo, "GetAmbientLightParameter by hidl, use g_zentelSensors"));
            EXPECT_TRUE(Has(kInfo, "SetAmbientLightParameter by hidl, use g_zentelSensors"));
        }
        // The length lines come first, whatever follows.
        EXPECT_TRUE(Has(kInfo, Prefixed("GetAmbientLightParameter by hidl, length: 16")));
        EXPECT_TRUE(Has(kInfo, Prefixed("SetAmbientLightParameter by hidl, length: 8")));
    }
}

}  // namespace
}  // namespace mmitest
