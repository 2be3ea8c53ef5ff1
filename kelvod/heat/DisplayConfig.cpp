#include "heat/DisplayConfig.h"

#include "base/Log.h"
#include "base/Numeric.h"
#include "heat/HeatSection.h"

using android::Mutex;
using kelvo::NamedFigure;
using kelvo::saturatingInt32;
namespace figure = kelvo::brightness;

namespace {

constexpr float kUnknown = -1.0F;
// The panel this model was measured on.
constexpr float kReferencePower = 228.0F;  // mW at DisplayConfig::kStanBrightness
constexpr float kDdicPower120 = 90.0F;     // mW
constexpr float kDdicPower90 = 60.0F;
constexpr float kDdicPower60 = 60.0F;

void logFigure(const NamedFigure& row) {
    KLOGD("displayComp init factor:%s, coefficient:%f", row.name.c_str(),
          static_cast<double>(row.value));
}

}  // namespace

int DisplayConfig::init() {
    const Mutex::Autolock lock(mMutex);
    KLOGD("displayComp init()\n");
    Json::Value model;
    if (kelvo::readHeatSection(&model, kelvo::key::kBrightnessModel) != 0) {
        KLOGE("displayComp init get brightness_model model failed: %s",
              model.toStyledString().c_str());
        return -1;
    }
    KLOGE("displayComp init load heat source play model");
    takeTableLocked(kelvo::parseBrightnessModel(model));
    noteStandardLocked();
    return 0;
}

// One bad entry makes the whole table bad.
void DisplayConfig::takeTableLocked(const kelvo::HeatTable<NamedFigure>& table) {
    if (table.hasColumns) {
        mDisplayCoeffs.clear();
    }
    for (const NamedFigure& row : table.rows) {
        logFigure(row);
        if (table.faults.empty()) {
            mDisplayCoeffs[row.name] = row.value;
        }
    }
    if (table.badRow) {
        logFigure(*table.badRow);
    }
}

/**
 * The configured standard is only shown: the model's constants hold in any case. What is not
 * configured becomes a figure of 0, so that the table is not empty from here on.
 */
void DisplayConfig::noteStandardLocked() {
    const float nits = mDisplayCoeffs[figure::kStandardNits];
    const float level = mDisplayCoeffs[figure::kStandardLevel];
    KLOGD("displayComp init stanBrightness:%d, stanLevel:%d", saturatingInt32(nits),
          saturatingInt32(level));
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
    const float brightness = getCoeffs(figure::kStandardNits);
    getCoeffs(figure::kStandardPower);
    // The luminance stands in both places of this text, the power in none.
    KLOGD("displayComp getElConf: ElBrightness=%d, ElPower=%d", saturatingInt32(brightness),
          saturatingInt32(brightness));
    elConf.emplace(saturatingInt32(kStanBrightness), kReferencePower);
}

void DisplayConfig::getDdicConf(std::map<int, float>& ddicConf) {
    const float power60 = getCoeffs(figure::kPowerAt60);
    const float power120 = getCoeffs(figure::kPowerAt120);
    KLOGD("displayComp getDdicConf: 60_pwr=%d, 120_pwr=%d", saturatingInt32(power60),
          saturatingInt32(power120));
    ddicConf.emplace(120, kDdicPower120);
    ddicConf.emplace(90, kDdicPower90);
    ddicConf.emplace(60, kDdicPower60);
}
