#include "shelltemp/FittingCycle.h"

#include <utility>

#include "base/Log.h"
#include "base/Time.h"
#include "config/ConfigNames.h"
#include "shelltemp/ModelFit.h"

namespace kelvo {

int FittingCycle::fit(const TempFittingModel& set, ZoneTempsByModel& zoneTemps,
                      PassRecord& record) {
    mOutputs.beginCycle();
    mZones.beginCycle();
    record.begin(set.scene);
    for (const FittingModel& model : set.models) {
        if (fitOutput(model, set.scene, zoneTemps, record) != 0) {
            return -1;
        }
    }
    mOutputs.endCycle();
    return 0;
}

int FittingCycle::fitOutput(const FittingModel& model, const std::string& scene,
                            ZoneTempsByModel& zoneTemps, PassRecord& record) {
    ModelFit fit = fitModel(model, scene, mZones, record.terms());
    if (fit.failedZone != nullptr) {
        KLOGE("Get temp(tz:%d) failed!", fit.failedZone->index);
        record.fail(model, *fit.failedZone);
        return -1;
    }
    if (!fit.value) {
        return 0;
    }
    mOutputs.set(model.index, *fit.value, monotonicSeconds());
    record.evaluate(model, fit.temps, *fit.value);
    zoneTemps[model.name] = std::move(fit.temps);
    if (mInnerSpecialHandling && model.name == model::kInner) {
        mOutputs.specialHandlingInnerTemp(model.index, record);
    }
    return 0;
}

}  // namespace kelvo
