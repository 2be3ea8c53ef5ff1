#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Commands.h"
#include "ConfigInput.h"
#include "Files.h"
#include "TextTable.h"
#include "config/ConfigMerge.h"
#include "config/ConfigNames.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/SceneSet.h"
#include "kelvoconf/lint/ZoneNames.h"
#include "thermalstatus/ThermalModelReader.h"

namespace kelvoconf {

namespace {

using kelvo::FittingModel;
using kelvo::lint::ConfigNode;
using kelvo::lint::ParsedScene;
using kelvo::lint::SceneSet;

std::string numberText(double value) {
    char text[32];
    snprintf(text, sizeof(text), "%.6g", value);
    return text;
}

std::string nameOf(const kelvo::ThermalZone& zone) {
    return zone.name.empty() ? "number " + std::to_string(zone.index) : zone.name;
}

std::string roleOf(const std::string& scene) {
    if (kelvo::lint::isAmbientScene(scene)) {
        return "ambient temperature";
    }
    if (kelvo::lint::isBackupScene(scene)) {
        return "when a zone fails";
    }
    if (scene == kelvo::scene::kDefault) {
        return "usual";
    }
    return kelvo::lint::isShellScene(scene) ? "on request" : "never";
}

std::string joined(const std::set<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

std::string sceneTable(const SceneSet& set) {
    TextTable table({"scene", "used", "models"});
    for (const ParsedScene& scene : set.scenes) {
        std::string models;
        for (const FittingModel& model : scene.set.models) {
            models += (models.empty() ? "" : ", ") + model.name;
        }
        if (scene.set.scene != kelvo::lint::kHeatSection) {
            table.add({scene.set.scene, roleOf(scene.set.scene),
                       models.empty() ? "none, not kept" : models});
        }
    }
    return "Scenes\n" + table.text("  ");
}

std::string headingOf(const FittingModel& model) {
    const std::string kind =
            model.type == kelvo::kLinearModel ? "" : ", type " + std::to_string(model.type);
    return model.name + " (" + std::to_string(model.index) + kind + ")";
}

/** The weight of a zone in a model; a zone that is listed twice has two. */
std::string weightOf(const FittingModel& model, const std::string& zone) {
    std::string text;
    for (size_t i = 0; i < model.zones.size(); ++i) {
        if (nameOf(model.zones[i]) == zone) {
            const std::string weight =
                    i < model.coefficients.size() ? numberText(model.coefficients[i]) : "0";
            text += (text.empty() ? "" : " ") + weight;
        }
    }
    return text;
}

/** A scene's models as columns, so that their weights can be compared. */
std::string modelTable(const ParsedScene& scene) {
    std::vector<std::string> headings = {"zone"};
    std::vector<std::string> zones;
    std::vector<std::string> constants = {"constant, m°C"};
    for (const FittingModel& model : scene.set.models) {
        headings.push_back(headingOf(model));
        const bool hasConstant = model.coefficients.size() > model.zones.size();
        constants.push_back(hasConstant ? numberText(model.coefficients.back()) : "");
        for (const kelvo::ThermalZone& zone : model.zones) {
            if (std::ranges::find(zones, nameOf(zone)) == zones.end()) {
                zones.push_back(nameOf(zone));
            }
        }
    }
    TextTable table(headings);
    for (const std::string& zone : zones) {
        std::vector<std::string> row = {zone};
        for (const FittingModel& model : scene.set.models) {
            row.push_back(weightOf(model, zone));
        }
        table.add(row);
    }
    table.add(constants);
    std::string text = "\nModels of " + scene.set.scene + ": weights of the zones\n";
    text += table.text("  ");
    for (const kelvo::SkippedModel& skipped : scene.skipped) {
        text += "  skipped: " + skipped.name + "\n";
    }
    return text;
}

std::string zoneTable(const SceneSet& set) {
    std::map<std::string, std::set<std::string>> users;
    for (const ParsedScene& scene : set.scenes) {
        for (const FittingModel& model : scene.set.models) {
            for (const kelvo::ThermalZone& zone : model.zones) {
                users[nameOf(zone)].insert(scene.set.scene);
            }
        }
    }
    TextTable table({"zone", "used by"});
    for (const auto& [zone, scenes] : users) {
        table.add({zone, joined(scenes)});
    }
    return "\nZones\n" + table.text("  ");
}

std::string levelTable(const ConfigNode& model) {
    std::vector<std::vector<int32_t>> lists;
    size_t levels = 0;
    const kelvo::ThermalModelReading reading = kelvo::readThermalModel(model.value());
    for (const kelvo::ThermalList* list :
         {&reading.tripTemps, &reading.tripDownTemps, &reading.statusAreas}) {
        lists.push_back(list->values);
        levels = std::max(levels, list->values.size());
    }
    TextTable table({"level", "rises at, °C", "falls below, °C", "status"});
    for (size_t level = 0; level < levels; ++level) {
        std::vector<std::string> row = {std::to_string(level)};
        for (const std::vector<int32_t>& list : lists) {
            row.push_back(level < list.size() ? std::to_string(list[level]) : "");
        }
        table.add(row);
    }
    return "\nLevels\n" + table.text("  ");
}

}  // namespace

void showCommand(const PhoneFiles& files) {
    warnOfFiles(files);
    Json::Value root = readConfig(files.main);
    const Json::Value sub = files.sub.empty() ? Json::Value() : readConfig(files.sub);
    kelvo::mergeConfig(root, sub, files.platform, files.project, nullptr);
    const ConfigNode document(root, kelvo::lint::KeyPath());
    const SceneSet set = kelvo::lint::parseScenes(document, kelvo::lint::zonesNamedIn(root),
                                                  kelvo::lint::kAnyZoneCount);
    std::string text = sceneTable(set);
    for (const ParsedScene& scene : set.scenes) {
        if (!scene.set.models.empty() || !scene.skipped.empty()) {
            text += modelTable(scene);
        }
    }
    writeOutput("-",
                text + zoneTable(set) + levelTable(document / kelvo::key::kThermalStatusModel));
}

}  // namespace kelvoconf
