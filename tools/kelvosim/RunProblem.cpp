#include "RunProblem.h"

#include <algorithm>

#include "sim/scenario/PhonePaths.h"

namespace {

constexpr char kEnableProperty[] = "persist.sys.kelvo.enable";

bool hasNode(const sim::Scenario& scenario, std::string_view path) {
    const auto node = std::ranges::find(scenario.nodes, path, &sim::NodeChange::path);
    return node != scenario.nodes.end() && node->text.has_value();
}

bool hasConfiguration(const sim::Scenario& scenario) {
    return scenario.config.main || scenario.config.data ||
           hasNode(scenario, sim::kMainConfigPath) || hasNode(scenario, sim::kDataConfigPath);
}

}  // namespace

std::optional<RunProblem> runProblem(const sim::Scenario& scenario,
                                     const std::vector<ReportWarning>& warnings) {
    const std::string& enable = scenario.properties.at(kEnableProperty);
    if (enable != "1" && enable != "2") {
        return RunProblem{"the daemon is disabled, so nothing happens (\"" + enable + "\")",
                          std::string("properties.") + kEnableProperty};
    }
    if (!hasConfiguration(scenario)) {
        return RunProblem{"the phone has no configuration, so the daemon does without one",
                          "config"};
    }
    for (const ReportWarning& warning : warnings) {
        if (warning.isRejected) {
            return RunProblem{warning.what + " (the daemon " + warning.effect + ")", warning.place};
        }
    }
    return std::nullopt;
}
