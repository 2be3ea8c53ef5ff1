#pragma once

// Why each value is what it is, for whoever studies a configuration: the engines fill records from
// the figures they decide with. On a phone nobody observes, and nothing is recorded.

namespace kelvo {

// The records lie with the engines that they describe.
struct FittingPass;    // shelltemp/FittingPass.h
struct LevelDecision;  // thermalstatus/LevelDecision.h
struct HeatSample;     // heat/HeatDecisions.h
struct HeatRanking;    // heat/HeatDecisions.h

/**
 * Told of decisions as they are made, on the thread that makes them. Some come under the deciding
 * engine's mutex: an observer calls no engine.
 */
class DecisionObserver {
  public:
    virtual ~DecisionObserver() = default;
    virtual void onFittingPass(const FittingPass& pass) = 0;
    virtual void onLevelDecision(const LevelDecision& decision) = 0;
    virtual void onHeatSample(const HeatSample& sample) = 0;
    virtual void onHeatRanking(const HeatRanking& ranking) = 0;
};

/** Null unless one was set. Thread-safe. */
DecisionObserver* decisionObserver();
/** Sets the one observer, or null. Before the engines start; it lives as long as they. */
void setDecisionObserver(DecisionObserver* observer);

}  // namespace kelvo
