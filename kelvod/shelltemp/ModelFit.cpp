#include "shelltemp/ModelFit.h"

#include "base/Log.h"

namespace kelvo {

ModelFit fitModel(const FittingModel& model, const std::string& scene, CheckedZones& zones,
                  LinearTerms* terms) {
    ModelFit fit;
    fit.temps.reserve(model.zones.size());
    for (const ThermalZone& zone : model.zones) {
        int32_t temp = 0;
        if (zones.getCycleTemp(zone, temp) != 0) {
            fit.failedZone = &zone;
            return fit;
        }
        fit.temps.push_back(temp);
    }
    if (fit.temps.empty()) {
        KLOGI("can't get any tz temp from tzs{name(%s), sz(%u), scene(%s)}", model.name.c_str(),
              static_cast<unsigned>(model.zones.size()), scene.c_str());
    }
    if (model.type != kLinearModel) {
        KLOGE("fitting model (%d) has not supported!", static_cast<int32_t>(model.type));
        return fit;
    }
    fit.value = evaluateLinearModel(fit.temps, model.coefficients, terms);
    return fit;
}

}  // namespace kelvo
