// What the simulated services answer, per family, and what they were asked. One set of
// answers serves both generations of a family, so a test scripts a value once and sees it
// over AIDL and over HIDL alike.
#pragma once

#include <sim/brief_lock.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace mmisim {

// Status plus text: the shape of most text answers. Over HIDL, display and touch statuses
// travel as their enum or bool form (see the fakes).
struct TextReply {
    int32_t ret = 0;
    std::string text;
};

struct FactoryAnswers {
    // Whether the big-data records the service receives are kept (Handset::factoryInbox).
    bool keepReceivedRecords = true;
    bool factoryVersion = true;
    TextReply manufactureFileName{0, "mmi_manufacture.xml"};
    // getDeviceInfo by item (0 serial number, 5 auto-start flag, 35 test package); others
    // answer {0, ""}.
    std::map<int32_t, TextReply> deviceInfo{{0, {0, "ZT26A0012345"}}, {5, {0, "1"}}, {35, {0, "com.corvex.mmitest"}}};
    int32_t setDeviceInfoResult = 0;
    int32_t manufactureMode = 1;
    int32_t featuresCheckResult = 0;
    int32_t clearDeviceInfoResult = 0;
    int32_t releaseFactoryResourceResult = 0;
    int32_t mmiTestResultResult = 0;
    std::map<int32_t, TextReply> stationFlags;  // by station id; others answer {0, ""}
    int32_t commandDataResult = 0;
    int32_t fmdCmdDataResult = 0;
    int32_t fmdMessageResult = 0;
    int32_t oeminfoRet = 0;
    std::string oeminfo;  // raw bytes, zero bytes allowed
};

struct DisplayAnswers {
    TextReply screenCurrentFps{0, "60"};
    int32_t selectStationResult = 0;
    TextReply screenConfig{0, "1080x2400@60"};
    TextReply displayParameter{0, "ok"};
    int32_t backLightResult = 0;
    int32_t panelTypeRet = 0;
    int32_t panelType = 2;
    int32_t selfAdaptMinFpsResult = 0;
};

struct TouchScreenAnswers {
    TextReply capacitanceTest;
    TextReply capacitanceCalibrate{0, "calibrated"};
    TextReply rotateCrown{0, "pass"};  // over HIDL: success is ret == 0
    int32_t featureConfigResult = 0;
};

struct FingerprintAnswers {
    int32_t cmdResult = 0;
};

struct DataReply {
    int32_t result = 0;
    std::vector<int32_t> data;
};

struct ParameterReply {
    int32_t ret = 0;
    std::string para;
    std::vector<int32_t> data;
    bool keepCallerData = false;  // AIDL: leave the caller's pre-sized vector as it is
};

struct SensorAnswers {
    int32_t startCalibrateResult = 0;
    int32_t startSelfTestResult = 0;
    int32_t calibrateDelayTime = 3000;
    int32_t selfTestDelayTime = 2000;
    int32_t calibrateResult = 0;
    int32_t selfTestResult = 0;
    TextReply calibrateType{0, "factory"};
    std::map<int32_t, DataReply> sensorData;  // by sensor id; others answer {0, []}
    bool flickerSupported = true;
    ParameterReply parameter;
    int32_t activateResult = 0;
    int32_t compassRawValueLimit = 1200;
};

struct PowerAnswers {
    int32_t setPowerStateResult = 0;
    TextReply powerState{0, "charging"};
    TextReply usbSpeed{0, "usb3"};
};

struct LightAnswers {
    int32_t brightnessResult = 0;
};

struct Capability {
    int32_t serviceType = 0;
    std::vector<int32_t> overtimes;
};

struct VaelonAnswers {
    std::vector<Capability> capabilities{{1, {30}}, {2, {60}}};
    int32_t registerResult = 0;
    int32_t clientHandle = 7;
    int32_t unregisterResult = 0;
};

struct VibratorAnswers {
    std::string result = "ok";  // UTF-8 here; travels as UTF-16
};

// How a family's services misbehave, the same over both generations. Every call meets them
// in the services' shared serving code.
struct ServiceFaults {
    // Every call fails in transport (the service does not receive it) while the service
    // stays up and registered.
    bool failCalls = false;
    // HIDL: a call that answers through a result callback returns without calling it (the
    // call itself succeeds), as a faulty service may.
    bool skipCallbacks = false;
    // Every call takes this long before it is answered; a service killed meanwhile fails
    // it at once.
    int32_t latencyMs = 0;
};

// One call as a service received it: which service took it ("aidl", "hidl", or "hidl2"
// for the 2.0 sensors service), the method name, the arguments as text, and for a HIDL
// service the version it serves ("1.1"; empty over AIDL).
struct Call {
    std::string origin;
    std::string method;
    std::vector<std::string> args;
    std::string version;
};

// Answers, faults and received calls of one family, safe to use from any thread. The
// answers in force are an immutable snapshot that a change replaces, so that concurrent
// calls of a service copy them outside the lock: the lock only orders the received calls.
template <typename Answers>
class FamilyState {
public:
    // What a call that reaches the family's service gets.
    struct Received {
        bool reached;  // false: the call failed in transport (ServiceFaults::failCalls)
        ServiceFaults faults;
        std::shared_ptr<const Answers> answers;
    };

    Answers answers() const {
        std::shared_ptr<const Answers> current;
        {
            std::lock_guard<BriefLock> lock(mLock);
            current = mAnswers;
        }
        return *current;
    }

    void update(const std::function<void(Answers&)>& change) {
        std::lock_guard<BriefLock> lock(mLock);
        auto next = std::make_shared<Answers>(*mAnswers);
        change(*next);
        mAnswers = std::move(next);
    }

    ServiceFaults faults() const {
        std::lock_guard<BriefLock> lock(mLock);
        return mFaults;
    }

    void setFaults(const ServiceFaults& faults) {
        std::lock_guard<BriefLock> lock(mLock);
        mFaults = faults;
    }

    void reset() {
        std::lock_guard<BriefLock> lock(mLock);
        mAnswers = std::make_shared<const Answers>();
        mFaults = ServiceFaults();
        mCalls.clear();
        mReceived = 0;
        mRecordCalls = true;
    }

    // A call arriving at the service: unless it fails in transport, it is recorded (when
    // recording is on) and gets the answers in force.
    Received receive(const char* origin, const std::string& version, const char* method,
                     std::vector<std::string> args) {
        Call call{origin, method, std::move(args), version};
        std::lock_guard<BriefLock> lock(mLock);
        if (mFaults.failCalls) return Received{false, mFaults, nullptr};
        ++mReceived;
        if (mRecordCalls) mCalls.push_back(std::move(call));
        return Received{true, mFaults, mAnswers};
    }

    // Whether received calls are kept for calls()/callsTo() (on by default; a long load run
    // turns it off so that the list does not grow with every call). reset() turns it on.
    void setRecordCalls(bool on) {
        std::lock_guard<BriefLock> lock(mLock);
        mRecordCalls = on;
    }

    // Calls received since reset(), recorded or not: cleared calls count too.
    size_t received() const {
        std::lock_guard<BriefLock> lock(mLock);
        return mReceived;
    }

    std::vector<Call> calls() const {
        std::lock_guard<BriefLock> lock(mLock);
        return std::vector<Call>(mCalls.begin(), mCalls.end());
    }

    std::vector<Call> callsTo(const std::string& method) const {
        std::lock_guard<BriefLock> lock(mLock);
        std::vector<Call> matching;
        for (const Call& call : mCalls) {
            if (call.method == method) matching.push_back(call);
        }
        return matching;
    }

    void clearCalls() {
        std::lock_guard<BriefLock> lock(mLock);
        mCalls.clear();
    }

private:
    mutable BriefLock mLock;
    std::shared_ptr<const Answers> mAnswers = std::make_shared<const Answers>();
    ServiceFaults mFaults;
    std::deque<Call> mCalls;  // adding a call never moves the earlier ones
    size_t mReceived = 0;
    bool mRecordCalls = true;
};

}  // namespace mmisim
