#pragma once

#include <chrono>
#include <string>

#include "sim/process/PhoneProcess.h"

namespace sim {

/**
 * How long a process of the phone may take until it serves. An idle machine needs milliseconds; one
 * that builds and tests beside it may leave a program waiting for many seconds.
 */
inline constexpr std::chrono::seconds kServeLimit(60);

/** Since when somebody waits for a process to serve. Not thread-safe. */
class ServeWait {
  public:
    bool isOver() const { return Clock::now() - mStart > kServeLimit; }
    /** What is left of the limit, for poll(). */
    int leftMs() const;

    /**
     * Throws std::runtime_error that says what does not serve, how its process ended or how long
     * was waited, and the end of the file `log`.
     */
    [[noreturn]] void refuse(const std::string& what, const PhoneProcess& process,
                             const std::string& log) const;

  private:
    using Clock = std::chrono::steady_clock;

    const Clock::time_point mStart = Clock::now();
};

}  // namespace sim
