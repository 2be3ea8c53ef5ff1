// Statistics of packages and thermal levels.

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "base/UpCall.h"
#include "core/DataCollector.h"
#include "core/KelvoState.h"
#include "core/StateCalls.h"
#include "heat/HeatProcessCenter.h"

using android::Mutex;
using kelvo::DataCollector;

namespace {

constexpr size_t kMostPackages = 20;
constexpr size_t kMostLevels = 25;

/** Names that the central state takes up as packages when the screen switches. */
bool isScreenState(const std::string& package) {
    return package == "SCREEN.OFF" || package == "SCREEN.ON";
}

}  // namespace

void HeatProcessCenter::updateHeatBigRawData(const Heats& heats) {
    const std::string package = KelvoState::getInstance().getCurrentPkgName();
    const int32_t level = kelvo::UpCall<kelvo::StateCalls>::get().thermalStatus();
    Mutex::Autolock lock(mBigDataLock);
    updateCompRawData(package, mPkgHeatsourceData, heats, level, kMostPackages);
    updateCompRawData(std::to_string(level), mHeatLevelSourceData, heats, level, kMostLevels);
    countLevelTime(level);
}

// The time since the last query goes to the level that holds now; none at a last level of 0.
void HeatProcessCenter::countLevelTime(int32_t level) {
    const int64_t now = kelvo::monotonicNanos();
    if (mLastLevel != 0) {
        int32_t& keepTime = mHeatLevelSourceData[std::to_string(level)].keepTime;
        keepTime = kelvo::wrappingAdd(
                keepTime, static_cast<int32_t>((now - mLastLevelTime) / kelvo::kNanosPerSecond));
    }
    mLastLevel = level;
    mLastLevelTime = now;
}

void HeatProcessCenter::collectBigData(const std::string& day) {
    if (mInitInValid) {
        return;
    }
    Mutex::Autolock lock(mBigDataLock);
    handOverPackages(day);
    handOverLevels(day);
    for (int32_t type = 0; type < kComponentTypes; ++type) {
        Mutex::Autolock componentsLock(mComponentsLock);
        componentLocked(type).collectBigData(true);
    }
}

void HeatProcessCenter::handOverPackages(const std::string& day) {
    for (const auto& [package, record] : mPkgHeatsourceData) {
        KLOGE("heatpc PkgHeatsourceData: %s", package.c_str());
        Json::Value data(Json::objectValue);
        data["dayt"] = day;
        data["reTime"] = Json::Int64{KelvoState::getInstance().getPkgRemainTime(package)};
        data["triCount"] = record.count;
        data["avghl"] = kelvo::averageOf(record.levelSum, record.count);
        kelvo::addHeatValues(record, data);
        KLOGE("heatpc PkgHeatsourceData:%s", data.toStyledString().c_str());
        if (!isScreenState(package)) {
            DataCollector::getInstance().setData(kelvo::DC_HEAT_SOURCE, package, data);
        }
    }
    mPkgHeatsourceData.clear();
}

void HeatProcessCenter::handOverLevels(const std::string& day) {
    for (const auto& [level, record] : mHeatLevelSourceData) {
        KLOGE("heatpc mHeatLevelSourceData:%s", level.c_str());
        Json::Value data(Json::objectValue);
        data["thStatus"] = level;
        data["dayt"] = day;
        data["triCount"] = record.count;
        data["keeptime"] = record.keepTime;
        kelvo::addHeatValues(record, data);
        KLOGE("heatpc HeatLevelSourceDatas:%s", data.toStyledString().c_str());
        DataCollector::getInstance().setData(kelvo::DC_HEAT_LEVEL_SOURCE, level, data);
    }
    mHeatLevelSourceData.clear();
}
