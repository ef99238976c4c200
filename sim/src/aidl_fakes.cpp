// Fake AIDL services of every family.
#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/BnFingerprint.h>
#include <aidl/vendor/zentel/hardware/biometrics/fingerprint/BnSession.h>
#include <android/binder_manager.h>
#include <android/hardware/vibrator/BnVibrator.h>
#include <binder/IServiceManager.h>
#include <hostcontrol/binder_control.h>
#include <hostcontrol/binder_ndk_control.h>
#include <vendor/zentel/hardware/camera/vaelon/BnVAELONService.h>
#include <vendor/zentel/hardware/hwdisplay/BnDisplay.h>
#include <vendor/zentel/hardware/hwfactoryinterface/BnHwFactoryInterface.h>
#include <vendor/zentel/hardware/light/BnLight.h>
#include <vendor/zentel/hardware/power/BnHWPower.h>
#include <vendor/zentel/hardware/sensors/BnSensors.h>
#include <vendor/zentel/hardware/tp/BnTouchscreen.h>
#include <vendor/zentel/hardware/vibrator/BnCustVibrator.h>

#include <mutex>
#include <thread>

#include "fake_support.h"
#include "fakes.h"

namespace mmisim {
namespace {

using android::sp;
using android::String16;
using android::binder::Status;
namespace factory = vendor::zentel::hardware::hwfactoryinterface;
namespace display = vendor::zentel::hardware::hwdisplay;
namespace tp = vendor::zentel::hardware::tp;
namespace sensors = vendor::zentel::hardware::sensors;
namespace power = vendor::zentel::hardware::power;
namespace light = vendor::zentel::hardware::light;
namespace vaelon = vendor::zentel::hardware::camera::vaelon;
namespace custvibrator = vendor::zentel::hardware::vibrator;
namespace fingerprint = aidl::vendor::zentel::hardware::biometrics::fingerprint;

template <typename Record>
void FillText(Record* out, const TextReply& reply) {
    out->ret = reply.ret;
    if constexpr (std::is_same_v<Record, factory::IFacIntStr>) {
        out->value = reply.text;
    } else {
        out->info = reply.text;
    }
}

class FactoryService : public factory::BnHwFactoryInterface, public Served<FactoryAnswers> {
public:
    explicit FactoryService(Handset& handset) : Served(handset.factory(), "aidl"), mHandset(handset) {}

    Status isFactoryVersion(bool* out) override {
        return ServeAidl("isFactoryVersion", {}, [&](const auto& a) { *out = a.factoryVersion; });
    }
    Status getManufactureFileName(factory::IFacIntStr* out) override {
        return ServeAidl("getManufactureFileName", {}, [&](const auto& a) { FillText(out, a.manufactureFileName); });
    }
    Status getDeviceInfo(int32_t id, factory::IFacIntStr* out) override {
        return ServeAidl("getDeviceInfo", Args(id), [&](const auto& a) { FillText(out, Lookup(a.deviceInfo, id)); });
    }
    Status setDeviceInfo(int32_t id, const std::string& info, int32_t* out) override {
        return ServeAidl("setDeviceInfo", Args(id, info), [&](const auto& a) { *out = a.setDeviceInfoResult; });
    }
    Status getManufactureMode(int32_t* out) override {
        return ServeAidl("getManufactureMode", {}, [&](const auto& a) { *out = a.manufactureMode; });
    }
    Status getMmiDeviceFeaturesCheckResult(int32_t feature, int32_t* out) override {
        return ServeAidl("getMmiDeviceFeaturesCheckResult", Args(feature),
                         [&](const auto& a) { *out = a.featuresCheckResult; });
    }
    Status clearDeviceInfo(int32_t id, int32_t* out) override {
        return ServeAidl("clearDeviceInfo", Args(id), [&](const auto& a) { *out = a.clearDeviceInfoResult; });
    }
    Status releaseFactoryResource(int32_t* out) override {
        return ServeAidl("releaseFactoryResource", {}, [&](const auto& a) { *out = a.releaseFactoryResourceResult; });
    }
    Status setMmiTestResult(int32_t item, int32_t result, int32_t* out) override {
        return ServeAidl("setMmiTestResult", Args(item, result), [&](const auto& a) { *out = a.mmiTestResultResult; });
    }
    Status getManufactureStationFlag(int32_t stationId, factory::IFacIntStr* out) override {
        return ServeAidl("getManufactureStationFlag", Args(stationId),
                         [&](const auto& a) { FillText(out, Lookup(a.stationFlags, stationId)); });
    }
    Status setCommandData(int32_t commandId, int32_t length, const std::vector<uint8_t>& data,
                          int32_t* out) override {
        return ServeAidl("setCommandData", Args(commandId, length, data),
                         [&](const auto& a) { *out = a.commandDataResult; });
    }
    Status sendFmdCmdData(const factory::FmdCmdData& data, int32_t* out) override {
        return ServeAidl("sendFmdCmdData", {}, [&](const auto& a) {
            if (a.keepReceivedRecords) mHandset.ReceiveFmd(data);
            *out = a.fmdCmdDataResult;
        });
    }
    Status sendFmdMessage(const factory::FmdMsg& message, int32_t* out) override {
        return ServeAidl("sendFmdMessage", {}, [&](const auto& a) {
            if (a.keepReceivedRecords) mHandset.ReceiveFmd(message);
            *out = a.fmdMessageResult;
        });
    }
    Status getOeminfo(int32_t type, int32_t offset, int32_t length, factory::IFacIntByte* out) override {
        return ServeAidl("getOeminfo", Args(type, offset, length), [&](const auto& a) {
            out->ret = a.oeminfoRet;
            out->value.assign(a.oeminfo.begin(), a.oeminfo.end());
        });
    }

private:
    Handset& mHandset;
};

class DisplayService : public display::BnDisplay, public Served<DisplayAnswers> {
public:
    explicit DisplayService(Handset& handset) : Served(handset.display(), "aidl") {}

    Status getScreenCurrentFps(int32_t value, display::DisplayOutInfo* out) override {
        return ServeAidl("getScreenCurrentFps", Args(value), [&](const auto& a) { FillText(out, a.screenCurrentFps); });
    }
    Status getScreenConfig(int32_t station, display::DisplayOutInfo* out) override {
        return ServeAidl("getScreenConfig", Args(station), [&](const auto& a) { FillText(out, a.screenConfig); });
    }
    Status setDisplayParameter(int32_t scene, const display::DISPLAY_DATA& data, display::DisplayOutInfo* out) override {
        return ServeAidl("setDisplayParameter", Args(scene, data.dataInt, data.dataString),
                         [&](const auto& a) { FillText(out, a.displayParameter); });
    }
    Status setBackLightBrightness(int32_t brightness, int32_t* out) override {
        return ServeAidl("setBackLightBrightness", Args(brightness), [&](const auto& a) { *out = a.backLightResult; });
    }
    Status getDisplayPanelType(int32_t* out) override {
        return ServeAidl("getDisplayPanelType", {}, [&](const auto& a) { *out = a.panelType; });
    }
    Status setDisplaySelfAdaptMinFps(int32_t dataInt, int32_t* out) override {
        return ServeAidl("setDisplaySelfAdaptMinFps", Args(dataInt),
                         [&](const auto& a) { *out = a.selfAdaptMinFpsResult; });
    }
};

class TouchScreenService : public tp::BnTouchscreen, public Served<TouchScreenAnswers> {
public:
    explicit TouchScreenService(Handset& handset) : Served(handset.touchScreen(), "aidl") {}

    Status getCapacitanceTestResult(tp::ITPIntString* out) override {
        return ServeAidl("getCapacitanceTestResult", {}, [&](const auto& a) { FillText(out, a.capacitanceTest); });
    }
    Status getCapacitanceCalibrateResult(int32_t value, tp::ITPIntString* out) override {
        return ServeAidl("getCapacitanceCalibrateResult", Args(value),
                         [&](const auto& a) { FillText(out, a.capacitanceCalibrate); });
    }
    Status getRotateCrownTestResult(tp::ITPIntString* out) override {
        return ServeAidl("getRotateCrownTestResult", {}, [&](const auto& a) { FillText(out, a.rotateCrown); });
    }
    Status setTouchScreenFeatureConfig(int32_t feature, const std::string& config, int32_t* out) override {
        return ServeAidl("setTouchScreenFeatureConfig", Args(feature, config),
                         [&](const auto& a) { *out = a.featureConfigResult; });
    }
};

class SensorsService : public sensors::BnSensors, public Served<SensorAnswers> {
public:
    explicit SensorsService(Handset& handset) : Served(handset.sensors(), "aidl") {}

    Status startCalibrate(int32_t sensorId, int32_t command, int32_t* out) override {
        return ServeAidl("startCalibrate", Args(sensorId, command), [&](const auto& a) { *out = a.startCalibrateResult; });
    }
    Status startSelfTest(int32_t sensorId, int32_t command, int32_t* out) override {
        return ServeAidl("startSelfTest", Args(sensorId, command), [&](const auto& a) { *out = a.startSelfTestResult; });
    }
    Status getCalibrateDelayTime(int32_t sensorId, int32_t* out) override {
        return ServeAidl("getCalibrateDelayTime", Args(sensorId), [&](const auto& a) { *out = a.calibrateDelayTime; });
    }
    Status getSelfTestDelayTime(int32_t sensorId, int32_t* out) override {
        return ServeAidl("getSelfTestDelayTime", Args(sensorId), [&](const auto& a) { *out = a.selfTestDelayTime; });
    }
    Status getCalibrateResult(int32_t sensorId, int32_t* out) override {
        return ServeAidl("getCalibrateResult", Args(sensorId), [&](const auto& a) { *out = a.calibrateResult; });
    }
    Status getSelfTestResult(int32_t sensorId, int32_t* out) override {
        return ServeAidl("getSelfTestResult", Args(sensorId), [&](const auto& a) { *out = a.selfTestResult; });
    }
    Status getCalibrateType(int32_t sensorId, int32_t size, sensors::ZtSensorString* calibType, int32_t* out) override {
        return ServeAidl("getCalibrateType", Args(sensorId, size), [&](const auto& a) {
            calibType->text = a.calibrateType.text;
            *out = a.calibrateType.ret;
        });
    }
    Status getSensorData(int32_t sensorId, std::vector<int32_t>* data, int32_t* out) override {
        return ServeAidl("getSensorData", Args(sensorId), [&](const auto& a) {
            auto it = a.sensorData.find(sensorId);
            const DataReply reply = it == a.sensorData.end() ? DataReply{} : it->second;
            *data = reply.data;
            *out = reply.result;
        });
    }
    Status processSensorParameter(int32_t sensorId, int32_t mainCmd, int32_t subCmd, int32_t length,
                                  sensors::ZtSensorString* para, std::vector<int32_t>* data, int32_t* out) override {
        // The last argument recorded is the size the caller gave the out array.
        const int32_t presized = static_cast<int32_t>(data->size());
        return ServeAidl("processSensorParameter", Args(sensorId, mainCmd, subCmd, length, presized),
                         [&](const auto& a) {
                             para->text = a.parameter.para;
                             if (!a.parameter.keepCallerData) *data = a.parameter.data;
                             *out = a.parameter.ret;
                         });
    }
    Status activateSensor(int32_t sensorType, bool enable, int64_t samplingRate, int32_t* out) override {
        return ServeAidl("activateSensor", Args(sensorType, enable, samplingRate),
                         [&](const auto& a) { *out = a.activateResult; });
    }
    Status getCompassRawValueLimit(int32_t* out) override {
        return ServeAidl("getCompassRawValueLimit", {}, [&](const auto& a) { *out = a.compassRawValueLimit; });
    }
};

class PowerService : public power::BnHWPower, public Served<PowerAnswers> {
public:
    explicit PowerService(Handset& handset) : Served(handset.power(), "aidl") {}

    Status setPowerState(const std::string& caller, const std::string& testScene, const std::string& para,
                         int32_t* out) override {
        return ServeAidl("setPowerState", Args(caller, testScene, para), [&](const auto& a) { *out = a.setPowerStateResult; });
    }
    Status getPowerState(const std::string& caller, const std::string& key, power::PowerOutInfo* info,
                         int32_t* out) override {
        return ServeAidl("getPowerState", Args(caller, key), [&](const auto& a) {
            info->info = a.powerState.text;
            *out = a.powerState.ret;
        });
    }
};

class LightService : public light::BnLight, public Served<LightAnswers> {
public:
    explicit LightService(Handset& handset) : Served(handset.light(), "aidl") {}

    Status setLightBrightness(int32_t id, int32_t brightness, int32_t* out) override {
        return ServeAidl("setLightBrightness", Args(id, brightness), [&](const auto& a) { *out = a.brightnessResult; });
    }
};

class VaelonService : public vaelon::BnVAELONService, public Served<VaelonAnswers> {
public:
    explicit VaelonService(Handset& handset) : Served(handset.vaelon(), "aidl") {}

    Status getCapabilities(std::vector<vaelon::GetCapabilitiesResult>* out) override {
        return ServeAidl("getCapabilities", {}, [&](const auto& a) {
            out->clear();
            for (const Capability& c : a.capabilities) {
                vaelon::GetCapabilitiesResult record;
                record.serviceType = c.serviceType;
                record.overtimes = c.overtimes;
                out->push_back(record);
            }
        });
    }
    Status registerClient(const sp<vaelon::IVAELONServiceCallBack>& callback, int32_t serviceType,
                          const String16& name, vaelon::VAELONClientHandleType* handle, int32_t* out) override {
        return ServeAidl("registerClient", Args(serviceType, name), [&](const auto& a) {
            std::lock_guard<std::mutex> lock(mLock);
            mCallback = callback;
            mClientHandle = a.clientHandle;
            handle->clientHandle = a.clientHandle;
            *out = a.registerResult;
        });
    }
    Status unregisterClient(const vaelon::VAELONClientHandleType& handle, int32_t* out) override {
        return ServeAidl("unregisterClient", Args(handle.clientHandle), [&](const auto& a) {
            std::lock_guard<std::mutex> lock(mLock);
            mCallback = nullptr;
            *out = a.unregisterResult;
        });
    }

    // The client's process ended: its callback is gone with it.
    void ForgetClient() {
        std::lock_guard<std::mutex> lock(mLock);
        mCallback = nullptr;
    }

    // Reports an event to the registered client from a thread of the service's own.
    bool Notify(int32_t serviceResult, const std::function<void()>& onThreadStart,
                const std::function<void()>& onThreadEnd) {
        sp<vaelon::IVAELONServiceCallBack> callback;
        vaelon::VAELONClientHandleType handle;
        {
            std::lock_guard<std::mutex> lock(mLock);
            callback = mCallback;
            handle.clientHandle = mClientHandle;
        }
        if (callback == nullptr) return false;
        vaelon::VAELONServiceResult result;
        result.serviceResult = serviceResult;
        std::thread serviceThread([&] {
            if (onThreadStart) onThreadStart();
            callback->NotifyVAELONEvent(handle, result);
            if (onThreadEnd) onThreadEnd();
        });
        serviceThread.join();
        return true;
    }

private:
    std::mutex mLock;
    sp<vaelon::IVAELONServiceCallBack> mCallback;
    int32_t mClientHandle = 0;
};

class CustVibratorService : public custvibrator::BnCustVibrator, public Served<VibratorAnswers> {
public:
    explicit CustVibratorService(Handset& handset) : Served(handset.vibrator(), "aidl") {}

    Status setVibratorParameter(const String16& command) override {
        return ServeAidl("setVibratorParameter", Args(command), [](const auto&) {});
    }
    Status getVibratorResult(const String16& command, String16* out) override {
        return ServeAidl("getVibratorResult", Args(command),
                         [&](const auto& a) { *out = String16(a.result.data(), a.result.size()); });
    }
};

// The platform vibrator service; the maker's interface hangs off it as its extension.
class VibratorService : public android::hardware::vibrator::BnVibrator {
public:
    Status getCapabilities(int32_t* out) override {
        if (!isBinderAlive()) return Status::fromStatusT(android::DEAD_OBJECT);
        *out = 0;
        return Status::ok();
    }
    Status off() override { return Status::fromStatusT(isBinderAlive() ? android::OK : android::DEAD_OBJECT); }
};

// An extension binder of some other interface than the maker's vibrator.
class OtherExtension : public android::BBinder {
public:
    const String16& getInterfaceDescriptor() const override { return mDescriptor; }

private:
    String16 mDescriptor{"vendor.zentel.hardware.vibrator.IVibratorEffects"};
};

class SessionService : public fingerprint::BnSession, public Served<FingerprintAnswers> {
public:
    explicit SessionService(Handset& handset) : Served(handset.fingerprint(), "aidl") {}

    ndk::ScopedAStatus sendCmdToHal(int32_t cmd, int32_t* out) override {
        return ServeNdk("sendCmdToHal", Args(cmd), [&](const auto& a) { *out = a.cmdResult; });
    }
};

class FingerprintService : public fingerprint::BnFingerprint, public Served<FingerprintAnswers> {
public:
    FingerprintService(Handset& handset, bool noSession)
        : Served(handset.fingerprint(), "aidl"), mHandset(handset), mNoSession(noSession) {}

    ndk::ScopedAStatus createSession(
            int32_t sensorId, int32_t userId,
            const std::shared_ptr<aidl::android::hardware::biometrics::fingerprint::ISessionCallback>&,
            std::shared_ptr<fingerprint::ISession>* out) override {
        return ServeNdk("createSession", Args(sensorId, userId), [&](const auto&) {
            if (mNoSession) {
                *out = nullptr;
                return;
            }
            auto session = ndk::SharedRefBase::make<SessionService>(mHandset);
            std::vector<std::shared_ptr<SessionService>> ended;
            std::vector<ndk::SpAIBinder> endedBinders;
            std::lock_guard<std::mutex> lock(mLock);
            // Sessions that no client holds any more end here: the service keeps what its
            // clients use, not every session it ever made (a client that reconnects over and
            // over would otherwise grow the service without bound). Only this service and
            // the session's own binder hold such a session. They go after the lock.
            for (size_t i = mSessions.size(); i-- > 0;) {
                if (mSessions[i].use_count() <= 2) {
                    ended.push_back(std::move(mSessions[i]));
                    endedBinders.push_back(std::move(mSessionBinders[i]));
                    mSessions.erase(mSessions.begin() + static_cast<std::ptrdiff_t>(i));
                    mSessionBinders.erase(mSessionBinders.begin() + static_cast<std::ptrdiff_t>(i));
                }
            }
            mSessions.push_back(session);
            // The service process keeps the session's binder for as long as it lives, so
            // clients linking to it link to the one object that will die with it.
            mSessionBinders.push_back(session->asBinder());
            *out = session;
        });
    }

    // The fingerprint process dies with its sessions.
    void KillAll() {
        std::vector<std::shared_ptr<SessionService>> sessions;
        std::vector<ndk::SpAIBinder> binders;
        {
            std::lock_guard<std::mutex> lock(mLock);
            sessions.swap(mSessions);
            binders.swap(mSessionBinders);
        }
        MarkDead();
        for (const auto& session : sessions) session->MarkDead();
        const ndk::SpAIBinder self = asBinder();
        std::vector<AIBinder*> objects{self.get()};
        for (const auto& binder : binders) objects.push_back(binder.get());
        hostcontrol::KillAIBinders(objects);
    }

private:
    Handset& mHandset;
    const bool mNoSession;
    std::mutex mLock;
    std::vector<std::shared_ptr<SessionService>> mSessions;
    std::vector<ndk::SpAIBinder> mSessionBinders;
};

// Registers a libbinder fake under the family's name and arranges its death.
template <typename Service>
void Serve(Handset::Running& running, Family family, const sp<Service>& service) {
    android::defaultServiceManager()->addService(String16(Handset::AidlServiceName(family).c_str()), service);
    running.kill = [service] {
        service->MarkDead();
        hostcontrol::KillBinder(service);
    };
}

}  // namespace

std::shared_ptr<Handset::Running> StartAidlFamily(Handset& handset, Family family, const FamilyConfig& config) {
    auto running = std::make_shared<Handset::Running>();
    switch (family) {
        case Family::kFactory: Serve(*running, family, sp<FactoryService>(new FactoryService(handset))); break;
        case Family::kDisplay: Serve(*running, family, sp<DisplayService>(new DisplayService(handset))); break;
        case Family::kTouchScreen: Serve(*running, family, sp<TouchScreenService>(new TouchScreenService(handset))); break;
        case Family::kSensors: Serve(*running, family, sp<SensorsService>(new SensorsService(handset))); break;
        case Family::kPower: Serve(*running, family, sp<PowerService>(new PowerService(handset))); break;
        case Family::kLight: Serve(*running, family, sp<LightService>(new LightService(handset))); break;
        case Family::kVaelon: {
            sp<VaelonService> service = new VaelonService(handset);
            Serve(*running, family, service);
            running->notifyVaelon = [service](int32_t serviceResult, const std::function<void()>& onStart,
                                              const std::function<void()>& onEnd) {
                return service->Notify(serviceResult, onStart, onEnd);
            };
            running->forgetClients = [service] { service->ForgetClient(); };
            break;
        }
        case Family::kFingerprint: {
            auto service = ndk::SharedRefBase::make<FingerprintService>(handset, config.fingerprintNoSession);
            AServiceManager_addService(service->asBinder().get(), Handset::AidlServiceName(family).c_str());
            running->kill = [service] { service->KillAll(); };
            break;
        }
        case Family::kVibrator: {
            sp<VibratorService> base = new VibratorService();
            sp<CustVibratorService> cust;
            if (config.vibratorExtension == VibratorExtension::kCustVibrator) {
                cust = new CustVibratorService(handset);
                base->setExtension(cust);
            } else if (config.vibratorExtension == VibratorExtension::kOtherInterface) {
                base->setExtension(new OtherExtension());
            }
            android::defaultServiceManager()->addService(String16(Handset::AidlServiceName(family).c_str()), base);
            // The extension lives in the base service's process and dies with it.
            running->kill = [base, cust] {
                if (cust != nullptr) cust->MarkDead();
                hostcontrol::KillBinders({base, cust});
            };
            break;
        }
    }
    return running;
}

}  // namespace mmisim
