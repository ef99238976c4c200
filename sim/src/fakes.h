// Starting the fake services of one family, and what the handset keeps of them.
#pragma once

#include <sim/handset.h>

#include <functional>
#include <memory>
#include <vector>

namespace mmisim {

struct Handset::Running {
    // Each entry kills one part of the family's service process.
    std::vector<std::function<void()>> killers;
    // Camera only: delivers an event to the registered client (see Handset::NotifyVaelonEvent).
    std::function<bool(int32_t, const std::function<void()>&, const std::function<void()>&)> notifyVaelon;
};

std::shared_ptr<Handset::Running> StartAidlFamily(Handset& handset, Family family, const FamilyConfig& config);
std::shared_ptr<Handset::Running> StartHidlFamily(Handset& handset, Family family, const FamilyConfig& config);

}  // namespace mmisim
