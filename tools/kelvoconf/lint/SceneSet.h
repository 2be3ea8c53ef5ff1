#pragma once

#include <map>
#include <string>
#include <vector>

#include "config/ConfigNames.h"
#include "kelvoconf/lint/Rules.h"
#include "shelltemp/FittingModelParser.h"

namespace kelvo::lint {

/** A scene as the daemon parses it. */
struct ParsedScene {
    TempFittingModel set;
    std::vector<SkippedModel> skipped;
    ConfigNode node;

    ConfigNode model(const std::string& name) const { return node / key::kTempModel / name; }
};

/** The scenes of "shell_temp_fitting_model", parsed with the daemon's parser in its order. */
struct SceneSet {
    std::vector<ParsedScene> scenes;
    std::map<int32_t, std::string> nameByIndex;  // the name that each index is published under

    /** A scene with models; null when there is none of this name. */
    const ParsedScene* find(const std::string& name) const;
};

/** Of the document `root`, against the zones of a phone. */
SceneSet parseScenes(const ConfigNode& root, const ZoneTable& zones, int32_t zoneCount);

/** What the numbers of models do across models and scenes. */
void checkIndexes(const LintContext& context, const SceneSet& set);

/** Whether a scene falls back for another. */
bool isBackupScene(const std::string& name);
/** Whether a scene can come to compute the shell temperature. */
bool isShellScene(const std::string& name);
/** The index of a model that caps the others. */
inline constexpr int32_t kReferenceIndex = -1;
/** The part beside the scenes that holds the heat components' tables. */
inline constexpr const char* kHeatSection = key::kHeatDetection;

}  // namespace kelvo::lint
