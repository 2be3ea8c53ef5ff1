#pragma once

#include <cstdint>
#include <optional>

// Why each value is what it is, for a DecisionObserver.

namespace kelvo {

/** One decision about the thermal level. */
struct LevelDecision {
    enum class Rule {
        IN_BAND,    // below the next rising threshold and above the level's own falling one
        AT_TOP,     // the top level, at or above its falling threshold
        AT_BOTTOM,  // level 0, at or below its falling threshold
        RISING,     // not cooler than at the last decision: the rising thresholds
        FALLING,    // cooler: the falling thresholds
    };
    struct Threshold {
        bool rising = false;  // of the rising list, else of the falling one
        int32_t level = 0;
        int32_t celsius = 0;
    };

    int32_t temp = 0;           // m°C
    float celsius = 0;          // what was compared
    int32_t lastLevelTemp = 0;  // °C, of the last decision that was not kept
    Rule rule = Rule::IN_BAND;
    std::optional<Threshold> below;  // the threshold that the temperature has reached or passed
    std::optional<Threshold> above;  // the one that it has not
    int32_t oldLevel = 0;
    int32_t newLevel = 0;
    int32_t oldStatus = 0;
    int32_t newStatus = 0;
};

}  // namespace kelvo
