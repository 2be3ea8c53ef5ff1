#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "sim/plant/Plant.h"
#include "sim/scenario/Scenario.h"
#include "sim/scenario/Trace.h"
#include "sim/tree/PhoneTree.h"

namespace sim {

/**
 * Plays a scenario's trace, plant and timeline: feeds the first two into the phone's tree and hands
 * out the actions that have become due. Whoever runs the phone says what time it is. Not
 * thread-safe. Failures throw.
 */
class ScenarioPlayer {
  public:
    static constexpr int64_t kNever = std::numeric_limits<int64_t>::max();

    /** Both live longer than this. */
    ScenarioPlayer(const Scenario& scenario, PhoneTree& phone);

    /**
     * Whether nextTime() names the times of rows and plant steps too. Without them the tree is only
     * right after feedTree(): who looks at it at few times need not write what nobody sees.
     */
    void setStepwise(bool stepwise) { mStepwise = stepwise; }
    /** When the next row, plant step or action is due (ms since t = 0), or kNever. */
    int64_t nextTime() const;
    /** When the next action is due, or kNever. */
    int64_t nextActionTime() const;
    /** Applies the trace rows, then the plant, as they are due up to `timeMs`. */
    void feedTree(int64_t timeMs);
    /** The next action due at `timeMs`, null when there is none. */
    const Deed* takeAction(int64_t timeMs);
    /** How many actions have been taken; the latest is the timeline's before this one. */
    size_t actionsTaken() const { return mNextAction; }

    /**
     * What a plant that has moved since it was last asked makes services answer: the battery
     * current, and the task statistics and the panel's level until an action has set them.
     */
    std::vector<Deed> takePlantDeeds();

    /** Null without one. */
    const Plant* plant() const { return mPlant ? &*mPlant : nullptr; }

  private:
    void readRow();
    void playRows(int64_t timeMs);
    void showRowZones();

    const Scenario& mScenario;
    PhoneTree& mPhone;
    std::optional<TraceReader> mTrace;
    std::optional<TraceRow> mNextRow;
    std::vector<std::optional<ZoneChange>> mRowZones;  // by index; not in the tree yet
    bool mStepwise = true;
    std::optional<Plant> mPlant;
    int64_t mNextPlantMs = kNever;
    bool mPlantMoved = false;
    bool mTaskStatsSet = false;  // by an action
    bool mPanelSet = false;      // likewise
    size_t mNextAction = 0;
};

}  // namespace sim
