// What the services answer during a load run, and what each native method may answer then.
//
// Every scripted answer is distinctive (no service answer equals a fallback or a preset of
// the library), so an answer that belongs to another method, another family or a state
// the service was not in is caught. Answers are compared as text, in the form the Java
// driver writes them: booleans and ints as Java prints them, strings in double quotes,
// int arrays as [a,b,c] (or [n x v] when longer than 8 and all equal), null as null.
#pragma once

#include <sim/handset.h>

#include <set>
#include <string>
#include <vector>

namespace mmistress {

// The methods in the order of the library's table (and of StressDriver.METHODS).
extern const std::vector<std::string> kMethodNames;

// Indexes of the methods the checks single out.
enum Method : int {
    kSendCmdToFingerprintHal = 4,
    kGetCapacitanceTestResult = 5,
    kSetVibratorParameter = 28,
    kGetVibratorCalibrateResult = 29,
    kGetFlickerFrequency = 33,
    kSetMockCardTestMode = 42,
    kGetVideoInterpolationDefaultModel = 45,
    kGetVideoInterpolationModel = 46,
    kSetVideoInterpolationModel = 47,
    kRecoverInperpolateFreshRate = 48,
    kRegisterClient = 59,
};

// The text the capacitance test hands to MmiNativeManager.sTpCapacitanceFailInfo.
extern const char* const kCapacitanceFailInfo;

// The light in front of the light sensor on handsets whose sensor service is HIDL: a lamp
// on mains power flickering at 100 Hz by half its level, sent as 256 raw samples that the
// library analyses itself.
constexpr int kFlickerSensorId = 5;
constexpr int kFlickerLightHz = 100;

// A handset in transition: factory, fingerprint, power, camera and vibrator over AIDL;
// display (1.4), touch screen, sensors (1.1 and 2.0) and light over HIDL.
mmisim::DeviceProfile MixedProfile();

// Scripts the distinctive answers on every family, and turns off what the simulated
// services keep of each call (recorded calls, received big-data records), which would
// otherwise grow with the load.
void ScriptAnswers(mmisim::Handset& handset, const mmisim::DeviceProfile& profile);

struct Expectation {
    std::string served;            // the answer while the family is connected
    std::set<std::string> others;  // further answers the library gives while services die and return
    bool allows(const std::string& answer) const { return answer == served || others.count(answer) != 0; }
};

// One expectation per method, in table order. `hidlFlickerHz` is what the library's
// detector makes of the scripted light (used where the sensor service is HIDL).
std::vector<Expectation> ExpectedAnswers(const mmisim::DeviceProfile& profile, int hidlFlickerHz);

// Whether the method answers through the display processor's vendor library, and its answer
// once the library is closed (after the first HIDL death) or absent.
bool IsPanelMethod(int method);
std::string PanelFallback(int method);

// Answer texts as the driver writes them.
std::string Quoted(const std::string& text);

}  // namespace mmistress
