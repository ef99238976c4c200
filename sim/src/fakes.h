// Starting the fake services of one family, and what the handset keeps of them.
#pragma once

#include <sim/handset.h>

#include <functional>
#include <memory>
#include <vector>

namespace mmisim {

struct Handset::Running {
    // Kills the family's service process: all its service objects die together, and all
    // have left the service managers before the first death notice goes out.
    std::function<void()> kill;
    // The application's process ended: the services drop the client binders they hold
    // (the camera's client callback).
    std::function<void()> forgetClients;
    // Camera only: delivers an event to the registered client (see Handset::NotifyVaelonEvent).
    std::function<bool(int32_t, const std::function<void()>&, const std::function<void()>&)> notifyVaelon;
};

std::shared_ptr<Handset::Running> StartAidlFamily(Handset& handset, Family family, const FamilyConfig& config);
std::shared_ptr<Handset::Running> StartHidlFamily(Handset& handset, Family family, const FamilyConfig& config);

}  // namespace mmisim
