#include "base/PeriodicLoop.h"

#include <errno.h>
#include <pthread.h>
#include <time.h>

#include "base/Time.h"

namespace kelvo {

namespace {

// The clock that android::Condition waits on. Unlike systemTime() it can report a failure.
int readMonotonic(int64_t* nanos) {
    struct timespec now {};
    if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) {
        return errno;
    }
    *nanos = int64_t{now.tv_sec} * kNanosPerSecond + now.tv_nsec;
    return 0;
}

}  // namespace

PeriodicLoop::PeriodicLoop(const char* name, Client* client, int32_t intervalSeconds)
      : mName(name), mClient(client), mInterval(intervalSeconds) {}

int PeriodicLoop::start() {
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, threadEntry, this);
    if (error != 0) {
        return error;
    }
    pthread_detach(thread);
    return 0;
}

void PeriodicLoop::wake() {
    {
        android::Mutex::Autolock lock(mMutex);
        mWoken = true;  // which the next wait forgets
    }
    mCondition.signal();  // without the mutex, which the loop's thread takes next
}

void* PeriodicLoop::threadEntry(void* loop) {
    auto* self = static_cast<PeriodicLoop*>(loop);
    // Here and not by the starter, so that everything the thread does is seen under its name.
    pthread_setname_np(pthread_self(), self->mName.c_str());
    self->mClient->onThreadStart();
    int error = 0;
    const End end = self->run(&error);
    self->mClient->onThreadEnd(end, error);
    return nullptr;
}

PeriodicLoop::End PeriodicLoop::run(int* error) {
    int64_t deadline = 0;
    *error = readMonotonic(&deadline);
    if (*error != 0) {
        return End::CLOCK_ERROR;
    }
    while (mClient->runPass()) {
        int32_t interval = 0;
        *error = wait(&deadline, &interval);
        bool goOn = false;
        if (*error == 0) {
            *error = readMonotonic(&deadline);
            if (*error != 0) {
                return End::CLOCK_ERROR;
            }
            goOn = mClient->onWoken(interval);
        } else if (*error == EINVAL) {
            return End::WAIT_ERROR;
        } else {
            goOn = mClient->onTimeout();
        }
        *error = 0;
        if (!goOn) {
            break;
        }
    }
    return End::STOPPED;
}

// 0 when woken, ETIMEDOUT at the deadline, another errno value on failure.
int PeriodicLoop::wait(int64_t* deadline, int32_t* interval) {
    android::Mutex::Autolock lock(mMutex);
    *deadline += mInterval * kNanosPerSecond;
    mWoken = false;
    const int result = waitUntil(*deadline);
    *interval = mInterval;  // the one that came with the wake-up
    return result;
}

// The same.
int PeriodicLoop::waitUntil(int64_t deadline) {
    int result = 0;
    while (!mWoken && result == 0) {
        int64_t now = 0;
        result = readMonotonic(&now);
        if (result == 0) {
            // At once when the pass took longer than the interval.
            result = now < deadline ? -mCondition.waitRelative(mMutex, deadline - now) : ETIMEDOUT;
        }
    }
    return mWoken ? 0 : result;
}

}  // namespace kelvo
