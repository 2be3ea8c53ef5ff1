#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "shelltemp/CheckedZones.h"
#include "shelltemp/FittingModel.h"
#include "shelltemp/FittingOutputs.h"
#include "shelltemp/PassRecord.h"

namespace kelvo {

/** Fits the models of a set, cycle after cycle. Not thread-safe; the caller serialises. */
class FittingCycle {
  public:
    /** Model name → temperatures (m°C) of its zones, in their order. */
    using ZoneTempsByModel = std::map<std::string, std::vector<int32_t>>;

    /** Whether the inner area runs cooler on this phone than its model says. */
    void setInnerSpecialHandling(bool on) { mInnerSpecialHandling = on; }
    /**
     * Reads the zones of `set` and sets the outputs of its models. 0, or -1 at the first zone that
     * cannot be read: the outputs then are those of the models before.
     */
    int fit(const TempFittingModel& set, ZoneTempsByModel& zoneTemps, PassRecord& record);

    CheckedZones& zones() { return mZones; }
    FittingOutputs& outputs() { return mOutputs; }
    const FittingOutputs& outputs() const { return mOutputs; }

  private:
    int fitOutput(const FittingModel& model, const std::string& scene, ZoneTempsByModel& zoneTemps,
                  PassRecord& record);

    CheckedZones mZones;
    FittingOutputs mOutputs;
    bool mInnerSpecialHandling = false;
};

}  // namespace kelvo
