#include "recording/RunInfo.h"

#include <algorithm>

#include "base/Time.h"
#include "config/ConfigText.h"
#include "sim/tree/PhoneTree.h"

namespace {

constexpr char kProjectNode[] = "/proc/zentaVersion/prjName";

std::string filesOf(const sim::ConfigFiles& config) {
    std::string text;
    const auto add = [&text](const char* name, const std::optional<std::string>& content) {
        if (content) {
            text += (text.empty() ? "" : ", ") + std::string(name);
        }
    };
    add("main", config.main);
    add("data", config.data);
    add("platform", config.platform);
    return text;
}

// The file may be any text: the daemon has to cope with it, so its version is no matter of course.
std::string versionIn(const std::string& text) {
    Json::Value root;
    if (kelvo::parseConfigText(text, root) != 0 || !root.isObject() ||
        !root["config_version"].isString()) {
        return {};
    }
    return root["config_version"].asString();
}

std::string projectOf(const sim::Scenario& scenario) {
    const auto node = std::ranges::find(scenario.nodes, kProjectNode, &sim::NodeChange::path);
    return node != scenario.nodes.end() ? node->text.value_or("") : "";
}

}  // namespace

RunInfo runInfo(const sim::Scenario& scenario, const std::string& file) {
    RunInfo info;
    info.name = scenario.name;
    info.scenario = file;
    info.configuration = filesOf(scenario.config);
    info.configVersion = scenario.config.main ? versionIn(*scenario.config.main) : "";
    info.platform = sim::platformOf(scenario.nodes);
    info.project = projectOf(scenario);
    info.startMs = scenario.startNs / kelvo::kNanosPerMilli;
    info.durationMs = scenario.durationMs;
    return info;
}
