#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "recording/Recording.h"
#include "sim/scenario/Expectation.h"

/** A condition beside what its figure was in a run. Both live longer than this. */
class ConditionCourse {
  public:
    ConditionCourse(const sim::Condition& condition, const Recording& recording);

    const sim::Condition& condition() const { return mCondition; }
    /** Whether there is a figure at a time. */
    bool isKnown(int64_t timeMs) const;
    /** Whether it is what the condition asks for; false where there is none. */
    bool holds(int64_t timeMs) const;
    /** "status 1" */
    std::string text(int64_t timeMs) const;
    /** Since when it has been that. */
    int64_t since(int64_t timeMs) const;
    /** Adds the times of its changes that are after `fromMs` and not after `toMs`. */
    void addChanges(int64_t fromMs, int64_t toMs, std::set<int64_t>& times) const;

    /** A number; none for names, and where there is none. */
    std::optional<int64_t> number(int64_t timeMs) const;
    std::string numberText(int64_t value) const;
    /** "status from 0 to 2" */
    std::string spanText(int64_t least, int64_t most) const;
    /** "status", "model back" */
    std::string name() const;

  private:
    const sim::Condition& mCondition;
    const Series* mSeries = nullptr;  // of a number; null for a model that the run never had
    const Band* mBand = nullptr;      // of a name
};
