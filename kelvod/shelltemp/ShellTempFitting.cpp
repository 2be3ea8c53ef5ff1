#include "shelltemp/ShellTempFitting.h"

#include <cutils/properties.h>

#include "base/Log.h"
#include "base/TimeUtils.h"
#include "config/ConfigNames.h"
#include "config/PlatformAdaptor.h"
#include "links/HealthInfoNotifier.h"
#include "shelltemp/ZoneReader.h"

using android::Mutex;

ANDROID_SINGLETON_STATIC_INSTANCE(ShellTempFitting)

namespace {

constexpr char kIpaZoneType[] = "soc_thermal_ipa";
constexpr char kIpaProperty[] = "sys.ipa_thermal_number";
// The inner display of this project runs two degrees cooler than its model says.
constexpr char kInnerProject[] = "47213";

}  // namespace

ShellTempFitting::ShellTempFitting() : mLoop(this, &mTsensors) {
    {
        Mutex::Autolock lock(mMutex);
        initConfig();
    }
    initSpecifiedConfig();
    initTsensorConfig();
    chooseStartingModels();
    {
        Mutex::Autolock lock(mMutex);
        mRecords.start(kelvo::getLocalDay());
    }
    mLoop.start();
}

void ShellTempFitting::chooseStartingModels() {
    {
        Mutex::Autolock lock(mMutex);
        mAmbientScenes.setSwitching(mScenes.getFittingScene(kelvo::scene::kAmbientCharge) !=
                                    nullptr);
    }
    mAmbientScenes.setCharging(HealthInfoNotifier::getInstance().getOnChargeStats());
    Mutex::Autolock lock(mMutex);
    mScenes.chooseStartingModels(mAmbientScenes.switching() && mAmbientScenes.charging());
}

void ShellTempFitting::init() {
    KLOGI("shell temp fitting module init...");
    updateScene("Init", false, 0);
    const std::string& project = kelvo::PlatformAdaptor::getInstance().getProjectName();
    const bool special = project == kInnerProject;
    KLOGD("getProjectName():%s, need special handle: %d", project.c_str(), special ? 1 : 0);
    Mutex::Autolock lock(mMutex);
    mCycle.setInnerSpecialHandling(special);
}

void ShellTempFitting::initIPA() {
    Mutex::Autolock lock(mMutex);
    const int32_t index = mZoneTable.indexOf(kIpaZoneType);
    if (index >= 0) {
        KLOGE("initIPA Tz index = %d,", index);
        property_set(kIpaProperty, std::to_string(index).c_str());
    }
}

void ShellTempFitting::openPrjUniqueFeature() {
    const auto hasScene = [this] {
        Mutex::Autolock lock(mMutex);
        return mScenes.has(kelvo::scene::kWirelessCharge);
    };
    if (hasScene()) {
        // It listens for a wireless charger from now on, if it did not before; without the mutex,
        // since the service may take its time.
        HealthInfoNotifier::getInstance();
        KLOGD("load wirless_charge feature");
    }
}

kelvo::FittingTemps ShellTempFitting::getFittingTemps() const {
    Mutex::Autolock lock(mMutex);
    return mCycle.outputs().temps();
}

int32_t ShellTempFitting::getCurrentFittingModelType() const {
    Mutex::Autolock lock(mMutex);
    return static_cast<int32_t>(mScenes.currentKind());
}

int ShellTempFitting::getSpecifiedZoneTemps(std::vector<int>& temps) {
    return mSpecifiedZones.getTemps(temps);
}

std::vector<std::string> ShellTempFitting::getAmbientModelList() const {
    return mAmbientScenes.available();
}

bool ShellTempFitting::isOldAmbientProject() const {
    return !mAmbientScenes.switching();
}

int32_t ShellTempFitting::getThermalTemp(const kelvo::ThermalZone& zone, int& temp) const {
    return static_cast<int32_t>(kelvo::readZone(zone, temp));
}
