#include "sim/services/ServiceValues.h"

#include "common/Overloaded.h"

namespace sim {

void PhoneValues::take(const Deed& deed) {
    std::visit(common::Overloaded{
                       [this](const Health& set) { health = set; },
                       [this](const BatteryCurrent& set) { batteryCurrent = set.value; },
                       [this](const TaskStats& set) { taskStats = set.text; },
                       [this](const Panel& set) {
                           panelMax = static_cast<uint8_t>(set.max.value_or(panelMax));
                           panelLevel = static_cast<uint8_t>(set.level.value_or(panelLevel));
                       },
                       [this](const Frames& set) { frames = set.value; }, [](const auto&) {}},
               deed);
}

std::vector<Deed> PhoneValues::asDeeds() const {
    return {health, BatteryCurrent{batteryCurrent}, TaskStats{taskStats},
            Panel{panelMax, panelLevel}, Frames{frames}};
}

}  // namespace sim
