#include "shelltemp/FittingLoop.h"

#include <cutils/properties.h>
#include <string.h>

#include <algorithm>

#include "base/Log.h"
#include "base/Time.h"

namespace kelvo {

namespace {

constexpr char kIntervalProperty[] = "persist.sys.shelltemp.interval";
constexpr int32_t kScreenOffInterval = 5;  // s, at least
constexpr int32_t kTsensorInterval = 1;    // s

int32_t readInterval(int32_t defaultInterval) {
    int32_t interval = property_get_int32(kIntervalProperty, defaultInterval);
    if (interval == defaultInterval) {
        return interval;
    }
    if (interval < 1) {
        KLOGE("Wrong fitting interval %d with property, reset to default", interval);
        interval = defaultInterval;
    }
    KLOGE("Get shell temp fitting interval %d", interval);
    return interval;
}

}  // namespace

FittingLoop::FittingLoop(Steps* steps, TsensorCollector* tsensors)
      : mSteps(steps), mTsensors(tsensors), mLoop("st-fitting", this, kDefaultInterval) {}

void FittingLoop::start() {
    mConfiguredInterval = readInterval(kDefaultInterval);
    {
        android::Mutex::Autolock lock(mLoop.mutex());
        mLoop.setIntervalLocked(mConfiguredInterval);
    }
    const int error = mLoop.start();
    if (error != 0) {
        KLOGE("create st-fitting thread failed: %s", strerror(error));
    }
}

int32_t FittingLoop::enterScene(const std::string& scene) {
    int32_t interval = mConfiguredInterval;
    {
        android::Mutex::Autolock lock(mLoop.mutex());
        if (scene == "SCREEN:OFF") {
            interval = std::max(mLoop.intervalLocked(), kScreenOffInterval);
        } else if (scene == "SCREEN:ON") {
            mScreenOnTime = monotonicSeconds();
        }
        mLoop.setIntervalLocked(interval);
    }
    mLoop.wake();
    return interval;
}

int32_t FittingLoop::screenOnTime() {
    android::Mutex::Autolock lock(mLoop.mutex());
    return mScreenOnTime;
}

void FittingLoop::onThreadStart() {
    mSteps->waitUntilReady();
}

bool FittingLoop::runPass() {
    if (!mPrimed) {
        mSteps->readTempForFirstTime();
        mPrimed = true;
    }
    if (mTsensors->enabled()) {
        tick();
    } else {
        mSteps->fittingStep();
    }
    return true;
}

void FittingLoop::tick() {
    {
        android::Mutex::Autolock lock(mLoop.mutex());
        mLoop.setIntervalLocked(kTsensorInterval);
    }
    if (mTicks >= kTicksPerFitting) {
        mTicks = 0;
        mSteps->fittingStep();
    }
    ++mTicks;
    mTsensors->getTsensorTemps();
    mTsensors->getTsensorDataCollect();
}

bool FittingLoop::onWoken(int32_t intervalSeconds) {
    KLOGI("Adjust fitting interval %d", intervalSeconds);
    return true;
}

void FittingLoop::onThreadEnd(PeriodicLoop::End end, int error) {
    if (end == PeriodicLoop::End::CLOCK_ERROR) {
        KLOGE("clock_gettime error(%s)", strerror(error));
    } else if (end == PeriodicLoop::End::WAIT_ERROR) {
        KLOGE("fitting_loop timewait error(%s)", strerror(error));
    }
    KLOGE("SheellTempFitting fitting loop thread exit...");
}

}  // namespace kelvo
