#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "ConfigInput.h"
#include "DeviceZones.h"
#include "Files.h"
#include "ZoneTemps.h"
#include "common/JsonText.h"
#include "kelvoconf/lint/FindingText.h"
#include "kelvoconf/lint/Fleet.h"
#include "kelvoconf/lint/FleetText.h"
#include "kelvoconf/lint/Lint.h"

namespace kelvoconf {

namespace {

using kelvo::lint::Finding;
using kelvo::lint::LintInput;
using kelvo::lint::ModelRanges;
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
    return input;
}

/** What is known of the phone's zones, and where their temperatures come from. */
struct Zones {
    std::vector<ListedZone> zones;
    kelvo::lint::ZoneSamples samples;

    std::vector<std::string> types() const {
        std::vector<std::string> types(zones.size());
        std::ranges::transform(zones, types.begin(), &ListedZone::type);
        return types;
    }
};

Zones readZonesOf(const LintOptions& options) {
    Zones zones;
    if (!options.zones.empty()) {
        zones.zones = readZones(options.zones);
        zones.samples = samplesOf(zones.zones, options.zones);
    }
    if (!options.trace.empty()) {
        zones.samples = samplesOfTrace(options.trace, zones.zones);
    }
    return zones;
}

std::string counted(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/** What was found, as text or JSON. */
struct Report {
    std::string text;
    std::ptrdiff_t errors = 0;
    std::ptrdiff_t warnings = 0;
    std::string phones;  // that were judged, when they are several

    void add(const Finding& finding, const std::string& lines) {
        text += lines;
        ++(finding.severity == Severity::ERROR ? errors : warnings);
    }
    std::string summary(bool knowsZones) const {
        return counted(errors, "error") + ", " + counted(warnings, "warning") +
               (phones.empty() ? "" : "; for " + phones) +
               (knowsZones ? "" : "; zones not judged (no --zones)") + "\n";
    }
};

Report lintOne(const LintInput& input, bool json) {
    Report report;
    for (const Finding& finding : kelvo::lint::lintConfig(input)) {
        report.add(finding, json ? toJsonLine(finding) : toText(finding));
    }
    return report;
}

Report lintAll(const LintInput& input, const LintOptions& options) {
    const kelvo::lint::Fleet fleet =
            kelvo::lint::fleetOf(input, options.onlyPlatform, options.onlyProject);
    Report report;
    report.phones = toText(fleet);
    for (const auto& found : kelvo::lint::lintFleet(input, fleet)) {
        report.add(found.finding, options.json ? toJsonLine(found) : toText(found, fleet));
    }
    return report;
}

int report(const LintOptions& options) {
    LintInput input = readInputs(options);
    const Zones zones = readZonesOf(options);
    if (!zones.zones.empty()) {
        input.zones = zones.types();
    }
    ModelRanges ranges(zones.samples);
    input.ranges = zones.samples ? &ranges : nullptr;
    const Report report = options.onlyPlatform && options.onlyProject ? lintOne(input, options.json)
                                                                      : lintAll(input, options);
    writeOutput("-", report.text + (options.json ? "" : report.summary(input.zones.has_value())));
    return report.errors > 0 ? kErrors : report.warnings > 0 ? kWarnings : kClean;
}

}  // namespace

// A file that cannot be read is an error, too: a script that lets warnings pass must not pass it.
int lintCommand(const LintOptions& options) {
    if (options.onlyPlatform) {
        warnOfFiles(options.files);
    }
    try {
        return report(options);
    } catch (const Failure& failure) {
        std::cerr << "kelvoconf: " << failure.what() << '\n';
        return kErrors;
    }
}

}  // namespace kelvoconf
