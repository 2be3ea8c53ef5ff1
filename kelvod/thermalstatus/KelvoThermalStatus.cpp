#include "thermalstatus/KelvoThermalStatus.h"

#include "base/DecisionObserver.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "core/MessageManager.h"
#include "heat/HeatProcessCenter.h"

ANDROID_SINGLETON_STATIC_INSTANCE(KelvoThermalStatus)

using kelvo::DecisionObserver;
using kelvo::KelvoMessage;
using kelvo::kThermalLevels;
using kelvo::LevelDecision;

namespace {

constexpr int32_t kMilliPerDegree = 1000;
constexpr int32_t kMonitorAbove = 38000;  // m°C
constexpr int32_t kMonitorUpTo = 35999;   // m°C; where it stops
constexpr int32_t kTopLevel = kThermalLevels - 1;

float toCelsius(int32_t temp) {
    return static_cast<float>(temp * 0.001);
}

void post(int32_t what, int32_t status, int32_t value) {
    KelvoMessage message;
    message.what = what;
    message.iParam = status;
    message.iValue = value;
    kelvo::MessageManager::getInstance().sendMessage(message);
}

}  // namespace

KelvoThermalStatus::KelvoThermalStatus() {
    readBroadcastConfig();
}

void KelvoThermalStatus::init() {
    KLOGI("Kelvo thermal status module init...");
    initConfig();
}

int KelvoThermalStatus::reload() {
    {
        android::Mutex::Autolock lock(mMutex);
        mThermalStatus = -1;
        mDefaultTS = {};
    }
    return initConfig();
}

int32_t KelvoThermalStatus::getThermalStatus() const {
    android::Mutex::Autolock lock(mMutex);
    return mThermalStatus;
}

int KelvoThermalStatus::getConfig(std::vector<int>& tripTemps, std::vector<int>& tripDownTemps,
                                  std::vector<int>& statusAreas) const {
    android::Mutex::Autolock lock(mMutex);
    tripTemps = mDefaultTS.tripTemps;
    tripDownTemps = mDefaultTS.tripDownTemps;
    statusAreas = mDefaultTS.statusAreas;
    return 0;
}

int KelvoThermalStatus::dynamicConfig(std::vector<int>& tripTemps, std::vector<int>& tripDownTemps,
                                      std::vector<int>& statusAreas) {
    android::Mutex::Autolock lock(mMutex);
    int taken = 0;
    const auto take = [&taken](std::vector<int>& list, std::vector<int32_t>& member) {
        if (list.size() == kThermalLevels) {
            member = list;
            taken = 1;
        }
    };
    take(tripTemps, mDefaultTS.tripTemps);
    take(tripDownTemps, mDefaultTS.tripDownTemps);
    take(statusAreas, mDefaultTS.statusAreas);
    return taken;
}

void KelvoThermalStatus::onShellTempChanged(int temp) {
    const int32_t now = temp / kMilliPerDegree;
    const int32_t before = mLastShellTemp / kMilliPerDegree;
    if (now != before) {
        callBackThermalStatus(temp);
        switchMonitor(temp);
    }
    if (mBroadcastEnabled) {
        broadcastThermalStatus(temp);
    }
    KLOGD("onShellTempChanged: %d:%d, %d:%d", temp, mLastShellTemp, now, before);
    mLastShellTemp = temp;
}

void KelvoThermalStatus::callBackThermalStatus(int temp) {
    android::Mutex::Autolock lock(mMutex);
    if (!mDefaultTS.hasAllLevels()) {
        KLOGE("thermal_status_model is wrong! tripTemps:%d, tripDownTemps:%lu ",
              static_cast<int>(mDefaultTS.tripTemps.size()), mDefaultTS.tripDownTemps.size());
        return;
    }
    LevelDecision decision;
    decision.temp = temp;
    decision.celsius = toCelsius(temp);
    decision.lastLevelTemp = mLastLevelTemp;
    decision.oldLevel = mLastThermalLevel;
    decision.oldStatus = mThermalStatus;
    updateLevel(decision);
    if (DecisionObserver* const observer = kelvo::decisionObserver()) {
        decision.newLevel = mLastThermalLevel;
        decision.newStatus = mThermalStatus;
        observer->onLevelDecision(decision);
    }
}

void KelvoThermalStatus::updateLevel(LevelDecision& decision) {
    const float celsius = decision.celsius;
    KLOGD("kelvoCallback ctemp:%lf, sz:%d, mLastThermalLevel:%d ", static_cast<double>(celsius),
          static_cast<int>(kThermalLevels), mLastThermalLevel);
    if (keepsLevel(decision)) {
        return;
    }
    const int32_t level = decideLevel(decision);
    mLastLevelTemp = kelvo::saturatingInt32(celsius);
    KLOGD("kelvoCallback mLastThermalLevel:%d, i:%d, mDefaultTS.tripTemps:%d ", mLastThermalLevel,
          level, mDefaultTS.tripTemps[static_cast<size_t>(level)]);
    if (level != mLastThermalLevel) {
        setLevel(level);
    }
}

bool KelvoThermalStatus::keepsLevel(LevelDecision& decision) const {
    const float celsius = decision.celsius;
    const int32_t level = mLastThermalLevel;
    const auto index = static_cast<size_t>(level);
    if (kelvo::isInHoldBand(mDefaultTS, level, celsius)) {
        KLOGD("kelvoCallback mLastThermalLevel: %d, tripTemps:%d, DownThreshold:%d ", level,
              mDefaultTS.tripTemps[index + 1], mDefaultTS.tripDownTemps[index]);
        decision.rule = LevelDecision::Rule::IN_BAND;
        decision.below = {false, level, mDefaultTS.tripDownTemps[index]};
        decision.above = {true, level + 1, mDefaultTS.tripTemps[index + 1]};
        return true;
    }
    if (level == kTopLevel && celsius >= static_cast<float>(mDefaultTS.tripDownTemps[index])) {
        KLOGD("ctemp >= mDefaultTS.tripDownTemps[%d]", kTopLevel);
        decision.rule = LevelDecision::Rule::AT_TOP;
        decision.below = {false, level, mDefaultTS.tripDownTemps[index]};
        return true;
    }
    if (level == 0 && celsius <= static_cast<float>(mDefaultTS.tripDownTemps[0])) {
        KLOGD("ctemp <= mDefaultTS.tripDownTemps[0]");
        decision.rule = LevelDecision::Rule::AT_BOTTOM;
        decision.above = {false, level, mDefaultTS.tripDownTemps[0]};
        return true;
    }
    return false;
}

int32_t KelvoThermalStatus::decideLevel(LevelDecision& decision) const {
    const float celsius = decision.celsius;
    const bool rising = celsius >= static_cast<float>(mLastLevelTemp);
    const auto& thresholds = rising ? mDefaultTS.tripTemps : mDefaultTS.tripDownTemps;
    const int32_t level = kelvo::findThermalLevel(thresholds, celsius);
    if (level > 0 && rising) {
        KLOGD("kelvoCallback mDefaultTS.tripTemps[i]:%d ", thresholds[static_cast<size_t>(level)]);
    } else if (level > 0) {
        KLOGD("kelvoCallback mDefaultTS.tripDownTemps[i]:%d ",
              thresholds[static_cast<size_t>(level)]);
    }
    decision.rule = rising ? LevelDecision::Rule::RISING : LevelDecision::Rule::FALLING;
    if (level > 0) {
        decision.below = {rising, level, thresholds[static_cast<size_t>(level)]};
    }
    if (level < kTopLevel) {
        decision.above = {rising, level + 1, thresholds[static_cast<size_t>(level) + 1]};
    }
    return level;
}

void KelvoThermalStatus::setLevel(int32_t level) {
    mLastThermalLevel = level;
    // Thresholds set by a client may be more than the status values of the configuration.
    if (static_cast<size_t>(level) < mDefaultTS.statusAreas.size()) {
        mThermalStatus = mDefaultTS.statusAreas[static_cast<size_t>(level)];
    }
    post(kelvo::MSG_NOTIFY_THERMAL_STATUS, -1, mThermalStatus);
    KLOGI("kelvoCallback Broadcast thermal status %d", mThermalStatus);
}

void KelvoThermalStatus::switchMonitor(int temp) {
    if (temp > kMonitorAbove && !mMonitorStarted) {
        mMonitorStarted = true;
        HeatProcessCenter::getInstance()->startMonitor();
    } else if (temp <= kMonitorUpTo && mMonitorStarted) {
        mMonitorStarted = false;
        HeatProcessCenter::getInstance()->stopMonitor();
    }
}

void KelvoThermalStatus::broadcastThermalStatus(int temp) {
    const int32_t now = temp / kMilliPerDegree;
    const int32_t before = mLastShellTemp / kMilliPerDegree;
    if ((before < mBroadcastLow && now < mBroadcastLow) ||
        (before > mBroadcastHigh && now > mBroadcastHigh)) {
        KLOGD("out of range, don't send broadcast %d ", now);
        return;
    }
    if (now == before) {
        return;
    }
    post(kelvo::MSG_BROADCAST_THERMAL, getThermalStatus(), temp);
    if (mMonitorStarted) {
        reportHeatSource(temp);
    }
}

void KelvoThermalStatus::reportHeatSource(int temp) {
    const int64_t now = kelvo::monotonicNanos();
    if (kelvo::isHeatSourceDue(mLastHeatSource, temp, now)) {
        mLastHeatSource = {temp, static_cast<int32_t>(now)};
        post(kelvo::MSG_NOTIFY_HEAT_SOURCE, getThermalStatus(), temp);
    }
}
