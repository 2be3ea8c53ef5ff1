// Scenes and models that do not come to be.

#include <algorithm>
#include <string>

#include "common/NearestName.h"
#include "config/ConfigNames.h"
#include "core/Scene.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/SceneSet.h"
#include "kelvoconf/lint/ZoneNames.h"

namespace kelvo::lint {

namespace {

using Reason = SkippedModel::Reason;

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

std::string namesOf(const std::vector<FittingModel>& models) {
    std::vector<std::string> names(models.size());
    std::ranges::transform(models, names.begin(), &FittingModel::name);
    return listed(names);
}

/** What an unknown zone leaves of its scene: all that sorts before it is lost. */
std::string lossOf(const ParsedScene& scene, const SkippedModel& skipped) {
    const std::string dropped =
            skipped.dropped.empty() ? ""
                                    : " and drops the models before it: " + listed(skipped.dropped);
    const std::string rest = namesOf(scene.set.models);
    return "skips the model" + dropped + "; " +
           (rest.empty() ? "nothing is left of the scene" : "of the scene is left: " + rest);
}

void unknownZone(const LintContext& context, const ParsedScene& scene,
                 const SkippedModel& skipped) {
    const ConfigNode zone = (scene.model(skipped.name) / key::kThermalZone)[skipped.element];
    const ZoneAdvice advice = adviseOnZone(context, zone.value());
    context.error("unknown-zone", zone, {advice.what, lossOf(scene, skipped), advice.mend});
}

void skippedModel(const LintContext& context, const ParsedScene& scene,
                  const SkippedModel& skipped) {
    const ConfigNode model = scene.model(skipped.name);
    const auto report = [&context](const ConfigNode& node, const char* what, const char* mend) {
        context.error("model-skipped", node, {what, "skips the model without a word", mend});
    };
    switch (skipped.reason) {
        case Reason::NO_OBJECT:
            break;  // said with the types
        case Reason::NO_INDEX:
            report(model / key::kIndex, "a model needs a whole number as its index",
                   "give the model an index that no other model of the scene has");
            break;
        case Reason::NO_ZONES:
            report(model / key::kThermalZone, "a model needs an array of zones with one at least",
                   "list the zones that the model is computed from");
            break;
        case Reason::NO_COEFFICIENTS:
            report(model / key::kCoefficient,
                   "a model needs an array of coefficients with one at least",
                   "give each zone a coefficient");
            break;
        case Reason::BAD_COEFFICIENT:
            report((model / key::kCoefficient)[skipped.element], "this coefficient is no number",
                   "write a number");
            break;
        case Reason::UNKNOWN_ZONE:
            unknownZone(context, scene, skipped);
            break;
    }
}

void checkCoefficients(const LintContext& context, const ConfigNode& node,
                       const FittingModel& model) {
    const size_t zones = model.zones.size();
    const size_t coefficients = model.coefficients.size();
    const std::string count =
            std::to_string(coefficients) + " coefficients for " + std::to_string(zones) + " zones";
    if (coefficients > zones + 1) {
        context.warning("ignored-coefficients",
                        (node / key::kCoefficient)[static_cast<Json::ArrayIndex>(zones)],
                        {count + " and one constant",
                         "adds the last one as the constant, and ignores the " +
                                 std::to_string(coefficients - zones - 1) + " from here before it",
                         "list the missing zones, or drop these coefficients"});
    } else if (coefficients < zones) {
        context.warning(
                "unweighted-zones",
                (node / key::kThermalZone)[static_cast<Json::ArrayIndex>(coefficients)],
                {count,
                 "reads the zones from here on, fails when they fail, and does not count them",
                 "give each zone a coefficient, or drop the zones"});
    }
}

void checkZoneNumbers(const LintContext& context, const ConfigNode& node,
                      const FittingModel& model) {
    for (size_t i = 0; i < model.zones.size(); ++i) {
        const ConfigNode zone = (node / key::kThermalZone)[static_cast<Json::ArrayIndex>(i)];
        if (context.knowsZones() && model.zones[i].index == context.zoneCount) {
            context.error("zone-not-there", zone,
                          {"the last zone is number " + std::to_string(context.zoneCount - 1),
                           "takes the number all the same; reading it fails in every cycle, and "
                           "nothing is written while this scene is used",
                           "write the type of the zone that is meant"});
        }
        checkShared(context, zone);
    }
}

void checkModel(const LintContext& context, const ConfigNode& node, const FittingModel& model) {
    const ConfigNode type = node / key::kType;
    if (model.type != kLinearModel) {
        context.error("unsupported-type", type,
                      {"there is no kind of model " + shown(type.value()),
                       "computes no value, and says so in the log in every cycle",
                       "write 1, or drop the key"});
    }
    checkCoefficients(context, node, model);
    checkZoneNumbers(context, node, model);
}

void checkScene(const LintContext& context, const ParsedScene& scene) {
    for (const SkippedModel& skipped : scene.skipped) {
        skippedModel(context, scene, skipped);
    }
    for (const FittingModel& model : scene.set.models) {
        checkModel(context, scene.model(model.name), model);
    }
    const bool isScene = scene.set.scene != kHeatSection && scene.node.value().isObject();
    if (scene.set.models.empty() && isScene && scene.set.scene != scene::kDefault) {
        context.error("scene-discarded", scene.node,
                      {"no usable model in the scene",
                       "does not keep the scene: a switch to it leaves the models as they are",
                       "mend its models, or drop the scene"});
    }
}

/** Scenes by other names are kept, but nothing ever asks for them. */
void checkName(const LintContext& context, const ParsedScene& scene) {
    const std::string& name = scene.set.scene;
    if (isShellScene(name) || isAmbientScene(name) || name == kHeatSection) {
        return;
    }
    std::vector<std::string> known(scene::kAmbientScenes.begin(), scene::kAmbientScenes.end());
    known.emplace_back(kHeatSection);
    for (const auto& [code, sceneName] : kSceneNames) {
        known.push_back(sceneName);
    }
    const auto nearest = common::nearestName(name, known);
    context.warning(
            "unused-scene", scene.node,
            {"nothing switches to a scene of this name",
             nearest ? "never uses it; the daemon knows " + quoted(*nearest) + ", spelled so"
                     : "never uses it",
             nearest ? "write " + quoted(*nearest)
                     : "begin the name with \"backup_\" when it is to step in for a failing "
                       "zone, or drop the scene"});
}

void checkDefault(const LintContext& context, const SceneSet& set) {
    if (set.find(scene::kDefault) != nullptr) {
        return;
    }
    const auto backup = std::ranges::find_if(set.scenes, [](const ParsedScene& scene) {
        return isBackupScene(scene.set.scene) && !scene.set.models.empty();
    });
    context.error("no-default", context.root() / key::kFittingModels / scene::kDefault,
                  {"there is no usable scene \"default\"",
                   backup != set.scenes.end()
                           ? "starts with " + quoted(backup->set.scene)
                           : "computes and writes no shell temperature until a scene is asked for",
                   "write the scene that holds while nothing special happens"});
}

}  // namespace

void checkScenes(const LintContext& context) {
    const ConfigNode models = context.root() / key::kFittingModels;
    if (!models) {
        context.error("no-models", models,
                      {"there are no models", "computes and writes no shell temperature",
                       "write scenes with models; \"kelvoconf draft\" makes a beginning"});
    }
    if (!models.value().isObject()) {
        return;
    }
    const SceneSet& set = context.scenes;
    checkDefault(context, set);
    for (const ParsedScene& scene : set.scenes) {
        checkScene(context, scene);
        checkName(context, scene);
    }
    checkIndexes(context, set);
}

}  // namespace kelvo::lint
