#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/DecisionObserver.h"
#include "heat/HeatDecisions.h"
#include "shelltemp/FittingPass.h"
#include "sim/scenario/Event.h"
#include "thermalstatus/LevelDecision.h"

/**
 * Turns the daemon's decisions into events, which have the time of the moment they are made in:
 * "fitting_pass", "level_decision", "heat_sample" and "heat_ranking".
 */
class DecisionEvents : public kelvo::DecisionObserver {
  public:
    using Listener = std::function<void(const sim::Event&)>;

    explicit DecisionEvents(Listener listener) : mListener(std::move(listener)) {}

    void onFittingPass(const kelvo::FittingPass& pass) override;
    void onLevelDecision(const kelvo::LevelDecision& decision) override;
    void onHeatSample(const kelvo::HeatSample& sample) override;
    void onHeatRanking(const kelvo::HeatRanking& ranking) override;

  private:
    using Members = std::vector<std::pair<std::string, Json::Value>>;
    void tell(const char* name, Members members);

    const Listener mListener;
};

/** Tells several observers, in their order. */
class DecisionFanOut : public kelvo::DecisionObserver {
  public:
    /** `observer` lives as long as this. */
    void add(kelvo::DecisionObserver* observer) { mObservers.push_back(observer); }
    bool empty() const { return mObservers.empty(); }

    void onFittingPass(const kelvo::FittingPass& pass) override;
    void onLevelDecision(const kelvo::LevelDecision& decision) override;
    void onHeatSample(const kelvo::HeatSample& sample) override;
    void onHeatRanking(const kelvo::HeatRanking& ranking) override;

  private:
    std::vector<kelvo::DecisionObserver*> mObservers;
};
