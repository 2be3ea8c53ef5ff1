#include "kelvoconf/lint/SceneSet.h"

#include <algorithm>
#include <utility>

#include "config/ConfigNames.h"
#include "core/Scene.h"

namespace kelvo::lint {

SceneSet parseScenes(const ConfigNode& root, const ZoneTable& zones, int32_t zoneCount) {
    SceneSet set;
    const FittingModelParser parser(zones, zoneCount);
    for (const auto& [name, node] : (root / key::kFittingModels).members()) {
        ParsedScene scene{{}, {}, node};
        scene.set = parser.parseScene(name, node.value(), set.nameByIndex, &scene.skipped);
        set.scenes.push_back(std::move(scene));
    }
    return set;
}

const ParsedScene* SceneSet::find(const std::string& name) const {
    const auto found = std::ranges::find(scenes, name,
                                         [](const ParsedScene& scene) { return scene.set.scene; });
    return found != scenes.end() && !found->set.models.empty() ? &*found : nullptr;
}

bool isBackupScene(const std::string& name) {
    return name.starts_with(scene::kBackupPrefix);
}

bool isShellScene(const std::string& name) {
    return isBackupScene(name) || std::ranges::any_of(kSceneNames, [&name](const auto& scene) {
               return scene.second == name;
           });
}

}  // namespace kelvo::lint
