#include "heat/HeatProcessCenter.h"

#include "base/Log.h"
#include "config/KelvoConfig.h"
#include "heat/AmbientCompHeat.h"
#include "heat/CellularCompHeat.h"
#include "heat/ConfigNumber.h"
#include "heat/CpuCompHeat.h"
#include "heat/DisplayCompHeat.h"
#include "heat/GpuCompHeat.h"
#include "heat/WifiCompHeat.h"
#include "links/QuorixManager.h"

using android::Mutex;
using kelvo::QuorixManager;

HeatProcessCenter* HeatProcessCenter::getInstance() {
    static auto* const center = new HeatProcessCenter;
    return center;
}

HeatProcessCenter::HeatProcessCenter() : mLoop("comp-monitor", this, kSamplingInterval) {
    mInitInValid = !initConfig();
    if (!mInitInValid) {
        createComponents();
    }
}

bool HeatProcessCenter::initConfig() {
    KLOGE("heatpc start parse heatsource_model");
    Json::Value model;
    if (kelvo::KelvoConfig::getInstance().getConfig(
                &model, {"shell_temp_fitting_model", "heatsource_detection", "heatsource_model"}) !=
        0) {
        KLOGE("heatpc get heatsource_detection model failed: %s", model.toStyledString().c_str());
        return false;
    }
    if (!model.isObject() || !model["device_name"].isArray() || !model["coefficient"].isArray()) {
        return true;
    }
    if (!readCoefficients(model["device_name"], model["coefficient"])) {
        mCoeffs.clear();
        return false;
    }
    return true;
}

// One bad entry makes the whole table bad.
bool HeatProcessCenter::readCoefficients(const Json::Value& names,
                                         const Json::Value& coefficients) {
    if (names.size() != coefficients.size()) {
        return false;
    }
    for (Json::ArrayIndex i = 0; i < names.size(); ++i) {
        const std::string name = names[i].isString() ? names[i].asString() : "";
        const float coefficient = configNumber(coefficients[i]);
        KLOGE("heatpc device_name:%s, coefficient:%f", name.c_str(),
              static_cast<double>(coefficient));
        if (coefficient == 0.0F || !names[i].isString()) {
            return false;
        }
        mCoeffs[name] = coefficient;
    }
    return true;
}

bool HeatProcessCenter::createComponents() {
    mComponents = {new CpuCompHeat,
                   new DisplayCompHeat,
                   &CellularCompHeat::getInstance(),
                   &WifiCompHeat::getInstance(),
                   new GpuCompHeat,
                   new AmbientCompHeat};
    return true;
}

float HeatProcessCenter::getCoeffs(const std::string& name) const {
    if (mCoeffs.empty()) {
        KLOGE("heatpc heat source Coeffs is empty.");
        return kNoCoefficient;
    }
    const auto found = mCoeffs.find(name);
    return found != mCoeffs.end() ? found->second : kNoCoefficient;
}

void HeatProcessCenter::startMonitor() {
    if (mInitInValid) {
        return;
    }
    Mutex::Autolock lock(mMonitorLock);
    if (!mThreadStarted && !startThread()) {
        return;
    }
    QuorixManager::getInstance().regCallBack();
    QuorixManager::getInstance().startQuorix();
    mRunning = true;
    mThreadStarted = true;
}

bool HeatProcessCenter::stopMonitor() {
    Mutex::Autolock lock(mMonitorLock);
    if (mInitInValid || !mRunning) {
        return false;
    }
    mRunning = false;
    mLoop.wake();
    QuorixManager::getInstance().stopQuorix();
    for (ComponentHeat* component : mComponents) {
        Mutex::Autolock componentsLock(mComponentsLock);
        component->clearSamples();
    }
    return true;
}
