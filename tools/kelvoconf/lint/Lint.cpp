#include "kelvoconf/lint/Lint.h"

#include "common/JsonText.h"
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

std::vector<Finding> lintConfig(const LintInput& input) {
    FindingList findings;
    const SourceFile main(input.main);
    checkSource(main, true, findings);
    std::optional<SourceFile> sub;
    if (input.sub) {
        sub.emplace(*input.sub);
        checkSource(*sub, false, findings);
    }
    if (!main.error()) {
        const SourceFile* const readSub = sub && !input.platform.empty() ? &*sub : nullptr;
        const MergedConfig config(main, readSub, input.platform, input.project);
        const ZoneTable zones = zoneTable(input, config.root().value());
        const SceneSet scenes = parseScenes(config.root(), zones, zoneCount(input));
        const Readings readings = readSections(config.root());
        checkDocument({scenes, readings, input, main, readSub, config, zones, zoneCount(input),
                       findings});
    }
    return findings.take({input.main.name, input.sub ? input.sub->name : ""});
}

}  // namespace kelvo::lint
