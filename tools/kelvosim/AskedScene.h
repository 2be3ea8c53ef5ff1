#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "core/SceneMachine.h"
#include "sim/scenario/Scenario.h"

/**
 * The scene that the daemon should be in by what the scenario has told it of lamp, fold and
 * wireless charging. No call tells the real one: what others tell the daemon, and its fallback to
 * backup models, are not seen here. Runs the daemon's own rules. Not thread-safe.
 */
class AskedScene : private kelvo::SceneMachine::Actions {
  public:
    /** As the daemon's rules count it: real time. */
    using Time = std::chrono::steady_clock::time_point;

    explicit AskedScene(const sim::Scenario& scenario);

    void tell(const sim::Deed& deed, Time now);
    /** A new daemon knows nothing of what the old one was told. */
    void restart();
    std::string current(Time now);

  private:
    bool switchScene(const std::string& scene) override { return mScenes.contains(scene); }
    void scheduleFlash(int delayMs) override;
    void cancelFlash() override { mFlash.reset(); }
    void runTo(Time now);

    const std::set<std::string> mScenes;  // with models
    std::optional<kelvo::SceneMachine> mMachine;
    std::optional<Time> mFlash;  // when the lamp counts
    Time mNow;
    bool mWireless = false;
};
