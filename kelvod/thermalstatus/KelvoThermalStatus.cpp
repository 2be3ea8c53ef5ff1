#include "thermalstatus/KelvoThermalStatus.h"

#include "base/DecisionObserver.h"
#include "base/Log.h"
#include "base/Time.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "heat/HeatProcessCenter.h"

ANDROID_SINGLETON_STATIC_INSTANCE(KelvoThermalStatus)

using kelvo::DecisionObserver;
using kelvo::kThermalLevels;
using kelvo::LevelDecision;

namespace {

constexpr int32_t kMilliPerDegree = 1000;
constexpr int32_t kMonitorAbove = 38000;  // m°C
constexpr int32_t kMonitorUpTo = 35999;   // m°C; where it stops

void post(const kelvo::KelvoMessage& message) {
    kelvo::MessageManager::getInstance().sendMessage(message);
}

}  // namespace

KelvoThermalStatus::KelvoThermalStatus() {
    initBroadcast();
}

void KelvoThermalStatus::init() {
    KLOGI("Kelvo thermal status module init...");
    initConfig();
}

int KelvoThermalStatus::reload() {
    {
        android::Mutex::Autolock lock(mMutex);
        mLevel.status = -1;
        mDefaultTS = {};
    }
    return initConfig();
}

int32_t KelvoThermalStatus::getThermalStatus() const {
    android::Mutex::Autolock lock(mMutex);
    return mLevel.status;
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
    const LevelDecision decision = kelvo::decideLevel(mDefaultTS, mLevel, temp);
    logDecision(decision);
    apply(decision);
    if (DecisionObserver* const observer = kelvo::decisionObserver()) {
        observer->onLevelDecision(decision);
    }
}

void KelvoThermalStatus::logDecision(const LevelDecision& decision) const {
    using Rule = LevelDecision::Rule;
    const int32_t level = decision.oldLevel;
    KLOGD("kelvoCallback ctemp:%lf, sz:%d, mLastThermalLevel:%d ",
          static_cast<double>(decision.celsius), static_cast<int>(kThermalLevels), level);
    switch (decision.rule) {
        case Rule::IN_BAND:
            KLOGD("kelvoCallback mLastThermalLevel: %d, tripTemps:%d, DownThreshold:%d ", level,
                  decision.above->celsius, decision.below->celsius);
            return;
        case Rule::AT_TOP:
            KLOGD("ctemp >= mDefaultTS.tripDownTemps[%d]", level);
            return;
        case Rule::AT_BOTTOM:
            KLOGD("ctemp <= mDefaultTS.tripDownTemps[0]");
            return;
        case Rule::RISING:
            if (decision.below) {
                KLOGD("kelvoCallback mDefaultTS.tripTemps[i]:%d ", decision.below->celsius);
            }
            break;
        case Rule::FALLING:
            if (decision.below) {
                KLOGD("kelvoCallback mDefaultTS.tripDownTemps[i]:%d ", decision.below->celsius);
            }
            break;
    }
    KLOGD("kelvoCallback mLastThermalLevel:%d, i:%d, mDefaultTS.tripTemps:%d ", level,
          decision.newLevel, mDefaultTS.tripTemps[static_cast<size_t>(decision.newLevel)]);
}

void KelvoThermalStatus::apply(const LevelDecision& decision) {
    mLevel = decision.outcome();
    if (decision.changesLevel()) {
        post(kelvo::messages::notifyThermalStatus(mLevel.status));
        KLOGI("kelvoCallback Broadcast thermal status %d", mLevel.status);
    }
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
    if (mBroadcastBand.isOutside(before, now)) {
        KLOGD("out of range, don't send broadcast %d ", now);
        return;
    }
    if (now == before) {
        return;
    }
    post(kelvo::messages::broadcastThermal(getThermalStatus(), temp));
    if (mMonitorStarted) {
        reportHeatSource(temp);
    }
}

void KelvoThermalStatus::reportHeatSource(int temp) {
    const int64_t now = kelvo::monotonicNanos();
    if (kelvo::isHeatSourceDue(mLastHeatSource, temp, now)) {
        mLastHeatSource = {temp, static_cast<int32_t>(now)};
        post(kelvo::messages::notifyHeatSource(getThermalStatus(), temp));
    }
}
