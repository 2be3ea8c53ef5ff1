#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/DecisionObserver.h"
#include "sim/scenario/Event.h"

/**
 * Turns changes of what no call tells into events: "scene_change" at the first fitting pass with
 * other models, "level_change" when a decision finds another level. Not thread-safe.
 */
class ChangeEvents : public kelvo::DecisionObserver {
  public:
    using Listener = std::function<void(const sim::Event&)>;

    explicit ChangeEvents(Listener listener) : mListener(std::move(listener)) {}

    void onFittingPass(const kelvo::FittingPass& pass) override;
    void onLevelDecision(const kelvo::LevelDecision& decision) override;
    void onHeatSample(const kelvo::HeatSample&) override {}
    void onHeatRanking(const kelvo::HeatRanking&) override {}

  private:
    const Listener mListener;
    std::optional<std::string> mScene;
};
