#include "ConfigWarnings.h"

#include "kelvoconf/lint/Lint.h"
#include "recording/RunInfo.h"
#include "sim/tree/PhoneTree.h"

namespace {

using kelvo::lint::Finding;
using kelvo::lint::LintInput;

std::string placeOf(const Finding& finding) {
    return finding.file + (finding.line > 0 ? ":" + std::to_string(finding.line) : "") +
           (finding.path.empty() ? "" : ": " + finding.path);
}

/** The files are called by their members in the scenario. */
LintInput inputFor(const sim::Scenario& scenario, const char* name, const std::string& text) {
    LintInput input;
    input.main.name = name;
    input.main.text = text;
    input.platform = sim::platformOf(scenario.nodes);
    input.project = runInfo(scenario, "").project;
    input.zones = sim::zoneTypes(scenario.zones);
    return input;
}

/** Whether the finding is about a file that the daemon does not take as it stands. */
bool isAboutAll(const Finding& finding) {
    return finding.rule == "not-json" || finding.rule == "text-before-object" ||
           finding.rule == "wrong-main-file";
}

void addWarnings(const LintInput& input, std::vector<ReportWarning>& warnings) {
    for (const Finding& finding : kelvo::lint::lintConfig(input)) {
        warnings.push_back({finding.severity == kelvo::lint::Severity::ERROR, isAboutAll(finding),
                            placeOf(finding), finding.what, finding.effect, finding.mend});
    }
}

}  // namespace

std::vector<ReportWarning> configWarnings(const sim::Scenario& scenario) {
    std::vector<ReportWarning> warnings;
    const sim::ConfigFiles& files = scenario.config;
    if (files.main) {
        LintInput input = inputFor(scenario, "config.main", *files.main);
        if (files.platform) {
            input.sub = kelvo::lint::ConfigFile{"config.platform", *files.platform};
        }
        addWarnings(input, warnings);
    }
    if (files.data) {
        addWarnings(inputFor(scenario, "config.data", *files.data), warnings);
    }
    return warnings;
}
