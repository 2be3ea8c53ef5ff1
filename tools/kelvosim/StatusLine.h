#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "sim/LivePhone.h"
#include "sim/Scenario.h"

/** The line a second that a live run shows. */
class StatusLine {
  public:
    explicit StatusLine(const sim::Scenario& scenario);

    /** What the columns are, once at the begin. */
    std::string heading() const;
    /** The phone's state at `timeMs` of the scenario. */
    std::string line(sim::LivePhone& phone, int64_t timeMs) const;

  private:
    std::string wallClock(int64_t timeMs) const;
    std::string modelName(int32_t index) const;

    const int64_t mStartNs;
    std::map<int32_t, std::string> mModelNames;
};
