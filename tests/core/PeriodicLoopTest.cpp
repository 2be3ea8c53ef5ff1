#include "core/PeriodicLoop.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

using kelvo::PeriodicLoop;

namespace {

constexpr auto kLimit = std::chrono::seconds(20);
constexpr int32_t kHour = 3600;

// Sets a given interval in each pass; writes down what the loop does and stops it at the end.
class Script : public PeriodicLoop::Client {
  public:
    explicit Script(std::vector<int32_t> intervals) : mIntervals(std::move(intervals)) {}

    std::vector<std::string> run() {
        EXPECT_EQ(mLoop.start(), 0);
        std::unique_lock lock(mMutex);
        const auto end = std::chrono::steady_clock::now() + kLimit;
        while (!mEnded && std::chrono::steady_clock::now() < end) {
            // A wake-up that comes before the wait is lost, so it is repeated.
            if (mWakes > 0) {
                mLoop.wake();
            }
            mChanged.wait_for(lock, std::chrono::milliseconds(5));
        }
        return mEvents;
    }
    void wakeOnce() { mWakes = 1; }

    void onThreadStart() override {
        char name[16] = {};
        pthread_getname_np(pthread_self(), name, sizeof(name));
        record(name);
    }
    bool runPass() override {
        std::unique_lock lock(mMutex);
        if (mPass == mIntervals.size()) {
            return false;
        }
        android::Mutex::Autolock loopLock(mLoop.mutex());
        mLoop.setIntervalLocked(mIntervals[mPass++]);
        return true;
    }
    bool onWoken(int32_t intervalSeconds) override {
        record("woken " + std::to_string(intervalSeconds));
        std::lock_guard lock(mMutex);
        --mWakes;
        return true;
    }
    bool onTimeout() override {
        record("timeout");
        return true;
    }
    void onThreadEnd(PeriodicLoop::End end, int error) override {
        record(end == PeriodicLoop::End::STOPPED && error == 0 ? "stopped" : "failed");
        std::lock_guard lock(mMutex);
        mEnded = true;
        mChanged.notify_all();
    }

  private:
    void record(const std::string& event) {
        std::lock_guard lock(mMutex);
        mEvents.push_back(event);
    }

    const std::vector<int32_t> mIntervals;
    PeriodicLoop mLoop{"periodic", this, 1};
    std::mutex mMutex;  // guards the rest; taken before the loop's
    std::condition_variable mChanged;
    std::vector<std::string> mEvents;
    size_t mPass = 0;
    int mWakes = 0;
    bool mEnded = false;
};

// Never destroyed, because the detached thread may still be leaving it.
Script& script(std::vector<int32_t> intervals) {
    static Script& sScript = *new Script(std::move(intervals));
    return sScript;
}

using Events = std::vector<std::string>;

}  // namespace

TEST(PeriodicLoop, countsEachDeadlineFromTheOneBefore) {
    // The first deadline is two hours ago, so the next two have come already as well. Counted from
    // the end of a pass they would be an hour ahead.
    EXPECT_EQ(script({-2 * kHour, kHour, kHour}).run(),
              (Events{"periodic", "timeout", "timeout", "timeout", "stopped"}));
}

TEST(PeriodicLoop, wakeCutsWaitShortAndStartsScheduleAnew) {
    Script& woken = script({kHour, 0});
    woken.wakeOnce();
    EXPECT_EQ(woken.run(), (Events{"periodic", "woken 3600", "timeout", "stopped"}));
}

TEST(PeriodicLoop, stopsBeforeWaitingWhenPassSaysSo) {
    EXPECT_EQ(script({}).run(), (Events{"periodic", "stopped"}));
}
