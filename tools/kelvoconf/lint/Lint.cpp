#include "kelvoconf/lint/Lint.h"

#include "common/JsonText.h"
#include "kelvoconf/lint/ParsedFiles.h"
#include "kelvoconf/lint/Readings.h"
#include "kelvoconf/lint/Rules.h"
#include "kelvoconf/lint/SceneSet.h"
#include "kelvoconf/lint/ZoneNames.h"

namespace kelvo::lint {

namespace {

ZoneTable zoneTable(const LintInput& input, const Json::Value& root) {
    if (!input.zones) {
        return zonesNamedIn(root);
    }
    ZoneTable table;
    for (const std::string& type : *input.zones) {
        table.add(type);
    }
    return table;
}

int32_t zoneCount(const LintInput& input) {
    return input.zones ? static_cast<int32_t>(input.zones->size()) : kAnyZoneCount;
}

void checkDocument(const LintContext& context) {
    checkSections(context);
    checkKeys(context);
    checkTypes(context);
    checkScenes(context);
    checkBackups(context);
    checkZoneLists(context);
    checkAmbient(context);
    checkStatus(context);
    checkSettings(context);
    checkHeat(context);
    checkModelNames(context);
    checkCounts(context);
    checkPlausibility(context);
}

}  // namespace

std::string quoted(const std::string& name) {
    return common::compactJson(name, common::JsonStyle::UTF8);
}

ParsedFiles::ParsedFiles(const LintInput& input) : main(input.main) {
    checkSource(main, true, findings);
    if (input.sub) {
        sub.emplace(*input.sub);
        checkSource(*sub, false, findings);
    }
}

std::vector<Finding> lintParsed(const ParsedFiles& files, const LintInput& input) {
    FindingList findings = files.findings;
    if (!files.main.error()) {
        const SourceFile* const sub = files.sub && !input.platform.empty() ? &*files.sub : nullptr;
        const MergedConfig config(files.main, sub, input.platform, input.project);
        const ZoneTable zones = zoneTable(input, config.root().value());
        const SceneSet scenes = parseScenes(config.root(), zones, zoneCount(input));
        const Readings readings = readSections(config.root());
        checkDocument({scenes, readings, input, files.main, sub, config, zones, zoneCount(input),
                       findings});
    }
    return findings.take({files.main.name(), files.sub ? files.sub->name() : ""});
}

std::vector<Finding> lintConfig(const LintInput& input) {
    return lintParsed(ParsedFiles(input), input);
}

}  // namespace kelvo::lint
