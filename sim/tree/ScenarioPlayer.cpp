#include "sim/tree/ScenarioPlayer.h"

#include <algorithm>
#include <utility>

#include "sim/tree/PlantLoad.h"

namespace sim {

namespace {

constexpr int64_t kPlantPeriodMs = 1000;

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, PhoneTree& phone)
      : mScenario(scenario), mPhone(phone), mRowZones(scenario.zones.size()) {
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
    int64_t next = nextActionTime();
    if (mStepwise) {
        next = std::min(next, mNextPlantMs);
        next = std::min(next, mNextRow ? mNextRow->timeMs : kNever);
    }
    return next;
}

int64_t ScenarioPlayer::nextActionTime() const {
    const bool more = mNextAction < mScenario.timeline.size();
    return more ? mScenario.timeline[mNextAction].timeMs : kNever;
}

void ScenarioPlayer::feedTree(int64_t timeMs) {
    playRows(timeMs);
    if (mNextPlantMs <= timeMs) {
        const int64_t seconds = timeMs / kPlantPeriodMs;
        mPlant->advanceTo(seconds);
        mPhone.apply(*mPlant);
        mNextPlantMs = (seconds + 1) * kPlantPeriodMs;
        mPlantMoved = true;
    }
}

/** Of the rows that come before anybody looks only the last figure of a zone is written. */
void ScenarioPlayer::playRows(int64_t timeMs) {
    for (; mNextRow && mNextRow->timeMs <= timeMs; readRow()) {
        for (const ZoneChange& change : mNextRow->zones) {
            mRowZones[static_cast<size_t>(change.index)] = change;
        }
        if (!mNextRow->nodes.empty()) {
            mNextRow->zones.clear();
            showRowZones();
            mPhone.apply(*mNextRow);
        }
    }
    showRowZones();
}

void ScenarioPlayer::showRowZones() {
    for (auto& change : mRowZones) {
        if (change) {
            mPhone.apply(*change);
            change.reset();
        }
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
