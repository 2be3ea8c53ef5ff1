// What the numbers of models do across models and scenes.

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "config/ConfigNames.h"
#include "kelvoconf/lint/SceneSet.h"

namespace kelvo::lint {

namespace {

std::string number(int32_t index) {
    return std::to_string(index);
}

void checkRepeated(const LintContext& context, const ParsedScene& scene) {
    std::map<int32_t, std::string> names;
    for (const FittingModel& model : scene.set.models) {
        const auto [first, isNew] = names.emplace(model.index, model.name);
        if (!isNew) {
            context.error("duplicate-index", scene.model(model.name) / key::kIndex,
                          {"the model " + quoted(first->second) + " of this scene has index " +
                                   number(model.index) + ", too",
                           "keeps the value of the model that sorts last; the other is lost",
                           "give each model of a scene an index of its own"});
        }
    }
}

void checkNegative(const LintContext& context, const ParsedScene& scene) {
    for (const FittingModel& model : scene.set.models) {
        const ConfigNode index = scene.model(model.name) / key::kIndex;
        if (model.index == kReferenceIndex) {
            context.warning("reference-index", index,
                            {"index -1 is the reference of the others",
                             "caps each other value to this one when it is more than 20 °C above; "
                             "this value is not smoothed and not written to /proc/shell-temp",
                             "give another index unless the cap is meant"});
        } else if (model.index < 0) {
            context.warning("negative-index", index,
                            {"a negative index",
                             "computes the value, but neither smooths it nor writes it to "
                             "/proc/shell-temp",
                             "count from 0"});
        }
    }
}

/** A name of an index is one for all scenes: the last that was read. */
void checkPublished(const LintContext& context, const SceneSet& set, const ParsedScene& scene) {
    for (const FittingModel& model : scene.set.models) {
        const auto published = set.nameByIndex.find(model.index);
        const bool clashesInScene =
                std::ranges::count(scene.set.models, model.index, &FittingModel::index) > 1;
        if (published != set.nameByIndex.end() && published->second != model.name &&
            !clashesInScene) {
            context.warning(
                    "index-of-another-name", scene.model(model.name) / key::kIndex,
                    {"a scene that is read later calls index " + number(model.index) + " " +
                             quoted(published->second),
                     "publishes this value under that name, in this scene as well",
                     "keep one name for one index in all scenes, the ambient ones included"});
        }
    }
}

/**
 * The value before a switch is 0 for an index that the scene before lacks, and a rise is limited:
 * at no history to 0.125 °C a second.
 */
void checkCreeping(const LintContext& context, const std::vector<const ParsedScene*>& scenes) {
    std::map<int32_t, std::vector<std::string>> lacking;
    std::map<int32_t, ConfigNode> places;
    for (const ParsedScene* scene : scenes) {
        for (const FittingModel& model : scene->set.models) {
            places.emplace(model.index, scene->model(model.name) / key::kIndex);
        }
    }
    for (const auto& [index, place] : places) {
        std::string without;
        for (const ParsedScene* scene : scenes) {
            if (std::ranges::count(scene->set.models, index, &FittingModel::index) == 0) {
                without += (without.empty() ? "" : ", ") + scene->set.scene;
            }
        }
        if (index >= 0 && !without.empty()) {
            context.warning("creeping-index", place,
                            {"index " + number(index) + " is missing in: " + without,
                             "after a switch from such a scene lets the value creep up from 0 °C, "
                             "for minutes; in it, the node keeps the last value",
                             "give all scenes that the phone switches between the same indexes"});
        }
    }
}

}  // namespace

void checkIndexes(const LintContext& context, const SceneSet& set) {
    std::vector<const ParsedScene*> shellScenes;
    for (const ParsedScene& scene : set.scenes) {
        checkRepeated(context, scene);
        if (isShellScene(scene.set.scene) && !scene.set.models.empty()) {
            shellScenes.push_back(&scene);
            checkNegative(context, scene);
            checkPublished(context, set, scene);
        }
    }
    checkCreeping(context, shellScenes);
}

}  // namespace kelvo::lint
