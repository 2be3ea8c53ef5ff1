#include "base/PeriodicLoop.h"

#include <errno.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <future>

using kelvo::PeriodicLoop;
using Events = std::vector<std::string>;

namespace {

constexpr int32_t kHour = 3600;
constexpr int32_t kIntervals[] = {-2 * kHour, kHour, kHour, kHour, 0};

// Sets another interval in each pass and writes down what the loop does.
class Script : public PeriodicLoop::Client {
  public:
    Events run() {
        EXPECT_EQ(mLoop.start(), 0);
        std::future<void> end = mEnd.get_future();
        // A wake-up that comes before the wait is lost, so it is repeated.
        while (end.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready) {
            mLoop.wake();
        }
        return mEvents;
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
        mEvents.push_back(event);
        return mPass < std::size(kIntervals);
    }

    PeriodicLoop mLoop{"periodic", this, 1};
    size_t mPass = 0;
    Events mEvents;  // the loop's until its end
    std::promise<void> mEnd;
};

}  // namespace

TEST(PeriodicLoop, countsDeadlinesFromTheOneBeforeAndAnewAfterWakeUp) {
    // Never destroyed, because the detached thread may still be leaving it.
    static Script& script = *new Script;
    // The first deadline is two hours ago, so the next two have come already as well: counted from
    // the end of a pass they would be an hour ahead. The fourth is ahead, and a wake-up cuts it
    // short; counted from it instead of from the wake-up, the last would be as well.
    EXPECT_EQ(script.run(),
              (Events{"timeout", "timeout", "timeout", "woken 3600", "timeout", "stopped"}));
}

TEST(PeriodicLoop, saysWhyItCannotStart) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size_t{1} << 60);  // more than there are addresses
    pthread_setattr_default_np(&attributes);
    EXPECT_EQ(PeriodicLoop("periodic", nullptr, 1).start(), EAGAIN);
}
