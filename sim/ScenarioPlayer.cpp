#include "sim/ScenarioPlayer.h"

#include <algorithm>
#include <utility>

#include "sim/PlantLoad.h"

namespace sim {

namespace {

constexpr int64_t kPlantPeriodMs = 1000;

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, PhoneTree& phone)
      : mScenario(scenario), mPhone(phone) {
    if (scenario.trace) {
        mTrace.emplace(*scenario.trace, scenario.zones);
        mNextRow.emplace();
        readRow();
    }
    if (scenario.plant) {
        mPlant.emplace(*scenario.plant);
        mNextPlantMs = 0;
        mPlantMoved = true;
    }
}

int64_t ScenarioPlayer::nextTime() const {
    int64_t next = mNextPlantMs;
    if (mNextRow) {
        next = std::min(next, mNextRow->timeMs);
    }
    if (mNextAction < mScenario.timeline.size()) {
        next = std::min(next, mScenario.timeline[mNextAction].timeMs);
    }
    return next;
}

void ScenarioPlayer::feedTree(int64_t timeMs) {
    while (mNextRow && mNextRow->timeMs <= timeMs) {
        mPhone.apply(*mNextRow);
        readRow();
    }
    if (mNextPlantMs <= timeMs) {
        const int64_t seconds = timeMs / kPlantPeriodMs;
        mPlant->advanceTo(seconds);
        mPhone.apply(*mPlant);
        mNextPlantMs = (seconds + 1) * kPlantPeriodMs;
        mPlantMoved = true;
    }
}

std::vector<Deed> ScenarioPlayer::takePlantDeeds() {
    std::vector<Deed> deeds;
    if (!std::exchange(mPlantMoved, false)) {
        return deeds;
    }
    if (const auto current = mPlant->batteryCurrent()) {
        deeds.emplace_back(BatteryCurrent{*current});
    }
    if (!mTaskStatsSet && !mPlant->params().threads.empty()) {
        deeds.emplace_back(TaskStats{taskStatistics(*mPlant)});
    }
    if (const auto panel = panelAnswers(*mPlant, mPhone.isQcom()); panel && !mPanelSet) {
        deeds.emplace_back(*panel);
    }
    return deeds;
}

const Deed* ScenarioPlayer::takeAction(int64_t timeMs) {
    const bool due = mNextAction < mScenario.timeline.size() &&
                     mScenario.timeline[mNextAction].timeMs <= timeMs;
    if (!due) {
        return nullptr;
    }
    const Deed& deed = mScenario.timeline[mNextAction++].deed;
    mTaskStatsSet = mTaskStatsSet || std::holds_alternative<TaskStats>(deed);
    mPanelSet = mPanelSet || std::holds_alternative<Panel>(deed);
    return &deed;
}

void ScenarioPlayer::readRow() {
    if (!mTrace->next(*mNextRow)) {
        mNextRow.reset();
    }
}

}  // namespace sim
