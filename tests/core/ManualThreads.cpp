#include "ManualThreads.h"

#include <utils/Timers.h>

#include "core/PeriodicLoop.h"
#include "core/WorkThread.h"

void ManualThreads::handleDue() {
    while (looper->pollOnce(0) != android::Looper::POLL_TIMEOUT) {
    }
}

// Takes the place of libutils' own, also for its Looper.
nsecs_t systemTime(int) {
    return ManualThreads::nowNs;
}

namespace kelvo {

PeriodicLoop::PeriodicLoop(const char* name, Client* client, int32_t intervalSeconds)
      : mName(name), mClient(client), mInterval(intervalSeconds) {}

int PeriodicLoop::start() {
    return 0;
}

void PeriodicLoop::wake() {}

int startWorkThread(void* (*body)(void*)) {
    if (ManualThreads::startError == 0) {
        body(nullptr);
    }
    return ManualThreads::startError;
}

void pollForever(const android::sp<android::Looper>& looper) {
    ManualThreads::looper = looper;
}

}  // namespace kelvo
