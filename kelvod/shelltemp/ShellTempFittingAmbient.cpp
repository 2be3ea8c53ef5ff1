// What the engine gives the ambient estimator in each good cycle.

#include <algorithm>

#include "base/Log.h"
#include "base/UpCall.h"
#include "shelltemp/AmbientRounds.h"
#include "shelltemp/FittingEvaluation.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::AmbientRounds;
using kelvo::FittingModel;
using kelvo::ThermalZone;
using kelvo::ZoneTemps;

namespace {

constexpr char kPowerModel[] = "power";

/** Models of the shell; their temperature is preferred to that of any other model. */
bool isShellModel(const FittingModel& model) {
    return model.name == "front" || model.name == "frame" || model.name == "back";
}

AmbientRounds& preparedRounds() {
    AmbientRounds& rounds = kelvo::UpCall<AmbientRounds>::get();
    rounds.prepare();
    return rounds;
}

}  // namespace

AmbientRounds* ShellTempFitting::ambientRounds() {
    {
        Mutex::Autolock lock(mMutex);
        if (mAmbientFittingModel == nullptr) {
            return nullptr;
        }
    }
    return &preparedRounds();
}

void ShellTempFitting::fittingAmbientTemp(const ZoneTemps& zoneTemps, AmbientRounds* rounds) {
    if (mAmbientFittingModel == nullptr || rounds == nullptr || !rounds->checkAvailableStats()) {
        return;
    }
    const bool hasShellModel = std::ranges::any_of(mAmbientFittingModel->models, isShellModel);
    std::optional<int32_t> temp;
    std::optional<int32_t> power;
    for (const FittingModel& model : mAmbientFittingModel->models) {
        std::optional<int32_t> value;
        if (fitAmbientModel(model, zoneTemps, value) != 0) {
            return;
        }
        if (!value) {
            continue;
        }
        if (model.name == kPowerModel) {
            power = value;
        } else if (!temp && (isShellModel(model) || !hasShellModel)) {
            temp = isShellModel(model) ? ambientShellTemp(model, *value) : *value;
        }
    }
    if (temp && power) {
        rounds->updateAmbientTemp(*temp, *power);
    }
}

int ShellTempFitting::fitAmbientModel(const FittingModel& model, const ZoneTemps& zoneTemps,
                                      std::optional<int32_t>& value) {
    std::vector<int32_t> temps;
    temps.reserve(model.zones.size());
    for (const ThermalZone& zone : model.zones) {
        int temp = 0;
        if (const int32_t* const known = zoneTemps.find(zone.index)) {
            temp = *known;
        } else if (getAndCheckTemp(zone, temp) != 0) {
            KLOGE("Get temp(tz:%d) failed in fittingAmbientTemp!", zone.index);
            return -1;
        }
        temps.push_back(temp);
    }
    if (temps.empty()) {
        KLOGI("can't get any tz temp from tzs{name(%s), sz(%u), scene(%s)}", model.name.c_str(),
              static_cast<unsigned>(model.zones.size()), mAmbientFittingModel->scene.c_str());
    }
    if (model.type != kelvo::kLinearModel) {
        KLOGE("fitting model (%d) has not supported!", static_cast<int32_t>(model.type));
        return 0;
    }
    value = kelvo::evaluateLinearModel(temps, model.coefficients);
    return 0;
}

int32_t ShellTempFitting::ambientShellTemp(const FittingModel& model, int32_t own) const {
    const auto shell =
            std::ranges::find(mCurrentFittingModel->models, model.name, &FittingModel::name);
    if (shell != mCurrentFittingModel->models.end()) {
        const auto fitted = mFittingTemps.find(shell->index);
        if (fitted != mFittingTemps.end()) {
            KLOGD("fittingAmbientTemp temp is configure of shell.");
            return fitted->second;
        }
    }
    KLOGD("fittingAmbientTemp tempOfConf %d", own);
    return own;
}

void ShellTempFitting::updateChargeStatus(bool charging) {
    mCharging = charging;
    switchAmbientFittingScene();
}

void ShellTempFitting::updateFoldStatus(bool folded) {
    mFolded = folded;
    switchAmbientFittingScene();
}

void ShellTempFitting::switchAmbientFittingScene() {
    if (isOldAmbientProject()) {
        return;
    }
    AmbientRounds& rounds = preparedRounds();  // as in ambientRounds()
    Mutex::Autolock lock(mMutex);
    const size_t wanted = (mCharging ? 1u : 0u) + (mFolded ? 2u : 0u);
    const std::string& name = mAmbientModelNames[wanted];
    const auto found = mSceneModels.find(name);
    if (found == mSceneModels.end() || found->second.models.empty()) {
        return;
    }
    mAmbientFittingModel = &found->second;
    rounds.switchFittingParameter(name);
    KLOGD("switch ambient fitting model to %s scene", name.c_str());
}

std::vector<std::string> ShellTempFitting::getAmbientModelList() const {
    Mutex::Autolock lock(mNamesMutex);
    return mAvailableAmbientModels;
}

bool ShellTempFitting::isOldAmbientProject() const {
    return mAmbientChargeModel.load() == nullptr;
}
