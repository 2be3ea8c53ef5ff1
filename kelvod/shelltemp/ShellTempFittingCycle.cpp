// One cycle of the engine: read, evaluate, limit, write, publish, record.

#include <cutils/trace.h>
#include <stdio.h>

#include <algorithm>
#include <set>
#include <utility>

#include "base/FileUtils.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "core/DataCollector.h"
#include "core/KelvoState.h"
#include "shelltemp/FittingEvaluation.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::FittingModel;
using kelvo::kNanosPerSecond;
using kelvo::monotonicNanos;
using kelvo::ThermalZone;
using kelvo::ZoneTemps;

namespace {

constexpr char kShellTempNode[] = "/proc/shell-temp";
constexpr int32_t kReferenceIndex = -1;
constexpr int32_t kWriteStep = 100;         // m°C; a smaller change is not written
constexpr int32_t kInnerHighTemp = 47999;   // m°C, up to here the inner area is corrected
constexpr int32_t kInnerCorrection = 2000;  // m°C
constexpr int32_t kScreenGuardSeconds = 5;  // no smoothing right after "SCREEN:ON"
constexpr int32_t kTraceZeroTemp = 40000;   // m°C that a trace counter shows as 0
constexpr int64_t kCollectPeriod = 3600;    // s

void traceTemps(const std::map<std::string, int32_t>& temps) {
    for (const auto& [name, temp] : temps) {
        atrace_int(ATRACE_TAG_ALWAYS, name.c_str(),
                   kelvo::wrappingSub(temp, kTraceZeroTemp) / kWriteStep);
    }
}

}  // namespace

void ShellTempFitting::readTempForFirstTime() {
    Mutex::Autolock lock(mMutex);
    std::set<int32_t> seen;
    for (const FittingModel& model : mCurrentFittingModel->models) {
        for (const ThermalZone& zone : model.zones) {
            int temp = 0;
            if (seen.insert(zone.index).second && getAndCheckTemp(zone, temp) != 0) {
                KLOGE("Get temp(tz:%d) failed in readTempForFirstTime.!", zone.index);
            }
        }
    }
}

int ShellTempFitting::getAndCheckTemp(const ThermalZone& zone, int& temp) {
    const int32_t state = getThermalTemp(zone, temp);
    if (state == static_cast<int32_t>(kelvo::ZoneState::GOOD)) {
        mAbnormalZones.recordGood(zone);
        return 0;
    }
    recordAbnTZone(zone, temp, state);
    KLOGD("Recording abnormal tz:%d state:%d.", zone.index, state);
    return -1;
}

int ShellTempFitting::recordAbnTZone(const ThermalZone& zone, const int& temp, const int& state) {
    mAbnormalZones.recordFailure(zone, temp, static_cast<kelvo::ZoneState>(state));
    return 0;
}

int ShellTempFitting::getAndfitTemp() {
    kelvo::AmbientRounds* const rounds = ambientRounds();
    Mutex::Autolock lock(mMutex);
    mLastFittingTemps.swap(mFittingTemps);
    mLastFittingTime = mFittingTime;
    mFittingTemps.clear();
    mZoneTemps.clear();
    mPassRecord.begin(mCurrentFittingModel->scene);
    for (const FittingModel& model : mCurrentFittingModel->models) {
        if (fitModel(model) != 0) {
            return -1;
        }
    }
    if (mLastFittingTemps.empty()) {
        mLastFittingTemps = mFittingTemps;
        mLastFittingTime = mFittingTime;
    }
    recordTempData(mZoneTemps);
    fittingAmbientTemp(mZoneTemps, rounds);
    return 0;
}

int ShellTempFitting::fitModel(const FittingModel& model) {
    std::vector<int32_t> temps;
    if (gatherTemps(model, temps) != 0) {
        return -1;
    }
    if (temps.empty()) {
        KLOGI("can't get any tz temp from tzs{name(%s), sz(%u), scene(%s)}", model.name.c_str(),
              static_cast<unsigned>(model.zones.size()), mCurrentFittingModel->scene.c_str());
    }
    if (model.type != kelvo::kLinearModel) {
        KLOGE("fitting model (%d) has not supported!", static_cast<int32_t>(model.type));
        return 0;
    }
    const int32_t value =
            kelvo::evaluateLinearModel(temps, model.coefficients, mPassRecord.terms());
    mFittingTemps[model.index] = value;
    mPassRecord.evaluate(model, temps, value);
    mModelNameByIndex.try_emplace(model.index);
    mZoneTempsByModel[model.name] = std::move(temps);
    if (mInnerSpecialHandling && model.name == "inner") {
        specialHandlingInnerTemp(model.index);
    }
    mFittingTime = kelvo::monotonicSeconds();
    return 0;
}

int ShellTempFitting::gatherTemps(const FittingModel& model, std::vector<int32_t>& temps) {
    temps.reserve(model.zones.size());
    for (const ThermalZone& zone : model.zones) {
        if (const int32_t* const known = mZoneTemps.find(zone.index)) {
            temps.push_back(*known);
            continue;
        }
        int temp = 0;
        if (getAndCheckTemp(zone, temp) != 0) {
            KLOGE("Get temp(tz:%d) failed!", zone.index);
            mPassRecord.fail(model, zone);
            return -1;
        }
        mZoneTemps.add(zone.index, temp);
        temps.push_back(temp);
    }
    return 0;
}

void ShellTempFitting::specialHandlingInnerTemp(int index) {
    int32_t& temp = mFittingTemps[index];
    if (temp <= kInnerHighTemp) {
        KLOGD("do special handling, inner area origin temp:%d", temp);
        temp = kelvo::wrappingSub(temp, kInnerCorrection);
        mPassRecord.correct(temp);
    }
}

int ShellTempFitting::checkShellTemp() {
    Mutex::Autolock lock(mMutex);
    mPassRecord.beginOutputs(mFittingTemps);
    capToReference();
    if (!screenJustTurnedOn()) {
        limitJumps();
    }
    return 0;
}

void ShellTempFitting::capToReference() {
    const auto reference = mFittingTemps.find(kReferenceIndex);
    if (reference == mFittingTemps.end()) {
        return;
    }
    for (auto& [index, temp] : mFittingTemps) {
        if (index >= 0 && kelvo::exceedsReference(temp, reference->second)) {
            KLOGE("index:%d, temp:%d", index, temp);
            temp = reference->second;
            mPassRecord.cap(index, temp);
        }
    }
}

bool ShellTempFitting::screenJustTurnedOn() {
    Mutex::Autolock lock(mLoop.mutex());
    if (kelvo::wrappingSub(mFittingTime, mScreenOnTime) > kScreenGuardSeconds) {
        return false;
    }
    KLOGD("screen just turned on, ignore check %d:%d", mFittingTime, mScreenOnTime);
    return true;
}

void ShellTempFitting::limitJumps() {
    const int32_t seconds = std::max(kelvo::wrappingSub(mFittingTime, mLastFittingTime), 1);
    for (auto& [index, temp] : mFittingTemps) {
        if (index < 0) {
            continue;
        }
        // A value that the cycle before lacks is limited as a rise from 0, so it creeps up.
        const auto last = mLastFittingTemps.find(index);
        const int32_t previous = last == mLastFittingTemps.end() ? 0 : last->second;
        kelvo::DeltaHistory& history = mDeltaHistory[index];
        const kelvo::LimitedValue result = kelvo::limitJump(previous, temp, seconds, history);
        if (result.limited) {
            KLOGD("Shell temp was shaking %d: delta %d (%d->%d), smoothed %d (%d->%d)", index,
                  result.rate, previous, temp, result.limit, temp, result.value);
        }
        mPassRecord.limit(index, previous, seconds, result);
        temp = result.value;
        kelvo::recordDelta(history, result.recorded);
    }
}

int ShellTempFitting::setShellTemp() {
    // Mostly empty: a shell changes slowly.
    std::vector<std::pair<int32_t, int32_t>> changed;
    {
        Mutex::Autolock lock(mMutex);
        for (const auto& [index, temp] : mFittingTemps) {
            if (temp / kWriteStep != mWrittenTemps[index] / kWriteStep) {
                changed.emplace_back(index, temp);
            }
        }
    }
    for (const auto& [index, temp] : changed) {
        if (index >= 0) {
            char line[32];
            snprintf(line, sizeof(line), "%d %d\n", index, temp);
            const int result = kelvo::writeFile(kShellTempNode, line);
            if (result < 0) {
                return result;
            }
        }
        mWrittenTemps[index] = temp;
        mPassRecord.change(index, index >= 0);
        KLOGD("update shell temp %d:%d", index, temp);
    }
    return 0;
}

void ShellTempFitting::updateGlobalShellTemp() {
    std::map<std::string, int32_t> temps;
    {
        Mutex::Autolock lock(mMutex);
        // Ascending: of two outputs of one name the higher index is published.
        for (const auto& [index, temp] : mFittingTemps) {
            temps[mModelNameByIndex[index]] = temp;
        }
    }
    if (atrace_is_tag_enabled(ATRACE_TAG_ALWAYS) != 0) {
        traceTemps(temps);
    }
    KelvoState::getInstance().updateShellTemps(temps, mZoneTempsByModel);
}

void ShellTempFitting::recordTempData(const ZoneTemps& zoneTemps) {
    mRecords.record(zoneTemps, mFittingTemps, mLastFittingTemps);
}

void ShellTempFitting::collectHourly() {
    Mutex::Autolock lock(mMutex);
    const int64_t elapsed = monotonicNanos() - mStartTime;
    // On the exact second only: a cycle that does not land on it skips the hour.
    if (elapsed >= kNanosPerSecond && elapsed / kNanosPerSecond % kCollectPeriod == 0) {
        collectDataLocked();
    }
}

void ShellTempFitting::collectDataLocked() {
    if (mRecords.empty()) {
        return;
    }
    const auto modelName = [this](int32_t index)
                                   NO_THREAD_SAFETY_ANALYSIS { return mModelNameByIndex[index]; };
    const auto zoneName = [this](int32_t index) NO_THREAD_SAFETY_ANALYSIS {
        const std::string type = mZoneTable.typeOf(index);
        return type.empty() ? std::to_string(index) : type;
    };
    Json::Value record(Json::objectValue);
    record["scene"] = mCurrentFittingModel->scene;
    record["package"] = mCurrentPackage;
    record["charging"] = mCharging.load();
    record["timestamp"] = kelvo::getTimestamp();
    record["starttime"] = mRecordStart;
    record["duration"] =
            static_cast<Json::Int64>((monotonicNanos() - mStartTime) / kNanosPerSecond);
    Json::Value fitting(Json::objectValue);
    for (const auto& [index, temp] : mFittingTemps) {
        fitting[modelName(index)] = temp;
    }
    record["fitting"] = fitting;
    record["temp"] = mRecords.zonesAsJson(zoneName);
    record["fitting-delta"] = mRecords.deltasAsJson(modelName);
    KLOGD("DC:\n%s : %s", mRecordDay.c_str(), record.toStyledString().c_str());
    kelvo::DataCollector::getInstance().setData(kelvo::DC_SHELL_TEMP, mRecordDay, record);
}
