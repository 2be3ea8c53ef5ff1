#pragma once

#include <json/value.h>

#include <cstdint>

#include "config/ConfigFault.h"

namespace kelvo {

/** Which shell temperatures are broadcast. */
struct BroadcastBand {
    int32_t low = 30;   // °C, the lowest that is
    int32_t high = 55;  // °C, the highest that is

    /** Whether a change between two temperatures (whole °C) stays below or above the band. */
    bool isOutside(int32_t before, int32_t now) const {
        return (before < low && now < low) || (before > high && now > high);
    }
};

/** The object form of "shell_temp_broadcast"; as an array it holds the throttling thresholds. */
struct BroadcastConfig {
    bool enabled = true;
    BroadcastBand band;    // whether or not it is enabled
    bool hasBand = false;  // the section has one with two ends, whatever they are
    ConfigFaults faults;
};

/** Reads the section; an end of the band that is none keeps its default. Pure. */
BroadcastConfig readBroadcastConfig(const Json::Value& section);

}  // namespace kelvo
