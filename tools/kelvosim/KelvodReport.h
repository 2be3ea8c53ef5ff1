#pragma once

#include <json/value.h>

#include <cstdint>
#include <optional>
#include <string>

/** What the daemon tells of itself through binder at one moment; what it does not know is none. */
struct KelvodReport {
    std::optional<double> shell;  // °C
    std::optional<int32_t> level;
    std::optional<int32_t> status;
    std::optional<int32_t> ambient;         // °C
    std::optional<std::string> heatSource;  // the component that heats most
};

/** The component with the highest "avgHeat" of a heat report; none when no heat is above 0. */
std::optional<std::string> mainHeatSource(const Json::Value& report);
