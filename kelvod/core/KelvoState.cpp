#include "core/KelvoState.h"

#include <stdlib.h>
#include <zstatslog.h>

#include "base/JoinValues.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "base/UpCall.h"
#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "core/StateCalls.h"

ANDROID_SINGLETON_STATIC_INSTANCE(KelvoState)

using android::Mutex;
using kelvo::wrappingSub;

namespace {

constexpr int32_t kShellTempAtom = 100001;
constexpr int32_t kTenth = 100;             // m°C
constexpr int64_t kMostAboveBoard = 20000;  // m°C
constexpr int64_t kLoggedStep = 500;        // m°C
constexpr int32_t kNoCurrent = -1;          // of a charger HAL that cannot be reached
constexpr int32_t kNoTemp = std::numeric_limits<int32_t>::min();

kelvo::StateCalls& stateCalls() {
    return kelvo::UpCall<kelvo::StateCalls>::get();
}

/** What the outputs of a cycle amount to. */
struct Outputs {
    bool any = false;           // one other than the board's
    int32_t maximum = kNoTemp;  // m°C; of several equal ones the first name's
    std::string hottest;
    std::string text;  // of the statistics record
};

Outputs summarise(const std::map<std::string, int32_t>& outputs) {
    Outputs result;
    for (const auto& [name, temp] : outputs) {
        if (name == kelvo::model::kBoard) {
            continue;
        }
        if (!result.any || temp > result.maximum) {
            result.maximum = temp;
            result.hottest = name;
        }
        result.any = true;
        result.text.append(name).append(":").append(std::to_string(temp)).append(",");
    }
    return result;
}

}  // namespace

KelvoState::KelvoState() {
    initThrottlingThresholds();
    {
        Mutex::Autolock lock(mBigDataMutex);
        restartRecord(kelvo::getLocalDay());
    }
    initBigDataSetting();
}

// One key for two readers: as an object it holds the thermal-status engine's broadcast band.
void KelvoState::initThrottlingThresholds() {
    Json::Value section;
    kelvo::KelvoConfig::getInstance().getConfig(&section, {kelvo::key::kShellTempBroadcast});
    mThrottlingThresholds = kelvo::readThrottlingThresholds(section);
    for (size_t slot = 0; slot < mThrottlingThresholds.count; ++slot) {
        KLOGD("Broadcast throttling %d: %d", static_cast<int>(slot),
              mThrottlingThresholds.values[slot]);
    }
}

void KelvoState::updateShellTemps(const std::map<std::string, int32_t>& outputs,
                                  const std::map<std::string, std::vector<int32_t>>& zoneTemps) {
    {
        Mutex::Autolock lock(mMutex);
        const auto board = outputs.find(kelvo::model::kBoard);
        if (board != outputs.end()) {
            mBoardTemp = board->second;
        }
        const Outputs summary = summarise(outputs);
        if (isChange(summary.maximum)) {
            mHottestOutput = summary.hottest;
            takeShellTemp(summary.any, summary.maximum);
            notifyTempChanged();
            ZentaFramework::stats_write(kShellTempAtom, summary.text.c_str(), mShellTemp);
            const auto zones = zoneTemps.find(summary.hottest);
            logDetails(summary.any ? summary.maximum : mBoardTemp.load(),
                       zones != zoneTemps.end() ? zones->second : std::vector<int32_t>());
        }
    }
    collectTempData();
}

bool KelvoState::isChange(int32_t maximum) const {
    return maximum / kTenth != mShellTemp / kTenth;
}

void KelvoState::takeShellTemp(bool anyOutput, int32_t maximum) {
    int32_t shell = anyOutput ? maximum : mBoardTemp.load();
    const int32_t board = mBoardTemp;
    KLOGI("Shell temp %d, board +(%d)", shell, wrappingSub(board, shell));
    if (board < shell - kMostAboveBoard) {
        shell = board;
    }
    mShellTemp = shell;
}

void KelvoState::logDetails(int32_t maximum, const std::vector<int32_t>& zoneTemps) {
    const int32_t shell = mShellTemp;
    if (llabs(int64_t{shell} - mLastLoggedTemp) < kLoggedStep) {
        return;
    }
    mLastLoggedTemp = shell;
    const int32_t status = stateCalls().thermalStatus();
    const int32_t board = mBoardTemp;
    const int32_t above = wrappingSub(board, shell);
    const std::string zones = kelvo::joinValues(zoneTemps);
    if (shell != maximum) {
        KLOGE("%d: %s %d %d, +(%d), %d %s", status, mHottestOutput.c_str(), maximum, shell, above,
              board, zones.c_str());
    } else {
        KLOGE("%d: %s %d, +(%d), %d %s", status, mHottestOutput.c_str(), shell, above, board,
              zones.c_str());
    }
}

void KelvoState::notifyTempChanged() const {
    kelvo::MessageManager::getInstance().sendMessage(kelvo::messages::shellTempChanged(mShellTemp));
}

// The message is dropped by the loop, but its sender is part of the daemon's traffic.
void KelvoState::notifyThermalState() const {
    const int32_t status = stateCalls().thermalStatus();
    kelvo::MessageManager::getInstance().sendMessage(kelvo::messages::thermalState(status));
}

void KelvoState::updateDisplayState(int status) {
    {
        Mutex::Autolock lock(mMutex);
        mDisplayState = status;
    }
    // A full stop for the package, a colon for the scene: configurations know both spellings.
    updateState(status != 0 ? "SCREEN.ON" : "SCREEN.OFF");
    stateCalls().enterScene(status != 0 ? "SCREEN:ON" : "SCREEN:OFF");
}

void KelvoState::updateState(const std::string& package) {
    {
        Mutex::Autolock lock(mMutex);
        if (!mPackages.isSwitch(package)) {
            return;
        }
    }
    // Without the mutex: the HAL may take its time, or never answer.
    const int32_t current = stateCalls().batteryCurrentNow();
    Mutex::Autolock lock(mMutex);
    if (!mPackages.isSwitch(package)) {
        return;  // another thread was faster
    }
    const int64_t now = kelvo::monotonicNanos();
    mPackages.setForeground(package, now);
    KLOGI("Update state foreground package: %s", package.c_str());
    mPackages.record(now, current != kNoCurrent ? std::optional(current) : std::nullopt);
}

void KelvoState::setChargingTime() {
    Mutex::Autolock lock(mMutex);
    mChargingStart = kelvo::monotonicNanos();
    KLOGD("setChargingStartTime:%ld", static_cast<long>(mChargingStart));
}

void KelvoState::reload() {
    Mutex::Autolock lock(mMutex);
    initBigDataSetting();
}

std::string KelvoState::getCurrentPkgName() const {
    Mutex::Autolock lock(mMutex);
    return mPackages.foreground();
}

int64_t KelvoState::getPkgRemainTime(const std::string& package) const {
    Mutex::Autolock lock(mMutex);
    return mPackages.secondsOf(package);
}
