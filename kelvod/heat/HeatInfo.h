#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

/** What a component says of its own heat. */
struct HeatInfo {
    HeatInfo() = default;
    HeatInfo(int avgHeat, const std::map<std::string, int>& factors)
          : heat(avgHeat), keyFactor(factors) {}

    /** A report of the heat alone. */
    static std::shared_ptr<HeatInfo> withoutKeyFactors(int avgHeat) {
        auto info = std::make_shared<HeatInfo>();
        info->heat = avgHeat;
        info->keyFactorState = -1;
        return info;
    }

    int32_t heat = 0;                      // m°C of the shell temperature
    int32_t keyFactorState = 0;            // -1: there are no key factors
    std::map<std::string, int> keyFactor;  // figures that explain the heat
};
