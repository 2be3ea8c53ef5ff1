#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "base/DecisionObserver.h"
#include "heat/HeatDecisions.h"
#include "recording/Recording.h"
#include "shelltemp/FittingPass.h"
#include "sim/plant/Plant.h"
#include "sim/scenario/Event.h"
#include "sim/scenario/Scenario.h"
#include "thermalstatus/LevelDecision.h"

/**
 * Fills a recording while a scenario is replayed: it is told of events, zones and the daemon's
 * decisions, and looks at the daemon and the plant at the end of each moment. It changes nothing in
 * either. One thread.
 */
class Recorder : public kelvo::DecisionObserver {
  public:
    /** `scenarioFile` is what the page calls it. `scenario` lives longer than this. */
    Recorder(const sim::Scenario& scenario, const std::string& scenarioFile);

    void onEvent(const sim::Event& event);
    void onZone(int32_t zone, std::optional<int32_t> temp);
    /** All that was due has been done; `plant` is null without one. */
    void onMomentEnd(const sim::Plant* plant);

    void onFittingPass(const kelvo::FittingPass& pass) override;
    void onLevelDecision(const kelvo::LevelDecision& decision) override;
    void onHeatSample(const kelvo::HeatSample& sample) override;
    void onHeatRanking(const kelvo::HeatRanking& ranking) override;

    const Recording& recording() const { return mRecording; }

  private:
    void addNotification(const sim::Event& event);
    void addMark(Mark::Kind kind, const std::string& text);
    void lookAtDaemon();
    void lookAtPlant(const sim::Plant& plant);
    void endMonitoring();

    Recording mRecording;
    std::map<int32_t, kelvo::HeatSample> mLastSamples;  // by ComponentType, of this monitoring
    int64_t mLastSampleMs = 0;
};
