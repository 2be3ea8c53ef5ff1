// How the engine reads its configuration and picks the models to start with.

#include <cutils/properties.h>

#include "base/Log.h"
#include "config/KelvoConfig.h"
#include "links/HealthInfoNotifier.h"
#include "shelltemp/FittingModelParser.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::KelvoConfig;

namespace {

constexpr char kModelsKey[] = "shell_temp_fitting_model";
constexpr char kIntervalProperty[] = "persist.sys.shelltemp.interval";

int32_t readAbnormalLimit() {
    Json::Value limit;
    if (KelvoConfig::getInstance().getConfig(&limit, {"max_abn_tz_detect_times"}) == 0 &&
        limit.isInt()) {
        return limit.asInt();
    }
    KLOGD("use default abnormal tzone recording times %d", kelvo::AbnormalZones::kDefaultLimit);
    return kelvo::AbnormalZones::kDefaultLimit;
}

}  // namespace

int ShellTempFitting::initConfig() {
    Mutex::Autolock lock(mMutex);
    return initConfigLocked();
}

int ShellTempFitting::initConfigLocked() {
    const int32_t zoneCount = initThermalZones();
    Json::Value root;
    if (KelvoConfig::getInstance().getConfig(&root, {kModelsKey}) != 0) {
        KLOGD("no shell temp fitting model");
        return -1;
    }
    KLOGE("load normal fitting model");
    mAbnormalZones.setLimit(readAbnormalLimit());
    getFittingModels(root, zoneCount);
    if (mSceneModels.empty()) {
        KLOGE("can't find any valid fitting model, exit.");
        return -1;
    }
    // Not cleared before: a reload lists the names once more.
    Mutex::Autolock lock(mNamesMutex);
    for (const std::string& name : mAmbientModelNames) {
        if (mSceneModels.contains(name)) {
            mAvailableAmbientModels.push_back(name);
        }
    }
    dumpModels();
    return 0;
}

int32_t ShellTempFitting::initThermalZones() {
    return mZoneTable.discover();
}

void ShellTempFitting::getFittingModels(Json::Value& root, int zoneCount) {
    if (!root.isObject()) {
        return;
    }
    const kelvo::FittingModelParser parser(mZoneTable, zoneCount);
    for (const std::string& name : root.getMemberNames()) {
        FittingSet set = parser.parseScene(name, root[name], mModelNameByIndex);
        if (set.models.empty()) {
            KLOGI("%s, current scene:%s, can not find any fitting model, go on...", __func__,
                  name.c_str());
            continue;
        }
        storeScene(std::move(set));
    }
}

void ShellTempFitting::storeScene(FittingSet set) {
    if (set.scene.starts_with("backup_")) {
        mBackupFittingModels.push_back(set);
        mBackupCount = static_cast<int32_t>(mBackupFittingModels.size());
        KLOGD("find backup temp fitting model(scene:%s), list size %lu.", set.scene.c_str(),
              mBackupFittingModels.size());
    }
    const std::string scene = set.scene;
    const auto stored = mSceneModels.insert_or_assign(scene, std::move(set)).first;
    if (scene == "default") {
        mDefaultFittingModel = &stored->second;
    }
}

void ShellTempFitting::dumpModels() const {
    int sceneNumber = 0;
    for (const auto& [name, set] : mSceneModels) {
        KLOGD("temp fm scene-%d: %s", sceneNumber, name.c_str());
        KLOGD("\tfm-%d: %s", sceneNumber, set.scene.c_str());
        ++sceneNumber;
        for (const kelvo::FittingModel& model : set.models) {
            KLOGD("\t\tname: %s, index %d", model.name.c_str(), model.index);
            KLOGD("\t\tfactor: model type %d\t\t\tcoeffs:", static_cast<int32_t>(model.type));
            for (const double coefficient : model.coefficients) {
                KLOGD("\t\t\t%lf", coefficient);
            }
        }
    }
}

int ShellTempFitting::initSpecifiedConfig() {
    Json::Value info;
    if (KelvoConfig::getInstance().getConfig(&info, {"specified_tempzone_info"}) != 0) {
        KLOGD("No specified_tempzone_info config.");
        return -1;
    }
    mSpecifiedZones.configure(resolveZones(info));
    return 0;
}

int ShellTempFitting::initTsensorConfig() {
    Json::Value info;
    if (KelvoConfig::getInstance().getConfig(&info, {"tsensor_tempzone_info"}) != 0) {
        KLOGD("No tsensor_tempzone_info config.");
        return -1;
    }
    mTsensors.configure(resolveZones(info));
    return 0;
}

kelvo::ZoneList ShellTempFitting::resolveZones(const Json::Value& info) {
    Mutex::Autolock lock(mMutex);
    if (mZoneTable.empty()) {
        initThermalZones();
    }
    return kelvo::resolveZoneList(info, mZoneTable);
}

ShellTempFitting::FittingSet* ShellTempFitting::getFittingScene(const std::string& scene) {
    Mutex::Autolock lock(mMutex);
    const auto found = mSceneModels.find(scene);
    if (found == mSceneModels.end()) {
        return nullptr;
    }
    KLOGE("get scene %s success", scene.c_str());
    return &found->second;
}

void ShellTempFitting::chooseStartingModels() {
    FittingSet* const ambientCharge = getFittingScene("ambient_charge");
    mCharging = HealthInfoNotifier::getInstance().getOnChargeStats();
    FittingSet* const ambient =
            mCharging && ambientCharge != nullptr ? ambientCharge : getFittingScene("ambient");
    Mutex::Autolock lock(mMutex);
    if (mDefaultFittingModel == nullptr) {
        KLOGD("%s, mDefaultFittingModel has not been inited successfully, use default scene model",
              "ShellTempFitting");
        mDefaultFittingModel = &mSceneModels["default"];
        mDefaultFittingModel->scene = "default";
    }
    mCurrentFittingModel = mDefaultFittingModel;
    if (mCurrentFittingModel->models.empty() && mBackupCount >= 1) {
        KLOGD("%s, current fitting model is empty, use backup front model", "ShellTempFitting");
        mCurrentFittingModel = &mBackupFittingModels.front();
    }
    mAmbientChargeModel = ambientCharge;
    mAmbientFittingModel = ambient;
}

void ShellTempFitting::readInterval() {
    mConfiguredInterval = property_get_int32(kIntervalProperty, kDefaultInterval);
    if (mConfiguredInterval != kDefaultInterval) {
        if (mConfiguredInterval < 1) {
            KLOGE("Wrong fitting interval %d with property, reset to default", mConfiguredInterval);
            mConfiguredInterval = kDefaultInterval;
        }
        KLOGE("Get shell temp fitting interval %d", mConfiguredInterval);
    }
    Mutex::Autolock lock(mLoop.mutex());
    mLoop.setIntervalLocked(mConfiguredInterval);
}
