#include "sim/virtual/VirtualTime.h"

#include <utils/Timers.h>

#include <algorithm>

#include "base/Time.h"

namespace sim {

namespace {

int64_t sUptimeNs = 0;  // monotonic clock at t = 0
int64_t sWallNs = 0;    // wall clock at t = 0
int64_t sNowMs = 0;

}  // namespace

void VirtualTime::start(int64_t uptimeMs, int64_t wallNs) {
    sUptimeNs = uptimeMs * kelvo::kNanosPerMilli;
    sWallNs = wallNs;
    sNowMs = 0;
}

void VirtualTime::advanceTo(int64_t timeMs) {
    sNowMs = std::max(sNowMs, timeMs);
}

int64_t VirtualTime::now() {
    return sNowMs;
}

int64_t VirtualTime::fromMonotonic(int64_t monotonicNs) {
    const int64_t sinceStart = std::max<int64_t>(monotonicNs - sUptimeNs, 0);
    return sinceStart / kelvo::kNanosPerMilli + (sinceStart % kelvo::kNanosPerMilli != 0 ? 1 : 0);
}

}  // namespace sim

// Takes the place of libutils' own, in the program and in libutils itself.
nsecs_t systemTime(int clock) {
    using namespace sim;
    const int64_t start = clock == SYSTEM_TIME_REALTIME ? sWallNs : sUptimeNs;
    return start + sNowMs * kelvo::kNanosPerMilli;
}
