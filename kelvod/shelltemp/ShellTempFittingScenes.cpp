// What makes the engine change its cadence, its models or its configuration.

#include <algorithm>
#include <cstdio>

#include "base/Log.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "config/KelvoConfig.h"
#include "links/HealthInfoNotifier.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::KelvoConfig;

namespace {

constexpr int32_t kScreenOffInterval = 5;  // s, at least

}  // namespace

int ShellTempFitting::updateScene(const std::string& scene, bool flag, int) {
    Mutex::Autolock lock(mMutex);
    if (scene == mCurrentPackage && flag == mCurrentPackageFlag) {
        return -1;
    }
    mCurrentPackage = scene;
    mCurrentPackageFlag = flag;
    int32_t interval = 0;
    applyCadence(scene, &interval);
    mLoop.wake();
    const std::string today = kelvo::getLocalDay();
    if (today != mRecordDay) {
        collectDataLocked();
        mRecordDay = today;
        mRecords.clear();
        mRecordStart = kelvo::getTimestamp();
        mStartTime = kelvo::monotonicNanos();
    }
    KLOGI("Update package %s interval %d", scene.c_str(), interval);
    return 0;
}

void ShellTempFitting::applyCadence(const std::string& scene, int32_t* interval) {
    Mutex::Autolock lock(mLoop.mutex());
    if (scene == "SCREEN:OFF") {
        mLoop.setIntervalLocked(std::max(mLoop.intervalLocked(), kScreenOffInterval));
    } else {
        mLoop.setIntervalLocked(mConfiguredInterval);
    }
    if (scene == "SCREEN:ON") {
        mScreenOnTime = kelvo::monotonicSeconds();
    }
    *interval = mLoop.intervalLocked();
}

int ShellTempFitting::switchFittingScene(const std::string& scene) {
    Mutex::Autolock lock(mMutex);
    const auto found = mSceneModels.find(scene);
    if (found == mSceneModels.end() || found->second.models.empty()) {
        KLOGE("switch to scene %s failed, keep origin", scene.c_str());
        return 0;
    }
    mCurrentFittingModel = &found->second;
    KLOGE("switch to scene %s success", scene.c_str());
    return 1;
}

bool ShellTempFitting::fallbackWanted() const {
    Mutex::Autolock lock(mMutex);
    return mAbnormalZones.badZonesChanged() && mBackupCount >= 1;
}

int ShellTempFitting::updateTempFittingModel() {
    Mutex::Autolock lock(mMutex);
    if (updateBackupFmList() != 0) {
        return -1;  // the change stays noted, so the next cycle tries again
    }
    const auto healthy = std::ranges::find(mBackupFittingModels, 1, &FittingSet::enabled);
    if (healthy == mBackupFittingModels.end()) {
        return -1;
    }
    // Whether or not the current set uses the bad zone.
    mCurrentFittingModel = &*healthy;
    mAbnormalZones.clearBadZonesChanged();
    KLOGI("update current fitting model(scene:%s).", mCurrentFittingModel->scene.c_str());
    return 0;
}

int ShellTempFitting::updateBackupFmList() {
    const std::vector<int32_t>& badZones = mAbnormalZones.badZones();
    if (mBackupFittingModels.empty() || badZones.empty()) {
        KLOGE("The list should not be empty!");
        return -1;
    }
    const int32_t bad = badZones.back();
    for (FittingSet& set : mBackupFittingModels) {
        if (set.enabled == 0) {
            KLOGD("The fitting model(scene:%s) has been disabled, continue.", set.scene.c_str());
            continue;
        }
        // Only the first model of a set is examined.
        if (std::ranges::count(set.models.front().zones, bad, &kelvo::ThermalZone::index) > 0) {
            set.enabled = 0;
            --mBackupCount;
            KLOGI("disable the fitting model(scene:%s, bad tzone:%d), available fittimg models %d.",
                  set.scene.c_str(), bad, mBackupCount);
        }
    }
    if (mBackupCount >= 1) {
        return 0;
    }
    KLOGD("no temp fitting model is available.");
    return -1;
}

int32_t ShellTempFitting::isOldSafetyProject() const {
    Json::Value projects;
    if (KelvoConfig::getInstance().getConfig(&projects, {"old_safety_project"}) != 0) {
        KLOGD("No old_safety_project config.");
        return -1;
    }
    if (!projects.isArray()) {
        return -1;
    }
    Mutex::Autolock lock(mMutex);
    for (const Json::Value& project : projects) {
        if (!project.isString()) {
            continue;
        }
        KLOGD("isNewSafetyProject %s", project.asCString());
        if (project.asString() == mProjectName) {
            return 1;
        }
    }
    return 2;
}

int32_t ShellTempFitting::getCurrentFittingModelType() const {
    Mutex::Autolock lock(mMutex);
    for (const kelvo::FittingModel& model : mCurrentFittingModel->models) {
        if (model.index < 0 || model.zones.empty()) {
            continue;
        }
        if (model.zones.size() > 1) {
            return 1;
        }
        return model.zones.front().name.find("battery") != std::string::npos ? 2 : 3;
    }
    return -1;
}

void ShellTempFitting::openPrjUniqueFeature() {
    Mutex::Autolock lock(mMutex);
    if (mSceneModels.contains("wirless_charge")) {
        // It listens for a wireless charger from now on, if it did not before.
        HealthInfoNotifier::getInstance();
        KLOGD("load wirless_charge feature");
    }
}

// The scene of the current set when it stood in the backup list, which is emptied here.
std::string ShellTempFitting::resetConfig() {
    std::string backupScene;
    for (const FittingSet& set : mBackupFittingModels) {
        if (&set == mCurrentFittingModel) {
            backupScene = set.scene;
        }
    }
    mBackupFittingModels.clear();
    mAbnormalZones.clear();
    mSpecifiedZones.clear();
    return backupScene;
}

void ShellTempFitting::restoreBackupScene(const std::string& scene) {
    const auto found = std::ranges::find(mBackupFittingModels, scene, &FittingSet::scene);
    mCurrentFittingModel = found == mBackupFittingModels.end() ? mDefaultFittingModel : &*found;
}

int ShellTempFitting::reload() {
    int result = 0;
    {
        // One critical section: no cycle runs while the backup list is empty.
        Mutex::Autolock lock(mMutex);
        const std::string backupScene = resetConfig();
        result = initConfigLocked();
        if (!backupScene.empty()) {
            restoreBackupScene(backupScene);
        }
    }
    if (result == 0) {
        char text[64];
        snprintf(text, sizeof(text), "Reload@%lld",
                 static_cast<long long>(kelvo::monotonicNanos()));
        updateScene(text, false, 0);
    }
    initSpecifiedConfig();
    return initTsensorConfig();
}
