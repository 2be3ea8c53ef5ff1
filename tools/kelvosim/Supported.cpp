#include "Supported.h"

#include <cstdio>

void refuseUnsupported(const sim::Scenario& scenario, const std::string& file,
                       bool (*canPerform)(const sim::Deed&), const std::string& verb) {
    for (const sim::Action& action : scenario.timeline) {
        if (!canPerform(action.deed)) {
            char place[64];
            std::snprintf(place, sizeof(place), "timeline, at t = %.3f",
                          static_cast<double>(action.timeMs) / 1000);
            throw sim::ScenarioError(
                    "the action needs a service of the daemon that it does not have yet, so the "
                    "scenario cannot be " +
                            verb,
                    file, place);
        }
    }
}
