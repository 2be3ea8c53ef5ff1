// The daemon's threads in virtual time: everything runs on the scheduler's thread instead.

#include "base/PeriodicLoop.h"
#include "base/WorkThread.h"
#include "links/PatientCaller.h"
#include "service/BinderClient.h"
#include "service/ListenerCalls.h"
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

// Services stand in this process and answer at once.
class PatientCaller::Line {};

PatientCaller::PatientCaller(std::string) {}

PatientCaller::~PatientCaller() = default;

bool PatientCaller::perform(std::function<void()> call) {
    call();
    return true;
}

class ListenerCalls::Crew {};

ListenerCalls::ListenerCalls() = default;

ListenerCalls::~ListenerCalls() = default;

std::shared_ptr<ListenerLane> ListenerCalls::laneFor(int, bool) {
    return nullptr;
}

void ListenerCalls::make(std::vector<Listener> listeners, Notice notice) {
    for (const Listener& listener : listeners) {
        notice.tell(*listener.client);
    }
}

void ListenerCalls::forget(const Listener&) {}

}  // namespace kelvo
