#include "kelvoconf/lint/Readings.h"

#include <algorithm>

#include "config/ConfigNames.h"
#include "kelvoconf/lint/KeyCatalogue.h"

namespace kelvo::lint {

namespace {

/** Faults of a section of the top level; null when another reads it. */
const ConfigFaults* faultsOf(const Readings& readings, const std::string& section) {
    if (section == key::kBigData) {
        return &readings.bigData.faults;
    }
    if (section == key::kShellTempBroadcast) {
        return &readings.broadcast.faults;
    }
    return section == key::kThermalStatusModel ? &readings.status.faults : nullptr;
}

}  // namespace

std::optional<bool> Readings::refusesType(const std::vector<std::string>& path) const {
    constexpr size_t kAmbientDepth = 4;  // models, scene, section, member
    if (path.size() <= 2) {
        const ConfigFaults* const faults = faultsOf(*this, path.front());
        const std::string name = path.size() == 2 ? path.back() : "";
        return faults != nullptr
                       ? std::optional(hasFault(*faults, ConfigFault::Kind::WRONG_TYPE, name))
                       : std::nullopt;
    }
    if (path.size() != kAmbientDepth || path[2] != key::kAmbientFitting) {
        return std::nullopt;
    }
    const auto scene = ambient.find(path[1]);
    if (scene == ambient.end()) {
        return std::nullopt;
    }
    return std::ranges::any_of(scene->second.faults, [&path](const AmbientFault& fault) {
        return fault.kind == AmbientFault::Kind::WRONG_TYPE && fault.name == path.back();
    });
}

Readings readSections(const ConfigNode& root) {
    Readings readings;
    readings.bigData = readBigDataConfig((root / key::kBigData).value());
    readings.broadcast = readBroadcastConfig((root / key::kShellTempBroadcast).value());
    readings.status = readThermalModel((root / key::kThermalStatusModel).value());
    for (const auto& [name, node] : (root / key::kFittingModels).members()) {
        if (isAmbientScene(name)) {
            readings.ambient[name] = readAmbientFitting((node / key::kAmbientFitting).value());
        }
    }
    return readings;
}

}  // namespace kelvo::lint
