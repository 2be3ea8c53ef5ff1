#include "shelltemp/ShellTempFitting.h"

#include <cutils/properties.h>
#include <string.h>

#include "base/Log.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "config/PlatformAdaptor.h"
#include "shelltemp/ZoneReader.h"

using android::Mutex;
using kelvo::PeriodicLoop;

ANDROID_SINGLETON_STATIC_INSTANCE(ShellTempFitting)

namespace {

constexpr char kIpaZoneType[] = "soc_thermal_ipa";
constexpr char kIpaProperty[] = "sys.ipa_thermal_number";
// The inner display of this project runs two degrees cooler than its model says.
constexpr char kInnerProject[] = "47213";

constexpr int32_t kTsensorInterval = 1;  // s
constexpr int32_t kTicksPerFitting = 5;  // while tsensors are sampled

// Starts full, so that the first tick fits. Process-wide; fitting thread only.
int32_t sCycleCounter = kTicksPerFitting;

}  // namespace

ShellTempFitting::ShellTempFitting() : mLoop("st-fitting", this, kDefaultInterval) {
    initConfig();
    initSpecifiedConfig();
    initTsensorConfig();
    chooseStartingModels();
    readInterval();
    {
        Mutex::Autolock lock(mMutex);
        mStartTime = kelvo::monotonicNanos();
        mRecordDay = kelvo::getLocalDay();
        mRecordStart = kelvo::getTimestamp();
    }
    const int error = mLoop.start();
    if (error != 0) {
        KLOGE("create st-fitting thread failed: %s", strerror(error));
    }
}

void ShellTempFitting::init() {
    KLOGI("shell temp fitting module init...");
    updateScene("Init", false, 0);
    Mutex::Autolock lock(mMutex);
    mProjectName = kelvo::PlatformAdaptor::getInstance().getProjectName();
    mInnerSpecialHandling = mProjectName == kInnerProject;
    KLOGD("getProjectName():%s, need special handle: %d", mProjectName.c_str(),
          mInnerSpecialHandling ? 1 : 0);
}

void ShellTempFitting::initIPA() {
    Mutex::Autolock lock(mMutex);
    const int32_t index = mZoneTable.indexOf(kIpaZoneType);
    if (index >= 0) {
        KLOGE("initIPA Tz index = %d,", index);
        property_set(kIpaProperty, std::to_string(index).c_str());
    }
}

kelvo::FittingTemps ShellTempFitting::getFittingTemps() const {
    Mutex::Autolock lock(mMutex);
    return mFittingTemps;
}

int32_t ShellTempFitting::getThermalTemp(const kelvo::ThermalZone& zone, int& temp) const {
    return static_cast<int32_t>(kelvo::readZone(zone, temp));
}

int ShellTempFitting::getSpecifiedZoneTemps(std::vector<int>& temps) {
    return mSpecifiedZones.getTemps(temps);
}

int ShellTempFitting::getTsensorTemps() {
    return mTsensors.sample();
}

void ShellTempFitting::getTsensorDataCollect() {
    mTsensors.reportFinishedDay();
}

// Waits until the constructor that started this thread has returned.
void ShellTempFitting::onThreadStart() {
    getInstance();
}

bool ShellTempFitting::runPass() {
    if (!mPrimed) {
        readTempForFirstTime();
        mPrimed = true;
        if (!mRunning) {
            return false;
        }
    }
    if (!mTsensors.enabled()) {
        fittingStep();
        return true;
    }
    {
        Mutex::Autolock lock(mLoop.mutex());
        mLoop.setIntervalLocked(kTsensorInterval);
    }
    if (sCycleCounter >= kTicksPerFitting) {
        sCycleCounter = 0;
        fittingStep();
    }
    ++sCycleCounter;
    getTsensorTemps();
    getTsensorDataCollect();
    return true;
}

bool ShellTempFitting::onWoken(int32_t intervalSeconds) {
    KLOGI("Adjust fitting interval %d", intervalSeconds);
    return mRunning;
}

bool ShellTempFitting::onTimeout() {
    return mRunning;
}

void ShellTempFitting::onThreadEnd(PeriodicLoop::End end, int error) {
    if (end == PeriodicLoop::End::CLOCK_ERROR) {
        KLOGE("clock_gettime error(%s)", strerror(error));
    } else if (end == PeriodicLoop::End::WAIT_ERROR) {
        KLOGE("fitting_loop timewait error(%s)", strerror(error));
    }
    KLOGE("SheellTempFitting fitting loop thread exit...");
}

void ShellTempFitting::fittingStep() {
    if (fallbackWanted()) {
        updateTempFittingModel();
    }
    if (getAndfitTemp() == 0) {
        checkShellTemp();
        setShellTemp();
        updateGlobalShellTemp();
    }
    mPassRecord.end();
    collectHourly();
}
