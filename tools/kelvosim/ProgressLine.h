#pragma once

#include <chrono>
#include <cstdint>
#include <string>

/**
 * How far a long replay has come, on a line of the terminal that standard error is; nothing when it
 * is none. The line is gone at the end. One thread.
 */
class ProgressLine {
  public:
    /** `label` stands before the figures; without `wanted` nothing is shown. */
    ProgressLine(std::string label, int64_t durationMs, bool wanted);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /** Shows the phone time when half a second of real time has passed since it was last shown. */
    void update(int64_t timeMs);

  private:
    using Clock = std::chrono::steady_clock;

    const std::string mLabel;
    const int64_t mDurationMs;
    const bool mWanted;
    const Clock::time_point mStart;
    Clock::time_point mShown;
    bool mOnScreen = false;
};
