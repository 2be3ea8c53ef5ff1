#include "heat/DisplayCompHeat.h"

#include <map>
#include <string>

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "heat/ComponentType.h"
#include "heat/DisplayModel.h"
#include "links/QuorixManager.h"

using kelvo::ModulePower;
using kelvo::QuorixManager;
using kelvo::saturatingInt32;

int DisplayCompHeat::processRawSample() {
    const int reported = QuorixManager::getInstance().getDisplay();
    const int energy = reported != ModulePower::kNone
                               ? reported
                               : saturatingInt32(DisplayModel::getInstance().getDisplayPower());
    pushSample({DISPLAY, static_cast<float>(energy), kelvo::monotonicSeconds()},
               reported != ModulePower::kNone ? kUsageFeed : "brightness and frame rate");
    KLOGE("displayComp processRawSample energy=%d", energy);
    return 0;
}

int DisplayCompHeat::getHeatContribution() {
    if (mCoefficient == 0.0F) {
        mCoefficient = configuredCoefficient();
        KLOGD("displayComp DisplayCompHeat start:%f", static_cast<double>(mCoefficient));
    }
    return convert();
}

int DisplayCompHeat::convert() {
    const int result = mSamples->getEnergyToTemp(mCoefficient);
    KLOGD("displayComp getHeatContribution mCoeffs %f, %d", static_cast<double>(mCoefficient),
          result);
    return result;
}

std::shared_ptr<HeatInfo> DisplayCompHeat::getHeatInfo() {
    auto info = getOwnHeatInfo();
    askForFactors(*info);
    return info;
}

std::shared_ptr<HeatInfo> DisplayCompHeat::getOwnHeatInfo() {
    if (mCoefficient == 0.0F) {
        mCoefficient = configuredCoefficient();
        KLOGD("displayComp getHeatContribution start:%f", static_cast<double>(mCoefficient));
    }
    const int result = convert();
    if (result < 1) {
        return HeatInfo::withoutKeyFactors(result);
    }
    return std::make_shared<HeatInfo>(
            result, std::map<std::string, int>{
                            {"Power", saturatingInt32(mCoefficient * static_cast<float>(result))}});
}

void DisplayCompHeat::askForFactors(HeatInfo& info) {
    if (info.heat < 1) {
        return;
    }
    int level = 0;
    DisplayModel::getInstance().getBrightness(level);
    info.keyFactor["Brightness"] = level;
}
