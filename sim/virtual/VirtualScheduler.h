#pragma once

#include <utils/Looper.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/PeriodicLoop.h"

namespace sim {

/**
 * Runs the daemon's message loop and periodic loops on the calling thread in virtual time. The
 * daemon's threads register here through the definitions in VirtualThreads.cpp. One a process.
 */
class VirtualScheduler {
  public:
    static constexpr int64_t kNever = std::numeric_limits<int64_t>::max();

    static VirtualScheduler& get();

    /** Called after each message batch and each pass, before what they caused is handled. */
    void setObserver(std::function<void()> observer) { mObserver = std::move(observer); }

    /** The earliest time (ms since t = 0) at which a message or a loop is due, or kNever. */
    int64_t nextTime() const;
    /** Handles all messages that are due, also those that the handling posts. */
    void handleMessages();
    /** Makes the passes that are due or woken, each followed by the messages then due. */
    void runLoops();

    // For the definitions of the daemon's threads.

    void setLooper(const android::sp<android::Looper>& looper) { mLooper = looper; }
    /** `interval` (s) is asked when a deadline is set. */
    void addLoop(const void* key, kelvo::PeriodicLoop::Client* client,
                 std::function<int32_t()> interval);
    /** Lost unless the loop is waiting. */
    void wakeLoop(const void* key);

  private:
    enum class LoopState { STARTED, IN_PASS, WAITING, ENDED };

    struct Loop {
        const void* key;
        kelvo::PeriodicLoop::Client* client;
        std::function<int32_t()> interval;
        LoopState state = LoopState::STARTED;
        bool woken = false;
        int64_t deadlineMs = 0;
    };

    void learnNextMessage();
    bool isDue(const Loop& loop) const;
    Loop* nextDueLoop();
    void runPass(Loop& loop);
    bool beforePass(Loop& loop);

    std::function<void()> mObserver = [] {};
    android::sp<android::Looper> mLooper;
    std::vector<std::unique_ptr<Loop>> mLoops;  // in order of their start
    int64_t mNextMessageMs = kNever;
};

}  // namespace sim
