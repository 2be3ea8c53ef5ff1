#pragma once

#include <cstdint>
#include <optional>

#include "shelltemp/CheckedZones.h"
#include "shelltemp/FittingModel.h"

namespace kelvo {

/** What the ambient models say of the device in one cycle, in the units that they scale to. */
struct AmbientValues {
    int32_t temp = 0;
    int32_t power = 0;
};

/**
 * Fits the ambient models. The temperature is that of the first model of the shell ("front",
 * "frame", "back") or, without such a model, of the first other one; where `shell` has a model of
 * the same name its value in `fitted` counts. None when a zone fails or one of the two is missing.
 */
std::optional<AmbientValues> fitAmbientModels(const TempFittingModel& ambient,
                                              const TempFittingModel& shell,
                                              const FittingTemps& fitted, CheckedZones& zones);

}  // namespace kelvo
