#include "Supported.h"

#include <cstdio>

namespace {

[[noreturn]] void refuse(const std::string& problem, const std::string& file,
                         const sim::Action& action) {
    char place[64];
    std::snprintf(place, sizeof(place), "timeline, at t = %.3f",
                  static_cast<double>(action.timeMs) / 1000);
    throw sim::ScenarioError(problem, file, place);
}

}  // namespace

void refuseUnsupported(const sim::Scenario& scenario, const std::string& file,
                       bool (*canPerform)(const sim::Deed&), const std::string& verb) {
    for (const sim::Action& action : scenario.timeline) {
        if (!canPerform(action.deed)) {
            refuse("the action needs a service of the daemon that it does not have yet, so the "
                   "scenario cannot be " +
                           verb,
                   file, action);
        }
    }
}

void refuseProblems(const sim::Scenario& scenario, const std::string& file,
                    std::optional<std::string> (*problem)(const sim::Deed&)) {
    for (const sim::Action& action : scenario.timeline) {
        if (const auto why = problem(action.deed)) {
            refuse(*why, file, action);
        }
    }
}
