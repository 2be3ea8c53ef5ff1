// Backup scenes that cannot step in.

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "config/ConfigNames.h"
#include "kelvoconf/lint/SceneSet.h"

namespace kelvo::lint {

namespace {

bool uses(const TempFittingModel& set, int32_t index) {
    return std::ranges::any_of(set.models, [index](const FittingModel& model) {
        return std::ranges::count(model.zones, index, &ThermalZone::index) > 0;
    });
}

ConfigNode zoneOf(const ParsedScene& scene, const FittingModel& model, size_t element) {
    return (scene.model(model.name) / key::kThermalZone)[static_cast<Json::ArrayIndex>(element)];
}

/** When a zone fails, a set is given up for its first model only. */
void checkHidden(const LintContext& context, const ParsedScene& backup) {
    const FittingModel& first = backup.set.models.front();
    for (const FittingModel& model : backup.set.models) {
        for (size_t i = 0; i < model.zones.size(); ++i) {
            if (std::ranges::count(first.zones, model.zones[i].index, &ThermalZone::index) > 0) {
                continue;
            }
            const ConfigNode zone = zoneOf(backup, model, i);
            const std::string zoneName = shown(zone.value());
            context.warning(
                    "backup-hides-zone", zone,
                    {"the first model of this backup scene, " + quoted(first.name) +
                             ", does not use the zone " + zoneName,
                     "looks at the first model only: when the zone fails it may choose this scene, "
                     "whose cycles then fail, and nothing is written",
                     "use the zone in " + quoted(first.name) + " too, or nowhere in the scene"});
        }
    }
}

/** A zone of the starting scene without which no backup scene works either. */
void checkCovered(const LintContext& context, const ParsedScene& start,
                  const std::vector<const ParsedScene*>& backups) {
    std::set<int32_t> seen;
    for (const FittingModel& model : start.set.models) {
        for (size_t i = 0; i < model.zones.size(); ++i) {
            const int32_t zone = model.zones[i].index;
            const bool isCovered = std::ranges::any_of(
                    backups, [zone](const auto* backup) { return !uses(backup->set, zone); });
            if (isCovered || !seen.insert(zone).second) {
                continue;
            }
            const ConfigNode node = zoneOf(start, model, i);
            context.warning("backups-share-zone", node,
                            {"every backup scene uses the zone " + shown(node.value()) + ", too",
                             "finds no scene that works when the zone fails: nothing is written",
                             "write a backup scene without it"});
        }
    }
}

}  // namespace

void checkBackups(const LintContext& context) {
    const SceneSet& set = context.scenes;
    std::vector<const ParsedScene*> backups;
    for (const ParsedScene& scene : set.scenes) {
        if (isBackupScene(scene.set.scene) && !scene.set.models.empty()) {
            backups.push_back(&scene);
            checkHidden(context, scene);
        }
    }
    const ParsedScene* const start = set.find(scene::kDefault);
    if (start != nullptr && !backups.empty()) {
        checkCovered(context, *start, backups);
    }
}

}  // namespace kelvo::lint
