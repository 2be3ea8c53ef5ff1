#include "shelltemp/FittingScenes.h"

#include <algorithm>
#include <utility>

#include "base/Log.h"
#include "config/ConfigNames.h"
#include "shelltemp/FittingModelParser.h"

namespace kelvo {

namespace {

constexpr char kBatteryZone[] = "battery";  // part of the type of a battery's zone

}  // namespace

void FittingScenes::getFittingModels(const Json::Value& root, const ZoneTable& table,
                                     int32_t zoneCount) {
    if (!root.isObject()) {
        return;
    }
    const FittingModelParser parser(table, zoneCount);
    for (const std::string& name : root.getMemberNames()) {
        TempFittingModel set = parser.parseScene(name, root[name], mModelNames);
        if (set.models.empty()) {
            KLOGI("%s, current scene:%s, can not find any fitting model, go on...", __func__,
                  name.c_str());
            continue;
        }
        storeScene(std::move(set));
    }
}

void FittingScenes::storeScene(TempFittingModel set) {
    const std::string scene = set.scene;
    mSets[scene] = std::move(set);
    if (scene.starts_with(scene::kBackupPrefix)) {
        mBackups.push_back({scene});
        mBackupCount = static_cast<int32_t>(mBackups.size());
        KLOGD("find backup temp fitting model(scene:%s), list size %lu.", scene.c_str(),
              mBackups.size());
    }
}

const TempFittingModel* FittingScenes::find(const std::string& scene) const {
    const auto found = mSets.find(scene);
    return found == mSets.end() ? nullptr : &found->second;
}

const TempFittingModel* FittingScenes::getFittingScene(const std::string& scene) const {
    const TempFittingModel* const set = find(scene);
    if (set != nullptr) {
        KLOGE("get scene %s success", scene.c_str());
    }
    return set;
}

void FittingScenes::dump() const {
    int sceneNumber = 0;
    for (const auto& [name, set] : mSets) {
        KLOGD("temp fm scene-%d: %s", sceneNumber, name.c_str());
        KLOGD("\tfm-%d: %s", sceneNumber, set.scene.c_str());
        ++sceneNumber;
        for (const FittingModel& model : set.models) {
            KLOGD("\t\tname: %s, index %d", model.name.c_str(), model.index);
            KLOGD("\t\tfactor: model type %d\t\t\tcoeffs:", static_cast<int32_t>(model.type));
            for (const double coefficient : model.coefficients) {
                KLOGD("\t\t\t%lf", coefficient);
            }
        }
    }
}

void FittingScenes::chooseStartingModels(bool ambientCharge) {
    if (ambientCharge) {
        mAmbient = scene::kAmbientCharge;
    } else if (getFittingScene(scene::kAmbient) != nullptr) {
        mAmbient = scene::kAmbient;
    }
    if (!has(scene::kDefault)) {
        KLOGD("%s, mDefaultFittingModel has not been inited successfully, use default scene model",
              "ShellTempFitting");
        mSets[scene::kDefault].scene = scene::kDefault;
    }
    mCurrent = scene::kDefault;
    if (current().models.empty() && mBackupCount >= 1) {
        KLOGD("%s, current fitting model is empty, use backup front model", "ShellTempFitting");
        useBackup(mBackups.front());
    }
}

int FittingScenes::switchFittingScene(const std::string& scene) {
    const TempFittingModel* const set = find(scene);
    if (set == nullptr || set->models.empty()) {
        KLOGE("switch to scene %s failed, keep origin", scene.c_str());
        return 0;
    }
    mCurrent = scene;
    mCurrentIsBackup = false;
    KLOGE("switch to scene %s success", scene.c_str());
    return 1;
}

bool FittingScenes::switchAmbientScene(const std::string& scene) {
    const TempFittingModel* const set = find(scene);
    if (set == nullptr || set->models.empty()) {
        return false;
    }
    mAmbient = scene;
    return true;
}

const TempFittingModel& FittingScenes::current() const {
    static const TempFittingModel none;  // before the starting models are chosen
    const TempFittingModel* const set = find(mCurrent);
    return set == nullptr ? none : *set;
}

FittingModelKind FittingScenes::currentKind() const {
    for (const FittingModel& model : current().models) {
        if (model.index < 0 || model.zones.empty()) {
            continue;
        }
        if (model.zones.size() > 1) {
            return FittingModelKind::SEVERAL_ZONES;
        }
        return model.zones.front().name.find(kBatteryZone) != std::string::npos
                       ? FittingModelKind::BATTERY_ZONE
                       : FittingModelKind::OTHER_ZONE;
    }
    return FittingModelKind::NONE;
}

const TempFittingModel* FittingScenes::ambient() const {
    return mAmbient.empty() ? nullptr : find(mAmbient);
}

void FittingScenes::useBackup(const Backup& backup) {
    mCurrent = backup.scene;
    mCurrentIsBackup = true;
}

int FittingScenes::updateTempFittingModel(const std::vector<int32_t>& badZones) {
    if (updateBackupFmList(badZones) != 0) {
        return -1;
    }
    const auto healthy = std::find_if(mBackups.begin(), mBackups.end(),
                                      [](const Backup& backup) { return backup.enabled; });
    if (healthy == mBackups.end()) {
        return -1;
    }
    useBackup(*healthy);
    KLOGI("update current fitting model(scene:%s).", mCurrent.c_str());
    return 0;
}

int FittingScenes::updateBackupFmList(const std::vector<int32_t>& badZones) {
    if (mBackups.empty() || badZones.empty()) {
        KLOGE("The list should not be empty!");
        return -1;
    }
    const int32_t bad = badZones.back();
    for (Backup& backup : mBackups) {
        if (!backup.enabled) {
            KLOGD("The fitting model(scene:%s) has been disabled, continue.", backup.scene.c_str());
        } else if (firstModelUses(backup.scene, bad)) {
            backup.enabled = false;
            --mBackupCount;
            KLOGI("disable the fitting model(scene:%s, bad tzone:%d), available fittimg models %d.",
                  backup.scene.c_str(), bad, mBackupCount);
        }
    }
    if (mBackupCount >= 1) {
        return 0;
    }
    KLOGD("no temp fitting model is available.");
    return -1;
}

// The other models of the set are not examined.
bool FittingScenes::firstModelUses(const std::string& scene, int32_t zone) const {
    const std::vector<ThermalZone>& zones = find(scene)->models.front().zones;
    return std::any_of(zones.begin(), zones.end(),
                       [zone](const ThermalZone& used) { return used.index == zone; });
}

void FittingScenes::restoreBackup() {
    const bool kept = std::any_of(mBackups.begin(), mBackups.end(), [this](const Backup& backup) {
        return backup.scene == mCurrent;
    });
    if (mCurrentIsBackup && !kept) {
        mCurrent = scene::kDefault;
        mCurrentIsBackup = false;
    }
}

}  // namespace kelvo
