#include "base/PeriodicLoop.h"

#include <errno.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <future>

using kelvo::PeriodicLoop;
using Events = std::vector<std::string>;

namespace {

constexpr int64_t kSecond = 1'000'000'000;
// Far ahead of the machine's clock, so that a wait counted from here has no end but a wake-up.
constexpr int64_t kStart = kSecond * kSecond - 1;
constexpr int32_t kIntervals[] = {1, 1, 3600, 1};

// All that the loop's thread reads from the monotonic clock.
constexpr int64_t kReads[] = {
        // One nanosecond is left: a wait, counted from a time that is long gone.
        kStart, kStart + kSecond - 1, 0,
        // The second deadline has come, to the nanosecond. The third is an hour ahead, until the
        // wake-up: half a second later, from where the last is counted.
        kStart + 2 * kSecond, kStart + 2 * kSecond, kStart, kStart + 5 * kSecond / 2,
        kStart + 7 * kSecond / 2};

thread_local const int64_t* tNextRead = nullptr;

// Starts the script with the thread, and writes down what the loop does after how many reads.
class Script : public PeriodicLoop::Client {
  public:
    Events run() {
        EXPECT_EQ(mLoop.start(), 0);
        std::future<void> end = mEnd.get_future();
        // A wake-up that comes before the long wait is lost, so it is repeated.
        while (end.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready) {
            if (mPass == 3) {
                mLoop.wake();
            }
        }
        return mEvents;
    }

    void onThreadStart() override {
        char name[16];
        pthread_getname_np(pthread_self(), name, sizeof(name));
        tNextRead = kReads;
        record(name);
    }
    bool runPass() override {
        android::Mutex::Autolock lock(mLoop.mutex());
        mLoop.setIntervalLocked(kIntervals[mPass++]);
        return true;
    }
    bool onWoken(int32_t seconds) override { return record("woken " + std::to_string(seconds)); }
    bool onTimeout() override { return record("timeout"); }
    void onThreadEnd(PeriodicLoop::End end, int error) override {
        record(end == PeriodicLoop::End::STOPPED && error == 0 ? "stopped" : "failed");
        mEnd.set_value();
    }

  private:
    bool record(const std::string& event) {
        mEvents.push_back(event + ", " + std::to_string(tNextRead - kReads));
        return mPass < std::size(kIntervals);
    }

    PeriodicLoop mLoop{"periodic", this, 1};
    std::atomic<size_t> mPass = 0;
    Events mEvents;  // the loop's until its end
    std::promise<void> mEnd;
};

}  // namespace

// In place of the library's: the machine's clock for all threads but the loop's, and after its
// script.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
    if (tNextRead == nullptr || tNextRead == std::end(kReads)) {
        return static_cast<int>(syscall(SYS_clock_gettime, clock, now));
    }
    *now = {*tNextRead / kSecond, *tNextRead % kSecond};
    ++tNextRead;
    return 0;
}

TEST(PeriodicLoop, countsDeadlinesFromTheOneBeforeAndAnewAfterWakeUp) {
    // Never destroyed, because the detached thread may still be leaving it.
    static Script& script = *new Script;
    EXPECT_EQ(script.run(), (Events{"periodic, 0", "timeout, 3", "timeout, 4", "woken 3600, 7",
                                    "timeout, 8", "stopped, 8"}));
}

TEST(PeriodicLoop, saysWhyItCannotStart) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size_t{1} << 60);  // more than there are addresses
    pthread_setattr_default_np(&attributes);
    EXPECT_EQ(PeriodicLoop("periodic", nullptr, 1).start(), EAGAIN);
}
