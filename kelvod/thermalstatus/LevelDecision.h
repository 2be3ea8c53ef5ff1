#pragma once

#include <cstdint>
#include <optional>

#include "thermalstatus/ThermalLevels.h"

namespace kelvo {

/** Where the level stands. */
struct LevelState {
    int32_t level = -1;      // 0 to 20; -1 before the first decision
    int32_t levelTemp = -1;  // °C, cut: of the last decision that searched for a level
    int32_t status = -1;     // the status value that the level had when it was reached
};

/** One decision about the thermal level, and why; a DecisionObserver is told of each. */
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

    /** Whether a level was searched for, which may find the old one again. */
    bool searched() const { return rule == Rule::RISING || rule == Rule::FALLING; }
    bool changesLevel() const { return newLevel != oldLevel; }
    /** Where the level stands after the decision. */
    LevelState outcome() const;
};

/**
 * Decides the level at a temperature (m°C) by a model whose thresholds are for all levels. The
 * comparisons are made in single precision. Pure.
 */
LevelDecision decideLevel(const ThermalStatusModel& model, const LevelState& state, int32_t temp);

}  // namespace kelvo
