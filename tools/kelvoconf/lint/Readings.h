#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ambient/AmbientParams.h"
#include "core/BigDataConfig.h"
#include "kelvoconf/lint/ConfigNode.h"
#include "thermalstatus/BroadcastConfig.h"
#include "thermalstatus/ThermalModelReader.h"

namespace kelvo::lint {

/** What the daemon's own readers make of the sections of a document. */
struct Readings {
    BigDataConfig bigData;
    BroadcastConfig broadcast;
    ThermalModelReading status;
    std::map<std::string, AmbientFitting> ambient;  // by scene

    /** Whether the reader of a value refuses its type; none when it is not for these to judge. */
    std::optional<bool> refusesType(const std::vector<std::string>& path) const;
};

/** Reads the sections of the document `root`. */
Readings readSections(const ConfigNode& root);

}  // namespace kelvo::lint
