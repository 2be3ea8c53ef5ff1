#pragma once

#include <json/value.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "shelltemp/FittingModel.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo {

/** A model that did not come into its set, and why. */
struct SkippedModel {
    enum class Reason {
        NO_OBJECT,
        NO_INDEX,         // no whole number
        NO_ZONES,         // no array, or an empty one
        NO_COEFFICIENTS,  // no array, or an empty one
        UNKNOWN_ZONE,     // "thermal_zone"[element]; drops what was read before it, too
        BAD_COEFFICIENT,  // "coefficient"[element]
    };
    std::string name;
    Reason reason = Reason::NO_OBJECT;
    Json::ArrayIndex element = 0;
    std::vector<std::string> dropped = {};  // names of the models that went with it
};

/** Reads the model sets of a configuration against the zones of this phone. */
class FittingModelParser {
  public:
    /** `zoneCount` is how many zones were found; both outlive the parser. */
    FittingModelParser(const ZoneTable& table, int32_t zoneCount);

    /**
     * Reads one scene. Models that lack a member are skipped; an unknown zone also drops the models
     * read before it, which is how a configuration for another board is rejected. Every model with
     * an index enters `nameByIndex`, whether or not it ends up in the set. What is skipped is
     * appended to `skipped` when that is not null.
     */
    TempFittingModel parseScene(const std::string& name, const Json::Value& scene,
                                std::map<int32_t, std::string>& nameByIndex,
                                std::vector<SkippedModel>* skipped = nullptr) const;

  private:
    std::optional<SkippedModel> parseModel(const std::string& name, const Json::Value& model,
                                           TempFittingModel& set,
                                           std::map<int32_t, std::string>& nameByIndex) const;
    std::optional<SkippedModel> parseFittingModels(const Json::Value& model, FittingModel& fm,
                                                   TempFittingModel& set) const;
    ThermalZone resolveZone(const Json::Value& element) const;

    const ZoneTable& mTable;
    const int32_t mZoneCount;
};

}  // namespace kelvo
