// A seeded schedule of service deaths and restarts for a load run. Steps are spaced by calls
// made (not by time): "after 700 more calls, kill the display service".
//
// While a round runs, each step kills a running family (up to three are down at once) or
// restarts one that is down, so deaths also land while the library is still recovering from
// earlier ones. The round closes in two steps:
//   - windDown() restarts every family that is down;
//   - then, once every notice has been handled, closing() kills every served family at once
//     and starts them all again, the fingerprint service first. The recovery this causes
//     connects every family afresh: it clears whatever a death in the middle of a recovery
//     left behind (a handle whose service died between its lookup and its death link, which
//     the library keeps until some other linked service dies), and over HIDL every family is
//     reconnected by the registration notices of services it listens for (the fingerprint
//     family listens for the touch screen's, which comes after the fingerprint service's).
#pragma once

#include <sim/handset.h>

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace mmistress {

struct FaultStep {
    enum class Action { kKill, kStart };
    Action action;
    mmisim::Family family;
    int64_t afterCalls;  // calls the load makes before the step
};

class FaultSchedule {
public:
    FaultSchedule(const mmisim::DeviceProfile& profile, uint32_t seed, int64_t minGap, int64_t maxGap);

    // The next step of a running round.
    FaultStep next();
    // The steps that bring back every family that is down.
    std::vector<FaultStep> windDown();
    // The steps that close the round (see above); every family is up before them.
    std::vector<FaultStep> closing();

    // Deaths the schedule caused, by generation.
    int aidlDeaths() const { return mAidlDeaths; }
    int hidlDeaths() const { return mHidlDeaths; }

private:
    FaultStep kill(mmisim::Family family, int64_t gap);
    FaultStep start(mmisim::Family family, int64_t gap);
    int64_t gap();
    bool hidl(mmisim::Family family) const;

    static constexpr size_t kMaxDown = 3;

    mmisim::DeviceProfile mProfile;
    std::mt19937 mRandom;
    std::uniform_int_distribution<int64_t> mGap;
    std::vector<mmisim::Family> mServed;
    std::set<mmisim::Family> mDown;
    int mAidlDeaths = 0;
    int mHidlDeaths = 0;
};

}  // namespace mmistress
