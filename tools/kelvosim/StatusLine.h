#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "KelvodReport.h"
#include "sim/scenario/Scenario.h"

/** What a line is about. */
struct PhoneState {
    int64_t timeMs = 0;                  // of the scenario
    std::optional<KelvodReport> kelvod;  // none: not there, or does not answer
    std::optional<std::string> scene;
    std::optional<sim::ZoneSpec> hottestZone;
};

/**
 * The line a second that a live run shows. What is not known is a "-"; a level or scene that is
 * another than in the line before stands at the end once more.
 */
class StatusLine {
  public:
    explicit StatusLine(const sim::Scenario& scenario) : mStartNs(scenario.startNs) {}

    /** What the columns are, once at the begin. */
    static std::string heading();
    std::string line(const PhoneState& state);

  private:
    std::string wallClock(int64_t timeMs) const;

    const int64_t mStartNs;
    std::optional<std::string> mLevel;  // the latest that was known
    std::optional<std::string> mScene;  // likewise
};
