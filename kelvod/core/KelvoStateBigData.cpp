// Daily statistics and the packages' charges.

#include <stdlib.h>

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/ProcessId.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "config/ConfigNames.h"
#include "config/ConfigVersion.h"
#include "config/KelvoConfig.h"
#include "core/DataCollector.h"
#include "core/KelvoMessages.h"
#include "core/KelvoState.h"
#include "core/MessageManager.h"

using android::Mutex;
using kelvo::DataCollector;
using kelvo::KelvoConfig;

namespace {

constexpr int64_t kPidSpread = 246411243;
constexpr int32_t kThousand = 1000;
constexpr int kKeptDays = 7;
constexpr int64_t kNanosPerHour = 3600 * kelvo::kNanosPerSecond;

void seedRandom() {
    const auto wall = static_cast<uint64_t>(kelvo::wallClockSeconds());
    const auto monotonic = static_cast<uint64_t>(kelvo::monotonicNanos());
    const auto spread = static_cast<uint64_t>(kelvo::processIdForSeed() * kPidSpread);
    srandom(static_cast<uint32_t>(wall * monotonic + spread));
}

kelvo::BigDataConfig readConfig() {
    Json::Value section;
    KelvoConfig& config = KelvoConfig::getInstance();
    // The way to a member, because the store says when it leads through something else.
    if (config.getConfig(&section, {kelvo::key::kBigData, kelvo::key::kEnable}) != 0) {
        return {};
    }
    config.getConfig(&section, {kelvo::key::kBigData});
    return kelvo::readBigDataConfig(section);
}

}  // namespace

void KelvoState::initBigDataSetting() {
    Mutex::Autolock lock(mBigDataMutex);
    seedRandom();
    // Only the period returns to its default; what was on stays on when "enable" goes away.
    mSamplePeriod = kelvo::kDefaultSamplePeriod;
    const kelvo::BigDataConfig config = readConfig();
    if (!config.enabled) {
        return;
    }
    mBigDataEnabled = true;
    mThermalOffThousandth = config.thermalOffThousandth.value_or(mThermalOffThousandth);
    mSamplePeriod = config.samplePeriod;
    KLOGI("Big data collection has been enabled, sample period %d, thermal off thousandth %d",
          mSamplePeriod, mThermalOffThousandth);
}

void KelvoState::collectTempData() {
    Mutex::Autolock lock(mBigDataMutex);
    const int32_t now = kelvo::monotonicSeconds();
    if (!mBigDataEnabled || now - mRecord.lastSample < mSamplePeriod) {
        return;
    }
    const std::string day = kelvo::getLocalDay();
    if (day != mRecord.day) {
        startNewDay(day);
    }
    mRecord.shell.add(mShellTemp);
    mRecord.board.add(mBoardTemp);
    mRecord.lastSample = now;
}

void KelvoState::startNewDay(const std::string& day) {
    DataCollector::getInstance().reset(kKeptDays);
    updateTempDataCollectionLocked();
    restartRecord(day);
    if (mThermalOffThousandth >= 1) {
        mSampling = labs(random()) % kThousand < mThermalOffThousandth;
        notifyThermalState();
    }
    updateCollingDeviceDataCollection(day);
    KLOGI("Thermal %s", mSampling ? "off" : "on");
}

void KelvoState::restartRecord(const std::string& day) {
    mRecord = {};
    mRecord.day = day;
    mRecord.time = kelvo::getTimestamp();
    mRecord.startTime = kelvo::monotonicSeconds();
    mRecord.lastSample = mRecord.startTime;
}

void KelvoState::updateCollingDeviceDataCollection(const std::string& day) const {
    kelvo::MessageManager::getInstance().sendMessage(kelvo::messages::collectBigData(day, true));
}

void KelvoState::getTempDataCollectionLocked(Json::Value& out) const {
    out["thermal"] = !mSampling;
    mRecord.write(out);
    out[kelvo::key::kConfigVersion] = kelvo::configVersion();
}

Json::Value KelvoState::getTempDataCollection() const {
    Mutex::Autolock lock(mBigDataMutex);
    Json::Value record(Json::objectValue);
    getTempDataCollectionLocked(record);
    return record;
}

void KelvoState::updateTempDataCollection() {
    Mutex::Autolock lock(mBigDataMutex);
    updateTempDataCollectionLocked();
}

void KelvoState::updateTempDataCollectionLocked() {
    Json::Value record(Json::objectValue);
    getTempDataCollectionLocked(record);
    KLOGI("DC:\n%s : %s", mRecord.day.c_str(), record.toStyledString().c_str());
    DataCollector::getInstance().setData(kelvo::DC_THERMAL, mRecord.day, record);
}

void KelvoState::getPkgBatteryBigDataRecord(const std::string& key, bool clear) {
    Mutex::Autolock lock(mMutex);
    Json::Value record(Json::objectValue);
    for (const auto& [package, charge] : mPackages.charges()) {
        KLOGD("getBigDataRecord %s:%d ", package.c_str(), charge);
        const int64_t seconds = mPackages.countedSecondsOf(package);
        if (seconds >= 1) {
            record[package] =
                    std::to_string(kelvo::wrappingMul64(charge, kNanosPerHour) / seconds) + "_" +
                    std::to_string(charge);
        }
    }
    DataCollector::getInstance().setData(kelvo::DC_PKG_CURRENT, key + "_pkgBattery", record);
    if (clear) {
        mPackages.clear();
    }
}
