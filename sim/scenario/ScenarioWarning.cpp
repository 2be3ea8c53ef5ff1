#include "sim/scenario/ScenarioWarning.h"

#include <algorithm>
#include <sstream>

namespace sim {

namespace {

std::string seconds(int64_t ms) {
    constexpr int kDigits = 15;
    std::ostringstream text;
    text.precision(kDigits);
    text << static_cast<double>(ms) / 1000 << " s";
    return text.str();
}

}  // namespace

std::vector<ScenarioWarning> warningsOf(const Scenario& scenario, const std::string& file) {
    const auto& timeline = scenario.timeline;  // in the order of time
    const auto late = std::ranges::upper_bound(timeline, scenario.durationMs, {}, &Action::timeMs);
    if (late == timeline.end()) {
        return {};
    }
    const auto more = timeline.end() - late - 1;
    return {{"the action at " + seconds(late->timeMs) + " comes after the end, at " +
                     seconds(scenario.durationMs) + ", and never happens" +
                     (more > 0 ? " (and " + std::to_string(more) + " more)" : ""),
             file + ": timeline"}};
}

}  // namespace sim
