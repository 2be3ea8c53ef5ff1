// Preloaded before the daemon in the place of libutils' clock: the wall clock is ahead by the
// seconds that "/data/clock" of the device root says.

#include <time.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

int64_t systemTime(int clock);

int64_t systemTime(int clock) {
    constexpr int64_t kSecond = 1'000'000'000;
    timespec now{};
    int64_t ahead = 0;
    if (clock == 0) {  // SYSTEM_TIME_REALTIME
        std::ifstream(std::string(getenv("KELVO_ROOT")) + "/data/clock") >> ahead;
    }
    clock_gettime(clock == 0 ? CLOCK_REALTIME : CLOCK_MONOTONIC, &now);
    return (int64_t{now.tv_sec} + ahead) * kSecond + now.tv_nsec;
}
