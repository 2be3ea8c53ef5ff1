// The daemon's threads in virtual time: everything runs on the scheduler's thread instead.

#include "base/PeriodicLoop.h"
#include "base/WorkThread.h"
#include "sim/virtual/VirtualScheduler.h"

namespace kelvo {

PeriodicLoop::PeriodicLoop(const char* name, Client* client, int32_t intervalSeconds)
      : mName(name), mClient(client), mInterval(intervalSeconds) {}

int PeriodicLoop::start() {
    sim::VirtualScheduler::get().addLoop(this, mClient, [this] {
        android::Mutex::Autolock lock(mutex());
        return intervalLocked();
    });
    return 0;
}

void PeriodicLoop::wake() {
    sim::VirtualScheduler::get().wakeLoop(this);
}

int startWorkThread(void* (*body)(void*)) {
    body(nullptr);
    return 0;
}

void pollForever(const android::sp<android::Looper>& looper) {
    sim::VirtualScheduler::get().setLooper(looper);
}

}  // namespace kelvo
