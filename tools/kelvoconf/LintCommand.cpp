#include <algorithm>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "Commands.h"
#include "ConfigInput.h"
#include "DeviceZones.h"
#include "Files.h"
#include "common/JsonText.h"
#include "kelvoconf/lint/FindingText.h"
#include "kelvoconf/lint/Lint.h"

namespace kelvoconf {

namespace {

using kelvo::lint::Finding;
using kelvo::lint::LintInput;
using kelvo::lint::Severity;

constexpr int kClean = 0;
constexpr int kWarnings = 1;
constexpr int kErrors = 3;

kelvo::lint::ConfigFile readFile(const std::string& path) {
    const ConfigText config = readConfigText(path);
    return {path == "-" ? "standard input" : path, config.whole.substr(config.start),
            common::placeIn(config.whole, config.start).line};
}

LintInput readInputs(const LintOptions& options) {
    const PhoneFiles& files = options.files;
    LintInput input;
    input.platform = files.platform;
    input.project = files.project;
    input.main = readFile(files.main);
    if (!files.sub.empty()) {
        input.sub = readFile(files.sub);
    }
    if (!options.zones.empty()) {
        input.zones = readZoneTypes(options.zones);
    }
    return input;
}

std::string counted(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string summary(std::ptrdiff_t errors, std::ptrdiff_t warnings, bool knowsZones) {
    return counted(errors, "error") + ", " + counted(warnings, "warning") +
           (knowsZones ? "" : "; zones not judged (no --zones)") + "\n";
}

int report(const LintOptions& options) {
    const LintInput input = readInputs(options);
    const std::vector<Finding> findings = kelvo::lint::lintConfig(input);
    std::string text;
    for (const Finding& finding : findings) {
        text += options.json ? toJsonLine(finding) : toText(finding);
    }
    const auto errors = std::ranges::count(findings, Severity::ERROR, &Finding::severity);
    const auto warnings = std::ranges::count(findings, Severity::WARNING, &Finding::severity);
    if (!options.json) {
        text += summary(errors, warnings, input.zones.has_value());
    }
    writeOutput("-", text);
    return errors > 0 ? kErrors : warnings > 0 ? kWarnings : kClean;
}

}  // namespace

// A file that cannot be read is an error, too: a script that lets warnings pass must not pass it.
int lintCommand(const LintOptions& options) {
    warnOfFiles(options.files);
    try {
        return report(options);
    } catch (const Failure& failure) {
        std::cerr << "kelvoconf: " << failure.what() << '\n';
        return kErrors;
    }
}

}  // namespace kelvoconf
