#include "shelltemp/AmbientModels.h"

#include <algorithm>

#include "base/Log.h"
#include "config/ConfigNames.h"
#include "shelltemp/ModelFit.h"

namespace kelvo {

namespace {

/** Models of the shell; their temperature is preferred to that of any other model. */
bool isShellModel(const FittingModel& model) {
    return model.name == model::kFront || model.name == model::kFrame || model.name == model::kBack;
}

int32_t ambientShellTemp(const FittingModel& model, int32_t own, const TempFittingModel& shell,
                         const FittingTemps& fitted) {
    const auto named =
            std::find_if(shell.models.begin(), shell.models.end(),
                         [&](const FittingModel& other) { return other.name == model.name; });
    if (named != shell.models.end()) {
        const auto value = fitted.find(named->index);
        if (value != fitted.end()) {
            KLOGD("fittingAmbientTemp temp is configure of shell.");
            return value->second;
        }
    }
    KLOGD("fittingAmbientTemp tempOfConf %d", own);
    return own;
}

}  // namespace

std::optional<AmbientValues> fitAmbientModels(const TempFittingModel& ambient,
                                              const TempFittingModel& shell,
                                              const FittingTemps& fitted, CheckedZones& zones) {
    const bool hasShellModel =
            std::any_of(ambient.models.begin(), ambient.models.end(), isShellModel);
    std::optional<int32_t> temp;
    std::optional<int32_t> power;
    for (const FittingModel& model : ambient.models) {
        const ModelFit fit = fitModel(model, ambient.scene, zones);
        if (fit.failedZone != nullptr) {
            KLOGE("Get temp(tz:%d) failed in fittingAmbientTemp!", fit.failedZone->index);
            return std::nullopt;
        }
        if (!fit.value) {
            continue;
        }
        if (model.name == model::kPower) {
            power = fit.value;
        } else if (!temp && isShellModel(model)) {
            temp = ambientShellTemp(model, *fit.value, shell, fitted);
        } else if (!temp && !hasShellModel) {
            temp = fit.value;
        }
    }
    return temp && power ? std::optional(AmbientValues{*temp, *power}) : std::nullopt;
}

}  // namespace kelvo
