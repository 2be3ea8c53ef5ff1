// The sampling thread.

#include <string.h>
#include <unistd.h>

#include "base/Log.h"
#include "heat/HeatProcessCenter.h"

using kelvo::PeriodicLoop;

namespace {

// What a wake-up says of itself; nothing is adjusted by it.
constexpr int32_t kAdjustedInterval = 1000;

}  // namespace

bool HeatProcessCenter::startThread() {
    const int error = mLoop.start();
    if (error != 0) {
        KLOGE("heatpc create startMonitor thread failed: %s", strerror(error));
    }
    return error == 0;
}

void HeatProcessCenter::onThreadStart() {
    KLOGE("heatpc readSamples loop thread...");
}

// Between a stop and the next start the thread goes on and does nothing.
bool HeatProcessCenter::runPass() {
    if (mRunning) {
        for (ComponentHeat* component : mComponents) {
            component->processRawSample();
        }
    }
    return true;
}

bool HeatProcessCenter::onWoken(int32_t /*intervalSeconds*/) {
    KLOGI("heatpc Adjust readSamples interval %d", kAdjustedInterval);
    return true;
}

bool HeatProcessCenter::onTimeout() {
    KLOGD("heatpc wait: %d", kSamplingInterval);
    return true;
}

void HeatProcessCenter::onThreadEnd(PeriodicLoop::End end, int error) {
    if (end == PeriodicLoop::End::CLOCK_ERROR) {
        KLOGE("heatpc clock_gettime error(%s)", strerror(error));
    } else {
        KLOGE("heatpc readSamples loop timewait error(%s)", strerror(error));
        KLOGE("heatpc readSamples loop thread exit...");
    }
    KLOGE("heatpc readSamples thread(%u) exit!", static_cast<uint32_t>(gettid()));
}
