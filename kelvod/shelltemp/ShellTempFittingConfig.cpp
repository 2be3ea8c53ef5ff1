// What the engine takes from the configuration, at start and when it is read again.

#include <cstdio>

#include "base/Log.h"
#include "base/Time.h"
#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"
#include "config/PlatformAdaptor.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::KelvoConfig;

namespace key = kelvo::key;

namespace {

int32_t readAbnormalLimit() {
    Json::Value limit;
    if (KelvoConfig::getInstance().getConfig(&limit, {key::kMaxAbnormalDetections}) == 0 &&
        limit.isInt()) {
        return limit.asInt();
    }
    KLOGD("use default abnormal tzone recording times %d", kelvo::AbnormalZones::kDefaultLimit);
    return kelvo::AbnormalZones::kDefaultLimit;
}

}  // namespace

int ShellTempFitting::initConfig() {
    const int32_t zoneCount = mZoneTable.discover();
    Json::Value root;
    if (KelvoConfig::getInstance().getConfig(&root, {key::kFittingModels}) != 0) {
        KLOGD("no shell temp fitting model");
        return -1;
    }
    KLOGE("load normal fitting model");
    mCycle.zones().abnormal().setLimit(readAbnormalLimit());
    mScenes.getFittingModels(root, mZoneTable, zoneCount);
    if (mScenes.empty()) {
        KLOGE("can't find any valid fitting model, exit.");
        return -1;
    }
    // The list is not emptied before: a reload lists the names once more.
    for (const char* const scene : kelvo::scene::kAmbientScenes) {
        if (mScenes.has(scene)) {
            mAmbientScenes.add(scene);
        }
    }
    mScenes.dump();
    return 0;
}

int ShellTempFitting::initSpecifiedConfig() {
    Json::Value info;
    if (KelvoConfig::getInstance().getConfig(&info, {key::kSpecifiedZones}) != 0) {
        KLOGD("No specified_tempzone_info config.");
        return -1;
    }
    mSpecifiedZones.configure(resolveZones(info));
    return 0;
}

int ShellTempFitting::initTsensorConfig() {
    Json::Value info;
    if (KelvoConfig::getInstance().getConfig(&info, {key::kTsensorZones}) != 0) {
        KLOGD("No tsensor_tempzone_info config.");
        return -1;
    }
    mTsensors.configure(resolveZones(info));
    return 0;
}

kelvo::ZoneList ShellTempFitting::resolveZones(const Json::Value& info) {
    Mutex::Autolock lock(mMutex);
    if (mZoneTable.empty()) {
        mZoneTable.discover();
    }
    return kelvo::resolveZoneList(info, mZoneTable);
}

int ShellTempFitting::reload() {
    int result = 0;
    {
        // One critical section: no cycle runs while the backup list is empty.
        Mutex::Autolock lock(mMutex);
        mScenes.resetBackups();
        mCycle.zones().abnormal().clear();
        mSpecifiedZones.clear();
        result = initConfig();
        mScenes.restoreBackup();
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

int32_t ShellTempFitting::isOldSafetyProject() const {
    Json::Value projects;
    if (KelvoConfig::getInstance().getConfig(&projects, {key::kOldSafetyProject}) != 0) {
        KLOGD("No old_safety_project config.");
        return -1;
    }
    if (!projects.isArray()) {
        return -1;
    }
    const std::string& own = kelvo::PlatformAdaptor::getInstance().getProjectName();
    for (const Json::Value& project : projects) {
        if (!project.isString()) {
            continue;
        }
        KLOGD("isNewSafetyProject %s", project.asCString());
        if (project.asString() == own) {
            return 1;
        }
    }
    return 2;
}
