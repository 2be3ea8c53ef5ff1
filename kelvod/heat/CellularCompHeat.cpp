#include "heat/CellularCompHeat.h"

#include <map>
#include <utility>

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "core/KelvoState.h"
#include "heat/ComponentType.h"
#include "heat/HeatSection.h"
#include "heat/TableInterpolation.h"
#include "links/QuorixManager.h"
#include "shelltemp/ShellTempFitting.h"

ANDROID_SINGLETON_STATIC_INSTANCE(CellularCompHeat)

using android::Mutex;
using kelvo::CellularSignal;
using kelvo::ModemCurrent;
using kelvo::ModulePower;
using kelvo::QuorixManager;
using kelvo::saturatingInt32;
using kelvo::ThermalZone;

namespace {

constexpr int kNoTemp = -1;

bool feedHasFigure() {
    return QuorixManager::getInstance().getCellular() != ModulePower::kNone;
}

int32_t shellTemp() {
    return KelvoState::getInstance().getTemp();
}

void logSignal(const CellularSignal& signal) {
    if (signal.connType == CellularSignal::kNr) {
        KLOGE("cellularComp 5G connectState:%d,level:%d,ssSinr:%d,ssRsrp:%d,ssRsrq:%d,csiSinr:%d,"
              "csiRsrp:%d,csiRsrq:%d,kelvotemp:%d",
              signal.connectState, signal.level, signal.ssSinr, signal.ssRsrp, signal.ssRsrq,
              signal.csiSinr, signal.csiRsrp, signal.csiRsrq, shellTemp());
    } else {
        KLOGE("cellularComp 4G connectState:%d,level:%d,rssi:%d,rssnr:%d,rsrq:%d,rsrp:%d,"
              "kelvotemp:%d",
              signal.connectState, signal.level, signal.rssi, signal.rssnr, signal.rsrq,
              signal.rsrp, shellTemp());
    }
}

}  // namespace

CellularCompHeat::CellularCompHeat() : ComponentHeat(CELLULAR) {
    initConfig();
}

void CellularCompHeat::initConfig() {
    Json::Value model;
    if (kelvo::readHeatSection(&model, kelvo::key::kCellularModel) != 0) {
        KLOGE("cellularComp get cellar_model failed: %s", model.toStyledString().c_str());
        return;
    }
    takeTable(kelvo::parseModemModel(model));
    findZones(model);
}

// Unlike the other tables, this one keeps the rows before a bad entry.
void CellularCompHeat::takeTable(kelvo::HeatTable<ModemCurrent> table) {
    for (const ModemCurrent& row : table.rows) {
        KLOGD("cellularComp rsrp sample:%f,current4g:%f,current5g:%f",
              static_cast<double>(row.rsrp), static_cast<double>(row.current4G),
              static_cast<double>(row.current5G));
    }
    if (table.badRow) {
        KLOGE("cellularComp cellar_model conf is invalid");
    }
    mTable = std::move(table.rows);
}

void CellularCompHeat::findZones(const Json::Value& model) {
    const kelvo::ZoneList list = ShellTempFitting::getInstance().resolveZones(model);
    for (const ThermalZone& zone : list.zones) {
        KLOGE("cellularComp specifiedTz: %s, index:%d", zone.name.c_str(), zone.index);
    }
    if (list.unknownType) {
        KLOGE("cellularComp can not find tz: %s", list.unknownType->c_str());
    }
    if (const auto chosen = kelvo::chooseModemZones(model, list).zones) {
        mTzPa = chosen->amplifier;
        mTzBase = chosen->base;
        mTzFound = true;
    }
}

int CellularCompHeat::getTzTemp(const ThermalZone& zone) const {
    if (!mTzFound) {
        KLOGE("specified Tz is empty!");
        return kNoTemp;
    }
    // Set whenever the node gave a number: one out of range is a temperature here, too.
    int temp = kNoTemp;
    ShellTempFitting::getInstance().getThermalTemp(zone, temp);
    return temp;
}

int CellularCompHeat::processRawSample() {
    const int reported = QuorixManager::getInstance().getCellular();
    const int energy = reported != ModulePower::kNone ? reported : 0;
    const int paTemp = getTzTemp(mTzPa);
    const int baseTemp = getTzTemp(mTzBase);
    const int difference = kelvo::wrappingSub(paTemp, baseTemp);
    KLOGE("cellularComp processRawSample tempDiff=%d, mTzPa=%d, mTzBase=%d", difference, paTemp,
          baseTemp);
    const Mutex::Autolock lock(mMutex);
    pushSample({CELLULAR, static_cast<float>(energy), kelvo::monotonicSeconds(), difference},
               reported != ModulePower::kNone ? kUsageFeed : "nothing reported",
               {{"tempDiff", difference}});
    KLOGD("cellularComp processRawSample energy=%d", energy);
    return 0;
}

void CellularCompHeat::processCellularSignal(const std::string& text) {
    if (feedHasFigure()) {
        return;
    }
    const Mutex::Autolock lock(mMutex);
    KLOGD("cellularComp  CellularSignal: %s", text.c_str());
    mSignal = kelvo::parseCellularSignal(text);
    logSignal(mSignal);
}

void CellularCompHeat::processCellularSpeed(const std::string& text) {
    if (feedHasFigure()) {
        return;
    }
    const Mutex::Autolock lock(mMutex);
    const kelvo::Traffic traffic = kelvo::parseTraffic(text);
    KLOGD("cellularComp CellularSpeed transmit:%ld,receive:%ld,mobileTx:%ld,mobileRx:%ld",
          static_cast<long>(traffic.transmit), static_cast<long>(traffic.receive),
          static_cast<long>(traffic.mobileTx), static_cast<long>(traffic.mobileRx));
    mSpeed = kelvo::mobileTraffic(traffic);
    logSpeed();
    const int power = mSpeed >= 1 ? compCellPower() : 0;
    KLOGD("cellularComp tempPower:%d", power);
    pushSample({CELLULAR, static_cast<float>(power), kelvo::monotonicSeconds()},
               "signal and traffic", {{"speed", mSpeed}, {"level", mSignal.level}});
}

void CellularCompHeat::logSpeed() {
    KLOGD("cellularComp Cellularconntype:%d,speed:%ld,strength:%d,ssSinr:%d,ssRsrp:%d,ssRsrq:%d,"
          "csiSinr:%d,csiRsrp:%d,csiRsrq:%d,kelvotemp:%d",
          mSignal.connType, static_cast<long>(mSpeed), mSignal.level, mSignal.ssSinr,
          mSignal.ssRsrp, mSignal.ssRsrq, mSignal.csiSinr, mSignal.csiRsrp, mSignal.csiRsrq,
          shellTemp());
}

int CellularCompHeat::compCellPower() {
    const bool nr = mSignal.connType == CellularSignal::kNr;
    return saturatingInt32(interpolateTable(
            mTable, &ModemCurrent::rsrp, nr ? &ModemCurrent::current5G : &ModemCurrent::current4G,
            static_cast<float>(nr ? mSignal.ssRsrp : mSignal.rsrp)));
}

int CellularCompHeat::getHeatContribution() {
    const Mutex::Autolock lock(mMutex);
    if (mContributionCoefficient == 0.0F) {
        mContributionCoefficient = configuredCoefficient();
        KLOGD("cellularComp CellularCompHeat start:%f",
              static_cast<double>(mContributionCoefficient));
    }
    const int result = mSamples->getEnergyToTemp(mContributionCoefficient);
    KLOGD("cellularComp getHeatContribution: coeffs=%f, result=%d",
          static_cast<double>(mContributionCoefficient), result);
    return result;
}

std::shared_ptr<HeatInfo> CellularCompHeat::getHeatInfo() {
    const Mutex::Autolock lock(mMutex);
    if (mReportCoefficient == 0.0F) {
        mReportCoefficient = configuredCoefficient();
    }
    const auto coefficient = static_cast<double>(mReportCoefficient);
    // The conversion drops the samples that these two are of.
    const double slope = mSamples->getSlopeOf();
    const int average = mSamples->getAvgTemp();
    const int result = mSamples->getEnergyToTemp(mReportCoefficient);
    KLOGD("cellularComp getHeatInfo: coeffs=%f, avgHeat=%d, SlopOf=%lf, avgNtcTemp=%d", coefficient,
          result, slope, average);
    if (result < 1) {
        return HeatInfo::withoutKeyFactors(result);
    }
    const float power = mReportCoefficient * static_cast<float>(result);
    return std::make_shared<HeatInfo>(
            result, std::map<std::string, int>{{"NtcSlopOf", saturatingInt32(slope)},
                                               {"avgDiffTempPerMin", average},
                                               {"Power", saturatingInt32(power)}});
}
