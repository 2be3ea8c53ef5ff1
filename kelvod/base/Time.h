#pragma once

#include <utils/Timers.h>

#include <cstdint>

// The daemon's clocks; everything reads them through libutils, which a program can move into
// virtual time. Thread-safe.

namespace kelvo {

inline constexpr int64_t kNanosPerSecond = 1'000'000'000;
inline constexpr int64_t kNanosPerMilli = 1'000'000;

/** Time since boot, without the time spent suspended. */
inline int64_t monotonicNanos() {
    return systemTime(SYSTEM_TIME_MONOTONIC);
}
inline int32_t monotonicSeconds() {
    return static_cast<int32_t>(monotonicNanos() / kNanosPerSecond);
}

/** Time since the epoch. */
inline int64_t wallClockNanos() {
    return systemTime(SYSTEM_TIME_REALTIME);
}
inline int64_t wallClockSeconds() {
    return wallClockNanos() / kNanosPerSecond;
}

}  // namespace kelvo
