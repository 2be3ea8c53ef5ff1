#pragma once

#include <json/value.h>

#include <cstdint>
#include <map>
#include <string>

#include "shelltemp/FittingModel.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo {

/** Reads the model sets of a configuration against the zones of this phone. */
class FittingModelParser {
  public:
    /** `zoneCount` is how many zones were found; both outlive the parser. */
    FittingModelParser(const ZoneTable& table, int32_t zoneCount);

    /**
     * Reads one scene. Models that lack a member are skipped; an unknown zone also drops the models
     * read before it, which is how a configuration for another board is rejected. Every model with
     * an index enters `nameByIndex`, whether or not it ends up in the set.
     */
    TempFittingModel parseScene(const std::string& name, const Json::Value& scene,
                                std::map<int32_t, std::string>& nameByIndex) const;

  private:
    void parseModel(const std::string& name, const Json::Value& model, TempFittingModel& set,
                    std::map<int32_t, std::string>& nameByIndex) const;
    void parseFittingModels(const Json::Value& model, FittingModel& fm,
                            TempFittingModel& set) const;
    ThermalZone resolveZone(const Json::Value& element) const;

    const ZoneTable& mTable;
    const int32_t mZoneCount;
};

}  // namespace kelvo
