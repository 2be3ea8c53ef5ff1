#include "Supported.h"

#include <cstdio>

void refuseProblems(const sim::Scenario& scenario, const std::string& file,
                    std::optional<std::string> (*problem)(const sim::Deed&)) {
    for (const sim::Action& action : scenario.timeline) {
        if (const auto why = problem(action.deed)) {
            char place[64];
            std::snprintf(place, sizeof(place), "timeline, at t = %.3f",
                          static_cast<double>(action.timeMs) / 1000);
            throw sim::ScenarioError(*why, file, place);
        }
    }
}
