#pragma once

#include <cstdint>

namespace sim {

/**
 * The clocks of a program in virtual time. Linking this part of the library puts all that reads
 * libutils' systemTime(), its Looper included, onto these clocks. One thread only.
 */
class VirtualTime {
  public:
    /** t = 0: the monotonic clock in ms, the wall clock in ns since the epoch. */
    static void start(int64_t uptimeMs, int64_t wallNs);
    /** Moves both clocks to `timeMs` after t = 0; never back. */
    static void advanceTo(int64_t timeMs);
    /** ms since t = 0. */
    static int64_t now();
    /** The time since t = 0 (ms, rounded up) that is `monotonicNs` on the monotonic clock. */
    static int64_t fromMonotonic(int64_t monotonicNs);
};

}  // namespace sim
