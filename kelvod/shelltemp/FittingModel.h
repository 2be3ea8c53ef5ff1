#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shelltemp/ThermalZone.h"

namespace kelvo {

/** Evaluation kind of a model; the only one there is. */
inline constexpr uint32_t kLinearModel = 1;

/** One linear model of a temperature (m°C) over zone temperatures (m°C). */
struct FittingModel {
    int32_t index = 0;  // chosen by the configuration; -1 is a reference for the others
    std::string name;
    std::vector<ThermalZone> zones;  // in the order of the configuration
    uint32_t type = kLinearModel;
    std::vector<double> coefficients;  // a weight a zone, then optionally a constant (m°C)
};

/** The models of one scene. */
struct TempFittingModel {
    int32_t enabled = 1;  // 0 once a backup set is given up for a failed zone
    std::string scene;
    std::vector<FittingModel> models;  // in the order of their names
};

}  // namespace kelvo
