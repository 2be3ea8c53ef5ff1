// What the fitting thread does.

#include <cutils/trace.h>

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/UpCall.h"
#include "core/KelvoState.h"
#include "shelltemp/AmbientModels.h"
#include "shelltemp/AmbientRounds.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::AmbientRounds;
using kelvo::FittingOutputs;
using kelvo::nameOf;

namespace {

constexpr int32_t kTraceZeroTemp = 40000;  // m°C that a trace counter shows as 0
constexpr int32_t kTraceStep = 100;        // m°C

void traceTemps(const std::map<std::string, int32_t>& temps) {
    for (const auto& [name, temp] : temps) {
        atrace_int(ATRACE_TAG_ALWAYS, name.c_str(),
                   kelvo::wrappingSub(temp, kTraceZeroTemp) / kTraceStep);
    }
}

}  // namespace

// Waits until the constructor that started this thread has returned.
void ShellTempFitting::waitUntilReady() {
    getInstance();
}

void ShellTempFitting::readTempForFirstTime() {
    Mutex::Autolock lock(mMutex);
    mCycle.zones().readTempForFirstTime(mScenes.current());
}

void ShellTempFitting::fittingStep() {
    updateTempFittingModel();
    if (getAndfitTemp() == 0) {
        checkShellTemp();
        setShellTemp();
        updateGlobalShellTemp();
    }
    mPassRecord.end();
    Mutex::Autolock lock(mMutex);
    if (mRecords.hourIsFull()) {
        collectDataLocked();
    }
}

void ShellTempFitting::updateTempFittingModel() {
    Mutex::Autolock lock(mMutex);
    kelvo::AbnormalZones& abnormal = mCycle.zones().abnormal();
    if (!abnormal.badZonesChanged() || mScenes.backupCount() < 1) {
        return;
    }
    // Else the change stays noted, and the next cycle tries again.
    if (mScenes.updateTempFittingModel(abnormal.badZones()) == 0) {
        abnormal.clearBadZonesChanged();
    }
}

int ShellTempFitting::getAndfitTemp() {
    AmbientRounds* const rounds = ambientRounds();
    {
        Mutex::Autolock lock(mMutex);
        if (mCycle.fit(mScenes.current(), mZoneTempsByModel, mPassRecord) != 0) {
            return -1;
        }
        const FittingOutputs& outputs = mCycle.outputs();
        mRecords.recordTempData(mCycle.zones().temps(), outputs.temps(), outputs.lastTemps());
    }
    fittingAmbientTemp(rounds);
    return 0;
}

// Null without an ambient set. Not under the main mutex: the estimator's construction asks for this
// engine in its turn.
AmbientRounds* ShellTempFitting::ambientRounds() {
    {
        Mutex::Autolock lock(mMutex);
        if (mScenes.ambient() == nullptr) {
            return nullptr;
        }
    }
    AmbientRounds& rounds = kelvo::UpCall<AmbientRounds>::get();
    rounds.prepare();
    return &rounds;
}

// Without the main mutex: the estimator asks services, which may take their time.
void ShellTempFitting::fittingAmbientTemp(AmbientRounds* rounds) {
    if (rounds == nullptr || !rounds->checkAvailableStats()) {
        return;
    }
    if (const auto values = ambientValues(); values) {
        rounds->updateAmbientTemp(values->temp, values->power);
    }
}

std::optional<kelvo::AmbientValues> ShellTempFitting::ambientValues() {
    Mutex::Autolock lock(mMutex);
    const kelvo::TempFittingModel* const ambient = mScenes.ambient();
    if (ambient == nullptr) {
        return std::nullopt;
    }
    return kelvo::fitAmbientModels(*ambient, mScenes.current(), mCycle.outputs().temps(),
                                   mCycle.zones());
}

int ShellTempFitting::checkShellTemp() {
    Mutex::Autolock lock(mMutex);
    mCycle.outputs().limit(mLoop.screenOnTime(), mPassRecord);
    return 0;
}

int ShellTempFitting::setShellTemp() {
    kelvo::WrittenTemps::Changes changes;
    {
        Mutex::Autolock lock(mMutex);
        changes = mWrittenTemps.changed(mCycle.outputs().temps());
    }
    return mWrittenTemps.write(changes, mPassRecord);
}

void ShellTempFitting::updateGlobalShellTemp() {
    std::map<std::string, int32_t> temps;
    {
        Mutex::Autolock lock(mMutex);
        // Ascending: of two outputs of one name the higher index is published.
        for (const auto& [index, temp] : mCycle.outputs().temps()) {
            temps[nameOf(mScenes.modelNames(), index)] = temp;
        }
    }
    if (atrace_is_tag_enabled(ATRACE_TAG_ALWAYS) != 0) {
        traceTemps(temps);
    }
    KelvoState::getInstance().updateShellTemps(temps, mZoneTempsByModel);
}

void ShellTempFitting::collectDataLocked() {
    Json::Value record(Json::objectValue);
    record["scene"] = mScenes.current().scene;
    record["package"] = mScene.first;
    record["charging"] = mAmbientScenes.charging();
    record["fitting"] = Json::Value(Json::objectValue);
    for (const auto& [index, temp] : mCycle.outputs().temps()) {
        record["fitting"][nameOf(mScenes.modelNames(), index)] = temp;
    }
    mRecords.handOver(std::move(record), mZoneTable, mScenes.modelNames());
}
