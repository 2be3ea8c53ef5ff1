#include "heat/DisplayConfig.h"

#include "base/Log.h"
#include "base/Numeric.h"
#include "config/ConfigPath.h"
#include "config/KelvoConfig.h"
#include "heat/ConfigNumber.h"

using android::Mutex;
using kelvo::saturatingInt32;

namespace {

constexpr float kUnknown = -1.0F;
// The panel this model was measured on.
constexpr float kReferencePower = 228.0F;  // mW at DisplayConfig::kStanBrightness
constexpr float kDdicPower120 = 90.0F;     // mW
constexpr float kDdicPower90 = 60.0F;
constexpr float kDdicPower60 = 60.0F;

int whole(float value) {
    return saturatingInt32(static_cast<double>(value));
}

}  // namespace

int DisplayConfig::init() {
    const Mutex::Autolock lock(mMutex);
    KLOGD("displayComp init()\n");
    Json::Value model;
    if (kelvo::KelvoConfig::getInstance().getConfig(
                &model, {"shell_temp_fitting_model", "heatsource_detection", "brightness_model"}) !=
        0) {
        KLOGE("displayComp init get brightness_model model failed: %s",
              model.toStyledString().c_str());
        return -1;
    }
    KLOGE("displayComp init load heat source play model");
    loadLocked(model);
    logStandardLocked();
    return 0;
}

void DisplayConfig::loadLocked(const Json::Value& model) {
    const Json::Value* const factors = kelvo::findMember(model, "factor");
    const Json::Value* const coefficients = kelvo::findMember(model, "coefficient");
    if (factors == nullptr || coefficients == nullptr || !factors->isArray() ||
        !coefficients->isArray()) {
        return;
    }
    mDisplayCoeffs.clear();
    if (factors->size() != coefficients->size()) {
        return;
    }
    for (Json::ArrayIndex i = 0; i < factors->size(); ++i) {
        const Json::Value& factor = (*factors)[i];
        const float value = configNumber((*coefficients)[i]);
        KLOGD("displayComp init factor:%s, coefficient:%f",
              factor.isString() ? factor.asCString() : "", static_cast<double>(value));
        if (value == 0.0F || !factor.isString()) {
            mDisplayCoeffs.clear();
            return;
        }
        mDisplayCoeffs[factor.asString()] = value;
    }
}

/** The configured standard is only shown: the model's constants hold in any case. */
void DisplayConfig::logStandardLocked() {
    KLOGD("displayComp init stanBrightness:%d, stanLevel:%d", whole(mDisplayCoeffs["el_brt"]),
          whole(mDisplayCoeffs["el_lvl"]));
}

float DisplayConfig::getCoeffs(const std::string& name) {
    const Mutex::Autolock lock(mMutex);
    if (mDisplayCoeffs.empty()) {
        KLOGE("displayComp heat source Coeffs is empty.");
        return kUnknown;
    }
    const auto found = mDisplayCoeffs.find(name);
    if (found == mDisplayCoeffs.end()) {
        return kUnknown;
    }
    KLOGD("displayComp getCoeffs, confName:%s, mDisplayCoeffs[confName]:%f", name.c_str(),
          static_cast<double>(found->second));
    return found->second;
}

// In the two tables below, too, the configured figures are only shown.

void DisplayConfig::getElConf(std::map<int, float>& elConf) {
    const float brightness = getCoeffs("el_brt");
    getCoeffs("el_pwr");
    // The luminance stands in both places; readers of the log expect it there.
    KLOGD("displayComp getElConf: ElBrightness=%d, ElPower=%d", whole(brightness),
          whole(brightness));
    elConf.emplace(whole(kStanBrightness), kReferencePower);
}

void DisplayConfig::getDdicConf(std::map<int, float>& ddicConf) {
    const float power60 = getCoeffs("60_pwr");
    const float power120 = getCoeffs("120_pwr");
    KLOGD("displayComp getDdicConf: 60_pwr=%d, 120_pwr=%d", whole(power60), whole(power120));
    ddicConf.emplace(120, kDdicPower120);
    ddicConf.emplace(90, kDdicPower90);
    ddicConf.emplace(60, kDdicPower60);
}
