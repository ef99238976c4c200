// Fake HIDL services of every family that has a HIDL generation. Each fake implements the
// newest minor version and answers its interface chain only down from the minor version
// the profile serves, so casts to newer versions fail as on an older device.
#include <hidl/HidlTransportSupport.h>
#include <hostcontrol/hidl_control.h>
#include <vendor/zentel/hardware/biometrics/fingerprint/2.2/IExtBiometricsFingerprint.h>
#include <vendor/zentel/hardware/hwdisplay/1.5/IDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/1.1/IHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/2.0/ILight.h>
#include <vendor/zentel/hardware/power/1.0/IHWPower.h>
#include <vendor/zentel/hardware/sensors/1.2/ISensors.h>
#include <vendor/zentel/hardware/sensors/2.0/ISensors.h>
#include <vendor/zentel/hardware/tp/1.0/ITouchscreen.h>

#include <cstdlib>

#include "fake_support.h"
#include "fakes.h"

namespace mmisim {
namespace {

using android::sp;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hidl::base::V1_0::IBase;
namespace factory = vendor::zentel::hardware::hwfactoryinterface;
namespace display = vendor::zentel::hardware::hwdisplay;
namespace tp = vendor::zentel::hardware::tp;
namespace sensors = vendor::zentel::hardware::sensors;
namespace power = vendor::zentel::hardware::power;
namespace light = vendor::zentel::hardware::light;
namespace fingerprint = vendor::zentel::hardware::biometrics::fingerprint;
using display::V1_0::DISPLAY_RET;

// Answers interfaceChain with the descriptors from `newest` down to the oldest minor
// version, then IBase. `descriptors` lists every minor version, oldest first.
Return<void> ReportChain(IBase* self, const IBase::interfaceChain_cb& cb, const std::vector<const char*>& descriptors,
                         size_t newest) {
    if (hostcontrol::IsHidlServiceDead(self)) return android::hardware::Status::fromStatusT(android::DEAD_OBJECT);
    std::vector<hidl_string> chain;
    for (size_t i = newest + 1; i-- > 0;) chain.emplace_back(descriptors[i]);
    chain.emplace_back(IBase::descriptor);
    cb(hidl_vec<hidl_string>(chain));
    return android::hardware::Void();
}

// Which minor versions exist, oldest first, and the index of the one to serve.
size_t MinorIndex(int configured, int oldestMinor, size_t versions) {
    if (configured < 0) return versions - 1;
    int index = configured - oldestMinor;
    if (index < 0) index = 0;
    return std::min(static_cast<size_t>(index), versions - 1);
}

class FactoryService : public factory::V1_1::IHwFactoryInterface, public Served<FactoryAnswers> {
public:
    FactoryService(Handset& handset, int minor)
        : Served(handset.factory(), "hidl"), mHandset(handset), mNewest(MinorIndex(minor, 0, 2)) {}

    Return<void> interfaceChain(interfaceChain_cb cb) override {
        return ReportChain(this, cb, {factory::V1_0::IHwFactoryInterface::descriptor, descriptor}, mNewest);
    }
    Return<bool> isFactoryVersion() override {
        return ServeHidl("isFactoryVersion", {}, [](const auto& a) { return a.factoryVersion; });
    }
    Return<void> getManufactureFileName(getManufactureFileName_cb cb) override {
        return ServeHidl("getManufactureFileName", {},
                         [&](const auto& a) {
                             cb(a.manufactureFileName.ret, a.manufactureFileName.text);
                         });
    }
    Return<void> getDeviceInfo(int32_t id, getDeviceInfo_cb cb) override {
        return ServeHidl("getDeviceInfo", Args(id), [&](const auto& a) {
            const TextReply& reply = Lookup(a.deviceInfo, id);
            cb(reply.ret, reply.text);
        });
    }
    Return<int32_t> setDeviceInfo(int32_t id, const hidl_string& info) override {
        return ServeHidl("setDeviceInfo", Args(id, info), [](const auto& a) { return a.setDeviceInfoResult; });
    }
    Return<int32_t> getMmiDeviceFeaturesCheckResult(int32_t feature) override {
        return ServeHidl("getMmiDeviceFeaturesCheckResult", Args(feature),
                         [](const auto& a) { return a.featuresCheckResult; });
    }
    Return<int32_t> releaseFactoryResource() override {
        return ServeHidl("releaseFactoryResource", {}, [](const auto& a) { return a.releaseFactoryResourceResult; });
    }
    Return<int32_t> setMmiTestResult(int32_t item, int32_t result) override {
        return ServeHidl("setMmiTestResult", Args(item, result), [](const auto& a) { return a.mmiTestResultResult; });
    }
    Return<void> getManufactureStationFlag(int32_t stationId, getManufactureStationFlag_cb cb) override {
        return ServeHidl("getManufactureStationFlag", Args(stationId), [&](const auto& a) {
            const TextReply& reply = Lookup(a.stationFlags, stationId);
            cb(reply.ret, reply.text);
        });
    }
    Return<int32_t> sendFmdCmdData(const factory::V1_0::FmdCmdData& data) override {
        return ServeHidl("sendFmdCmdData", {}, [&](const auto& a) {
            factory::FmdCmdData received;
            received.version = data.version;
            received.commandId = data.commandId;
            received.operation = data.operation;
            received.cycle = data.cycle;
            received.station = data.station;
            received.bsn = data.bsn;
            if (a.keepReceivedRecords) mHandset.ReceiveFmd(received);
            return a.fmdCmdDataResult;
        });
    }
    Return<int32_t> sendFmdMessage(const factory::V1_0::FmdMsg& message) override {
        return ServeHidl("sendFmdMessage", {}, [&](const auto& a) {
            factory::FmdMsg received;
            received.version = message.version;
            received.dataSource = message.dataSource;
            received.eventCount = message.eventCount;
            for (const auto& e : message.events) {
                factory::FmdEvent event;
                event.errorCode = e.errorCode;
                event.itemId = e.itemId;
                event.cycle = e.cycle;
                event.result = e.result;
                event.station = e.station;
                event.bsn = e.bsn;
                event.time = e.time;
                event.deviceName = e.deviceName;
                event.testName = e.testName;
                event.value = e.value;
                event.thresholdMin = e.thresholdMin;
                event.thresholdMax = e.thresholdMax;
                event.firmware = e.firmware;
                event.description = e.description;
                received.events.push_back(event);
            }
            if (a.keepReceivedRecords) mHandset.ReceiveFmd(received);
            return a.fmdMessageResult;
        });
    }
    Return<int32_t> getManufactureMode() override {
        return ServeHidl("getManufactureMode", {}, [](const auto& a) { return a.manufactureMode; });
    }
    Return<int32_t> clearDeviceInfo(int32_t id) override {
        return ServeHidl("clearDeviceInfo", Args(id), [](const auto& a) { return a.clearDeviceInfoResult; });
    }
    Return<int32_t> setCommandData(int32_t commandId, int32_t length, const hidl_string& data) override {
        return ServeHidl("setCommandData", Args(commandId, length, data),
                         [](const auto& a) { return a.commandDataResult; });
    }
    Return<void> getOeminfo(int32_t type, int32_t offset, int32_t length, getOeminfo_cb cb) override {
        return ServeHidl("getOeminfo", Args(type, offset, length), [&](const auto& a) {
            cb(a.oeminfoRet, hidl_string(a.oeminfo.data(), a.oeminfo.size()));
        });
    }

private:
    Handset& mHandset;
    const size_t mNewest;
};

class DisplayService : public display::V1_5::IDisplay, public Served<DisplayAnswers> {
public:
    DisplayService(Handset& handset, int minor)
        : Served(handset.display(), "hidl"), mNewest(MinorIndex(minor, 0, 6)) {}

    Return<void> interfaceChain(interfaceChain_cb cb) override {
        return ReportChain(this, cb,
                           {display::V1_0::IDisplay::descriptor, display::V1_1::IDisplay::descriptor,
                            display::V1_2::IDisplay::descriptor, display::V1_3::IDisplay::descriptor,
                            display::V1_4::IDisplay::descriptor, descriptor},
                           mNewest);
    }
    Return<void> getDisplayPanelType(getDisplayPanelType_cb cb) override {
        return ServeHidl("getDisplayPanelType", {}, [&](const auto& a) {
            cb(static_cast<DISPLAY_RET>(a.panelTypeRet), static_cast<display::V1_0::PANEL_TYPE>(a.panelType));
        });
    }
    Return<void> getScreenCurrentFps(int32_t value, getScreenCurrentFps_cb cb) override {
        return ServeHidl("getScreenCurrentFps", Args(value), [&](const auto& a) { Reply(a, cb, a.screenCurrentFps); });
    }
    Return<DISPLAY_RET> selectScreenConfigStation(int32_t station) override {
        return ServeHidl("selectScreenConfigStation", Args(station),
                         [](const auto& a) { return static_cast<DISPLAY_RET>(a.selectStationResult); });
    }
    Return<void> getScreenConfig(getScreenConfig_cb cb) override {
        return ServeHidl("getScreenConfig", {}, [&](const auto& a) { Reply(a, cb, a.screenConfig); });
    }
    Return<int32_t> setDisplaySelfAdaptMinFps(int32_t dataInt) override {
        return ServeHidl("setDisplaySelfAdaptMinFps", Args(dataInt), [](const auto& a) { return a.selfAdaptMinFpsResult; });
    }
    Return<void> setDisplayParameter(int32_t scene, const display::V1_5::DisplayData& data,
                                     setDisplayParameter_cb cb) override {
        return ServeHidl("setDisplayParameter", Args(scene, data.dataInt, data.dataString),
                         [&](const auto& a) { Reply(a, cb, a.displayParameter); });
    }

private:
    template <typename Callback>
    static void Reply(const DisplayAnswers& /*a*/, const Callback& cb, const TextReply& reply) {
        cb(static_cast<DISPLAY_RET>(reply.ret), reply.text);
    }
    const size_t mNewest;
};

class TouchScreenService : public tp::V1_0::ITouchscreen, public Served<TouchScreenAnswers> {
public:
    explicit TouchScreenService(Handset& handset) : Served(handset.touchScreen(), "hidl") {}

    Return<void> getCapacitanceTestResult(getCapacitanceTestResult_cb cb) override {
        return ServeHidl("getCapacitanceTestResult", {},
                         [&](const auto& a) {
                             cb(a.capacitanceTest.ret, a.capacitanceTest.text);
                         });
    }
    Return<void> getCapacitanceCalibrateResult(int32_t value, getCapacitanceCalibrateResult_cb cb) override {
        return ServeHidl("getCapacitanceCalibrateResult", Args(value),
                         [&](const auto& a) {
                             cb(a.capacitanceCalibrate.ret, a.capacitanceCalibrate.text);
                         });
    }
    Return<void> getRotateCrownTestResult(getRotateCrownTestResult_cb cb) override {
        return ServeHidl("getRotateCrownTestResult", {},
                         [&](const auto& a) {
                             cb(a.rotateCrown.ret == 0, a.rotateCrown.text);
                         });
    }
    Return<int32_t> setTouchScreenFeatureConfig(int32_t feature, const hidl_string& config) override {
        return ServeHidl("setTouchScreenFeatureConfig", Args(feature, config),
                         [](const auto& a) { return a.featureConfigResult; });
    }
};

class FingerprintService : public fingerprint::V2_2::IExtBiometricsFingerprint, public Served<FingerprintAnswers> {
public:
    FingerprintService(Handset& handset, int minor)
        : Served(handset.fingerprint(), "hidl"), mNewest(MinorIndex(minor, 1, 2)) {}

    Return<void> interfaceChain(interfaceChain_cb cb) override {
        return ReportChain(this, cb, {fingerprint::V2_1::IExtBiometricsFingerprint::descriptor, descriptor}, mNewest);
    }
    Return<int32_t> sendCmdToHal(int32_t cmd) override {
        return ServeHidl("sendCmdToHal", Args(cmd), [](const auto& a) { return a.cmdResult; });
    }

private:
    const size_t mNewest;
};

// The 1.x and the 2.0 sensor services answer the same operations.
template <typename Interface>
class SensorsService : public Interface, public Served<SensorAnswers> {
public:
    SensorsService(Handset& handset, const char* origin) : Served(handset.sensors(), origin) {}

    using typename Interface::getCalibrateType_cb;
    using typename Interface::getSensorData_cb;
    using typename Interface::processSensorParameter_cb;

    Return<int32_t> startCalibrate(int32_t sensorId, int32_t command) override {
        return ServeHidl("startCalibrate", Args(sensorId, command), [](const auto& a) { return a.startCalibrateResult; });
    }
    Return<int32_t> startSelfTest(int32_t sensorId, int32_t command) override {
        return ServeHidl("startSelfTest", Args(sensorId, command), [](const auto& a) { return a.startSelfTestResult; });
    }
    Return<int32_t> getCalibrateDelayTime(int32_t sensorId) override {
        return ServeHidl("getCalibrateDelayTime", Args(sensorId), [](const auto& a) { return a.calibrateDelayTime; });
    }
    Return<int32_t> getSelfTestDelayTime(int32_t sensorId) override {
        return ServeHidl("getSelfTestDelayTime", Args(sensorId), [](const auto& a) { return a.selfTestDelayTime; });
    }
    Return<int32_t> getCalibrateResult(int32_t sensorId) override {
        return ServeHidl("getCalibrateResult", Args(sensorId), [](const auto& a) { return a.calibrateResult; });
    }
    Return<int32_t> getSelfTestResult(int32_t sensorId) override {
        return ServeHidl("getSelfTestResult", Args(sensorId), [](const auto& a) { return a.selfTestResult; });
    }
    Return<void> getCalibrateType(int32_t sensorId, int32_t size, getCalibrateType_cb cb) override {
        return ServeHidl("getCalibrateType", Args(sensorId, size),
                         [&](const auto& a) {
                             cb(a.calibrateType.ret, a.calibrateType.text);
                         });
    }
    Return<void> getSensorData(int32_t sensorId, getSensorData_cb cb) override {
        return ServeHidl("getSensorData", Args(sensorId), [&](const auto& a) {
            auto it = a.sensorData.find(sensorId);
            const DataReply reply = it == a.sensorData.end() ? DataReply{} : it->second;
            cb(reply.result, hidl_vec<int32_t>(reply.data));
        });
    }
    Return<bool> isFlickerSupported(int32_t sensorId) override {
        return ServeHidl("isFlickerSupported", Args(sensorId), [](const auto& a) { return a.flickerSupported; });
    }
    Return<int32_t> activateSensor(int32_t sensorType, bool enable, int64_t samplingRate) override {
        return ServeHidl("activateSensor", Args(sensorType, enable, samplingRate),
                         [](const auto& a) { return a.activateResult; });
    }
    Return<int32_t> getCompassRawValueLimit() override {
        return ServeHidl("getCompassRawValueLimit", {}, [](const auto& a) { return a.compassRawValueLimit; });
    }
    Return<void> processSensorParameter(int32_t sensorId, int32_t mainCmd, int32_t subCmd, int32_t length,
                                        processSensorParameter_cb cb) override {
        return ServeHidl("processSensorParameter", Args(sensorId, mainCmd, subCmd, length), [&](const auto& a) {
            cb(a.parameter.ret, a.parameter.para, hidl_vec<int32_t>(a.parameter.data));
        });
    }
};

class SensorsV1Service : public SensorsService<sensors::V1_2::ISensors> {
public:
    SensorsV1Service(Handset& handset, int minor)
        : SensorsService(handset, "hidl"), mNewest(MinorIndex(minor, 0, 3)) {}

    Return<void> interfaceChain(interfaceChain_cb cb) override {
        return ReportChain(this, cb,
                           {sensors::V1_0::ISensors::descriptor, sensors::V1_1::ISensors::descriptor, descriptor},
                           mNewest);
    }

private:
    const size_t mNewest;
};

using SensorsV2Service = SensorsService<sensors::V2_0::ISensors>;

class PowerService : public power::V1_0::IHWPower, public Served<PowerAnswers> {
public:
    explicit PowerService(Handset& handset) : Served(handset.power(), "hidl") {}

    Return<int32_t> setPowerState(const hidl_string& testScene, const hidl_string& para) override {
        return ServeHidl("setPowerState", Args(testScene, para), [](const auto& a) { return a.setPowerStateResult; });
    }
    Return<void> getPowerState(const hidl_string& key, getPowerState_cb cb) override {
        return ServeHidl("getPowerState", Args(key), [&](const auto& a) {
            cb(a.powerState.ret, a.powerState.text);
        });
    }
    Return<void> checkUsbSpeed(const hidl_string& scene, const hidl_string& testTimes, const hidl_string& maxLimit,
                               const hidl_string& minLimit, checkUsbSpeed_cb cb) override {
        return ServeHidl("checkUsbSpeed", Args(scene, testTimes, maxLimit, minLimit),
                         [&](const auto& a) {
                             cb(a.usbSpeed.ret, a.usbSpeed.text);
                         });
    }
};

class LightService : public light::V2_0::ILight, public Served<LightAnswers> {
public:
    explicit LightService(Handset& handset) : Served(handset.light(), "hidl") {}

    Return<int32_t> setLightBrightness(int32_t id, int32_t brightness) override {
        return ServeHidl("setLightBrightness", Args(id, brightness), [](const auto& a) { return a.brightnessResult; });
    }
};

// The version a service serves, from the newest descriptor of its chain: "1.1" for
// "vendor.zentel.hardware.hwfactoryinterface@1.1::IHwFactoryInterface".
std::string ServedVersion(const sp<IBase>& service) {
    std::string newest;
    service->interfaceChain([&](const hidl_vec<hidl_string>& chain) {
        if (chain.size() > 0) newest = chain[0];
    }).isOk();
    const size_t at = newest.find('@');
    const size_t end = newest.find("::", at);
    return at == std::string::npos || end == std::string::npos ? std::string() : newest.substr(at + 1, end - at - 1);
}

// The services of one family's process: registered, and killed together.
struct HidlProcess {
    std::vector<std::function<void()>> markDead;
    std::vector<sp<IBase>> services;
};

template <typename Service>
void Serve(HidlProcess& process, const sp<Service>& service, const char* instance = "default") {
    service->SetServedVersion(ServedVersion(service));
    // The service manager turns down only a null service.
    if (service->registerAsService(instance) != android::OK) std::abort();
    process.markDead.push_back([service] { service->MarkDead(); });
    process.services.push_back(service);
}

}  // namespace

std::shared_ptr<Handset::Running> StartHidlFamily(Handset& handset, Family family, const FamilyConfig& config) {
    HidlProcess process;
    const int minor = config.hidlMinor;
    switch (family) {
        case Family::kFactory:
            Serve(process, sp<FactoryService>(new FactoryService(handset, minor)), "hwfactoryinterface_hal");
            break;
        case Family::kDisplay: Serve(process, sp<DisplayService>(new DisplayService(handset, minor))); break;
        case Family::kTouchScreen: Serve(process, sp<TouchScreenService>(new TouchScreenService(handset))); break;
        case Family::kFingerprint:
            Serve(process, sp<FingerprintService>(new FingerprintService(handset, minor)));
            break;
        case Family::kSensors:
            if (config.sensorsV1) Serve(process, sp<SensorsV1Service>(new SensorsV1Service(handset, minor)));
            if (config.sensorsV2) Serve(process, sp<SensorsV2Service>(new SensorsV2Service(handset, "hidl2")));
            break;
        case Family::kPower: Serve(process, sp<PowerService>(new PowerService(handset))); break;
        case Family::kLight: Serve(process, sp<LightService>(new LightService(handset))); break;
        case Family::kVaelon:
        case Family::kVibrator:
            break;  // these families have no HIDL generation
    }
    auto running = std::make_shared<Handset::Running>();
    running->kill = [process] {
        for (const auto& markDead : process.markDead) markDead();
        hostcontrol::KillHidlServices(process.services);
    };
    return running;
}

}  // namespace mmisim
