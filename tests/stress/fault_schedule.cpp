#include "fault_schedule.h"

#include <algorithm>
#include <iterator>

namespace mmistress {

using mmisim::Family;
using mmisim::Transport;

FaultSchedule::FaultSchedule(const mmisim::DeviceProfile& profile, uint32_t seed, int64_t minGap, int64_t maxGap)
    : mProfile(profile), mRandom(seed), mGap(minGap, maxGap) {
    for (Family family : mmisim::kAllFamilies) {
        if (profile[family].transport != Transport::kNone) mServed.push_back(family);
    }
}

bool FaultSchedule::hidl(Family family) const { return mProfile[family].transport == Transport::kHidl; }

int64_t FaultSchedule::gap() { return mGap(mRandom); }

FaultStep FaultSchedule::kill(Family family, int64_t gap) {
    mDown.insert(family);
    ++(hidl(family) ? mHidlDeaths : mAidlDeaths);
    return {FaultStep::Action::kKill, family, gap};
}

FaultStep FaultSchedule::start(Family family, int64_t gap) {
    mDown.erase(family);
    return {FaultStep::Action::kStart, family, gap};
}

FaultStep FaultSchedule::next() {
    const int64_t calls = gap();
    const bool restart = !mDown.empty() && (mDown.size() >= kMaxDown || mDown.size() == mServed.size() ||
                                            std::bernoulli_distribution(0.5)(mRandom));
    if (restart) {
        auto it = mDown.begin();
        std::advance(it, std::uniform_int_distribution<size_t>(0, mDown.size() - 1)(mRandom));
        return start(*it, calls);
    }
    std::vector<Family> up;
    std::copy_if(mServed.begin(), mServed.end(), std::back_inserter(up),
                 [this](Family f) { return mDown.count(f) == 0; });
    return kill(up[std::uniform_int_distribution<size_t>(0, up.size() - 1)(mRandom)], calls);
}

std::vector<FaultStep> FaultSchedule::windDown() {
    std::vector<FaultStep> steps;
    while (!mDown.empty()) steps.push_back(start(*mDown.begin(), gap()));
    return steps;
}

std::vector<FaultStep> FaultSchedule::closing() {
    std::vector<FaultStep> steps;
    for (Family family : mServed) steps.push_back(kill(family, 0));
    // The fingerprint service first: its own registration reconnects nothing over HIDL.
    std::vector<Family> order = mServed;
    std::stable_partition(order.begin(), order.end(), [](Family f) { return f == Family::kFingerprint; });
    for (Family family : order) steps.push_back(start(family, gap()));
    return steps;
}

}  // namespace mmistress
