#include "service/DumpWriter.h"

#include <errno.h>
#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

#include "base/Time.h"

namespace kelvo {

namespace {

constexpr int64_t kPatience = 5 * kNanosPerSecond;
constexpr int64_t kNanosPerMilli = 1'000'000;
// A pipe that can be written at all takes so much without waiting.
constexpr size_t kLongestWrite = PIPE_BUF;

/** One thread may wait for a reader. */
class WaitingPlace {
  public:
    ~WaitingPlace() {
        if (mHeld) {
            sTaken = false;
        }
    }
    bool take() {
        mHeld = mHeld || !sTaken.exchange(true);
        return mHeld;
    }

  private:
    static std::atomic<bool> sTaken;
    bool mHeld = false;
};

std::atomic<bool> WaitingPlace::sTaken = false;

/** Whether something can be written, or writing fails at once, before the deadline (ns). */
bool isWritable(int fd, int64_t deadline) {
    if (fd < 0) {
        return true;  // a request without a descriptor; poll() would wait for nothing
    }
    struct pollfd events {
        fd, POLLOUT, 0
    };
    int ready = -1;
    do {
        const int64_t left = std::max<int64_t>(deadline - monotonicNanos(), 0);
        ready = poll(&events, 1, static_cast<int>(left / kNanosPerMilli));
    } while (ready < 0 && errno == EINTR);
    return ready != 0;
}

bool awaitReader(int fd, WaitingPlace& place, int64_t deadline) {
    if (isWritable(fd, 0) || (place.take() && isWritable(fd, deadline))) {
        return true;
    }
    errno = ETIMEDOUT;
    return false;
}

}  // namespace

bool writeForReader(int fd, const std::string& text) {
    const int64_t deadline = monotonicNanos() + kPatience;
    WaitingPlace place;
    size_t written = 0;
    while (written < text.size()) {
        if (!awaitReader(fd, place, deadline)) {
            return false;
        }
        const size_t size = std::min(text.size() - written, kLongestWrite);
        const ssize_t count = write(fd, text.data() + written, size);
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            return false;
        }
        written += static_cast<size_t>(std::max<ssize_t>(count, 0));
    }
    return true;
}

}  // namespace kelvo
