#include "sim/virtual/VirtualScheduler.h"

#include <utils/Timers.h>

#include <algorithm>

#include "sim/virtual/VirtualTime.h"

namespace sim {

namespace {

constexpr int64_t kMillisPerSecond = 1000;

// Monotonic ns of the Looper's next message, as it last told toMillisecondTimeoutDelay().
int64_t sNextMessageNs = VirtualScheduler::kNever;

}  // namespace

VirtualScheduler& VirtualScheduler::get() {
    static auto* const scheduler = new VirtualScheduler;
    return *scheduler;
}

int64_t VirtualScheduler::nextTime() const {
    int64_t next = mNextMessageMs;
    for (const auto& loop : mLoops) {
        if (loop->state == LoopState::STARTED || loop->woken) {
            return VirtualTime::now();
        }
        if (loop->state == LoopState::WAITING) {
            next = std::min(next, loop->deadlineMs);
        }
    }
    return next;
}

void VirtualScheduler::handleMessages() {
    if (mLooper == nullptr) {
        return;
    }
    // A poll says "wake" when a message was posted that is the next one from now on.
    using android::Looper;
    bool changed = mNextMessageMs <= VirtualTime::now();
    for (int what = mLooper->pollOnce(0);
         what == Looper::POLL_WAKE || what == Looper::POLL_CALLBACK; what = mLooper->pollOnce(0)) {
        changed = true;
        if (what == Looper::POLL_CALLBACK) {
            mObserver();
        }
    }
    if (changed) {
        learnNextMessage();
    }
}

/** Only a poll that may wait asks how long. */
void VirtualScheduler::learnNextMessage() {
    sNextMessageNs = kNever;
    mLooper->wake();  // so that it returns at once also when there is no message at all
    mLooper->pollOnce(-1);
    mNextMessageMs = sNextMessageNs == kNever ? kNever : VirtualTime::fromMonotonic(sNextMessageNs);
}

void VirtualScheduler::runLoops() {
    while (Loop* const loop = nextDueLoop()) {
        runPass(*loop);
        mObserver();
        handleMessages();
    }
}

void VirtualScheduler::addLoop(const void* key, kelvo::PeriodicLoop::Client* client,
                               std::function<int32_t()> interval) {
    mLoops.push_back(std::make_unique<Loop>(Loop{key, client, std::move(interval)}));
}

void VirtualScheduler::wakeLoop(const void* key) {
    for (const auto& loop : mLoops) {
        if (loop->key == key && loop->state == LoopState::WAITING) {
            loop->woken = true;
        }
    }
}

bool VirtualScheduler::isDue(const Loop& loop) const {
    return loop.state == LoopState::STARTED || loop.woken ||
           (loop.state == LoopState::WAITING && loop.deadlineMs <= VirtualTime::now());
}

VirtualScheduler::Loop* VirtualScheduler::nextDueLoop() {
    for (const auto& loop : mLoops) {
        if (isDue(*loop)) {
            return loop.get();
        }
    }
    return nullptr;
}

void VirtualScheduler::runPass(Loop& loop) {
    bool goOn = beforePass(loop);
    loop.state = LoopState::IN_PASS;
    loop.woken = false;
    goOn = goOn && loop.client->runPass();
    if (!goOn) {
        loop.state = LoopState::ENDED;
        loop.client->onThreadEnd(kelvo::PeriodicLoop::End::STOPPED, 0);
        return;
    }
    loop.deadlineMs += loop.interval() * kMillisPerSecond;
    loop.state = LoopState::WAITING;
}

bool VirtualScheduler::beforePass(Loop& loop) {
    if (loop.state == LoopState::STARTED) {
        loop.client->onThreadStart();
        loop.deadlineMs = VirtualTime::now();
        return true;
    }
    if (loop.woken) {
        loop.deadlineMs = VirtualTime::now();
        return loop.client->onWoken(loop.interval());
    }
    return loop.client->onTimeout();
}

}  // namespace sim

// Takes the place of libutils' own: the Looper asks it how long to wait for its next message, which
// tells when that is. Nothing ever waits in virtual time.
int toMillisecondTimeoutDelay(nsecs_t /*referenceTime*/, nsecs_t timeoutTime) {
    sim::sNextMessageNs = timeoutTime;
    return 0;
}
