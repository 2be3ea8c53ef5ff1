#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/DecisionObserver.h"
#include "shelltemp/FittingEvaluation.h"
#include "shelltemp/FittingLimits.h"
#include "shelltemp/FittingModel.h"
#include "shelltemp/FittingPass.h"

namespace kelvo {

/**
 * Notes the figures of a fitting pass for the decision observer; without one every call returns at
 * once. Belongs to the fitting thread.
 */
class PassRecord {
  public:
    /** A new pass with the models of `scene`. */
    void begin(const std::string& scene);
    /** Ends the evaluation: this zone of the model cannot be read. */
    void fail(const FittingModel& model, const ThermalZone& zone);
    /** Where the terms of the next evaluation go; null when nobody observes. */
    LinearTerms* terms();
    /** `value` (m°C) is what the terms came to. */
    void evaluate(const FittingModel& model, const std::vector<int32_t>& temps, int32_t value);
    /** The latest evaluation's value (m°C) after the correction of the inner area. */
    void correct(int32_t value);

    /** The outputs (m°C) as fitted; what follows is about them. */
    void beginOutputs(const FittingTemps& temps);
    void cap(int32_t index, int32_t value);
    void limit(int32_t index, int32_t previous, int32_t seconds, const LimitedValue& result);
    /** The tenth of a degree is a new one; `written`: its line went to the node. */
    void change(int32_t index, bool written);
    /** Tells the observer. Called without a lock. */
    void end();

  private:
    OutputDecision& output(int32_t index);

    std::optional<FittingPass> mPass;
    LinearTerms mTerms;
};

}  // namespace kelvo
