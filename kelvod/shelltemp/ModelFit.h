#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "shelltemp/CheckedZones.h"
#include "shelltemp/FittingEvaluation.h"
#include "shelltemp/FittingModel.h"

namespace kelvo {

/** What came of one model in a cycle. */
struct ModelFit {
    std::vector<int32_t> temps;               // m°C, of its zones in order
    std::optional<int32_t> value;             // m°C; none when the type is not supported
    const ThermalZone* failedZone = nullptr;  // of the model; could not be read, no value then
};

/** Fits a model of `scene` to the zones of this cycle; `terms` as in evaluateLinearModel(). */
ModelFit fitModel(const FittingModel& model, const std::string& scene, CheckedZones& zones,
                  LinearTerms* terms = nullptr);

}  // namespace kelvo
