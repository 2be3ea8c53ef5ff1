#include "thermalstatus/LevelDecision.h"

#include "base/Numeric.h"

namespace kelvo {

namespace {

using Rule = LevelDecision::Rule;

constexpr int32_t kTopLevel = static_cast<int32_t>(kThermalLevels) - 1;

/** A threshold beside a temperature. */
class Comparison {
  public:
    Comparison(const ThermalStatusModel& model, float celsius) : mModel(model), mCelsius(celsius) {}

    LevelDecision::Threshold threshold(bool rising, int32_t level) const {
        const auto& list = rising ? mModel.tripTemps : mModel.tripDownTemps;
        return {rising, level, list[static_cast<size_t>(level)]};
    }
    bool isBelow(bool rising, int32_t level) const { return mCelsius < degrees(rising, level); }
    bool isAbove(bool rising, int32_t level) const { return mCelsius > degrees(rising, level); }

    /** The highest level above 0 whose threshold is reached, else 0: entry 0 never counts. */
    int32_t search(bool rising) const {
        int32_t level = kTopLevel;
        while (level > 0 && isBelow(rising, level)) {
            --level;
        }
        return level;
    }

  private:
    float degrees(bool rising, int32_t level) const {
        return static_cast<float>(threshold(rising, level).celsius);
    }

    const ThermalStatusModel& mModel;
    const float mCelsius;
};

/** Whether the level stays without a search. */
bool keepsLevel(const Comparison& compared, LevelDecision& decision) {
    const int32_t level = decision.oldLevel;
    if (level >= 0 && level < kTopLevel && compared.isBelow(true, level + 1) &&
        compared.isAbove(false, level)) {
        decision.rule = Rule::IN_BAND;
        decision.below = compared.threshold(false, level);
        decision.above = compared.threshold(true, level + 1);
        return true;
    }
    if (level == kTopLevel && !compared.isBelow(false, level)) {
        decision.rule = Rule::AT_TOP;
        decision.below = compared.threshold(false, level);
        return true;
    }
    if (level == 0 && !compared.isAbove(false, level)) {
        decision.rule = Rule::AT_BOTTOM;
        decision.above = compared.threshold(false, level);
        return true;
    }
    return false;
}

void searchLevel(const Comparison& compared, LevelDecision& decision) {
    const bool rising = decision.celsius >= static_cast<float>(decision.lastLevelTemp);
    const int32_t level = compared.search(rising);
    decision.rule = rising ? Rule::RISING : Rule::FALLING;
    decision.newLevel = level;
    if (level > 0) {
        decision.below = compared.threshold(rising, level);
    }
    if (level < kTopLevel) {
        decision.above = compared.threshold(rising, level + 1);
    }
}

}  // namespace

LevelState LevelDecision::outcome() const {
    return {newLevel, searched() ? saturatingInt32(celsius) : lastLevelTemp, newStatus};
}

LevelDecision decideLevel(const ThermalStatusModel& model, const LevelState& state, int32_t temp) {
    LevelDecision decision;
    decision.temp = temp;
    decision.celsius = static_cast<float>(temp * 0.001);
    decision.lastLevelTemp = state.levelTemp;
    decision.oldLevel = decision.newLevel = state.level;
    decision.oldStatus = decision.newStatus = state.status;
    const Comparison compared(model, decision.celsius);
    if (keepsLevel(compared, decision)) {
        return decision;
    }
    searchLevel(compared, decision);
    // Thresholds set by a client may be more than the status values of the configuration.
    const auto level = static_cast<size_t>(decision.newLevel);
    if (decision.changesLevel() && level < model.statusAreas.size()) {
        decision.newStatus = model.statusAreas[level];
    }
    return decision;
}

}  // namespace kelvo
