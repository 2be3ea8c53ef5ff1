#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "shelltemp/ThermalZone.h"

namespace kelvo {

/** Evaluation kind of a model; the only one there is. */
inline constexpr uint32_t kLinearModel = 1;

/** One linear model of a temperature (m°C) over zone temperatures (m°C). */
struct FittingModel {
    // Chosen by the configuration; -1 is a reference for the others, and no negative index is
    // limited or written.
    int32_t index = 0;
    std::string name;
    std::vector<ThermalZone> zones;  // in the order of the configuration
    uint32_t type = kLinearModel;
    std::vector<double> coefficients;  // a weight a zone, then optionally a constant (m°C)
};

/** The models of one scene. */
struct TempFittingModel {
    std::string scene;
    std::vector<FittingModel> models;  // in the order of their names
};

/** What a set stands on, judged by its first model that has zones and no negative index. */
enum class FittingModelKind : int32_t {
    NONE = -1,  // it has no such model
    SEVERAL_ZONES = 1,
    BATTERY_ZONE = 2,  // a single zone whose type speaks of the battery
    OTHER_ZONE = 3,    // any other single zone
};

/** Model index → fitted temperature (m°C) of one cycle. */
using FittingTemps = std::map<int32_t, int32_t>;

/** Model index → name, of all scenes together. */
using ModelNames = std::map<int32_t, std::string>;

/** The name that belongs to an index, empty when no model has it. */
inline std::string nameOf(const ModelNames& names, int32_t index) {
    const auto found = names.find(index);
    return found == names.end() ? "" : found->second;
}

}  // namespace kelvo
