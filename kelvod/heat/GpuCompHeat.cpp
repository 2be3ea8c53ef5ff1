#include "heat/GpuCompHeat.h"

#include <stdlib.h>

#include <utility>

#include "base/FileUtils.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "config/PlatformAdaptor.h"
#include "heat/ComponentType.h"
#include "heat/HeatSection.h"
#include "heat/TableInterpolation.h"

using android::Mutex;
using kelvo::clampToInt32;
using kelvo::GpuCurrent;
using kelvo::saturatingInt32;

namespace {

constexpr char kQcomLoad[] = "/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load";
constexpr char kQcomBusy[] = "/sys/class/kgsl/kgsl-3d0/gpu_busy_percentage";
constexpr char kQcomClock[] = "/sys/class/kgsl/kgsl-3d0/gpuclk";
constexpr char kMtkLoad[] = "/sys/module/ged/parameters/gpu_loading";
constexpr char kMtkClock[] = "/sys/kernel/ged/hal/current_freqency";

constexpr int64_t kHzPerMHz = 1000000;
constexpr float kPercent = 100.0F;

bool isQcom() {
    return kelvo::PlatformAdaptor::getInstance().isQcom();
}

/** The number before the first blank; held at the ends of the range. */
int64_t firstNumber(const std::string& text) {
    return strtoll(text.substr(0, text.find(' ')).c_str(), nullptr, 10);
}

}  // namespace

GpuCompHeat::GpuCompHeat() : ComponentHeat(GPU) {
    initConfig();
}

void GpuCompHeat::initConfig() {
    Mutex::Autolock lock(mLock);
    KLOGE("GpuCompHeat::init()\n");
    Json::Value model;
    if (kelvo::readHeatSection(&model, kelvo::key::kGpuModel) != 0) {
        KLOGE("get gpu_model failed: %s", model.toStyledString().c_str());
        return;
    }
    takeTable(kelvo::parseGpuModel(model));
}

// One bad entry makes the whole table bad.
void GpuCompHeat::takeTable(kelvo::HeatTable<GpuCurrent> table) {
    for (const GpuCurrent& row : table.rows) {
        KLOGE("gpuComp init config gpufreq:%f,powermA:%f", static_cast<double>(row.gpufreq),
              static_cast<double>(row.powermA));
    }
    if (table.badRow) {
        KLOGE("gpuComp gpu_model conf is invalid");
        return;
    }
    mTable = std::move(table.rows);
}

int GpuCompHeat::getGpuLoad() {
    std::string text;
    if (isQcom()) {
        text = kelvo::getFile(kQcomLoad);
        KLOGD("gpuComp normalization load, gpuStr: %s", text.c_str());
        if (text.empty()) {
            text = kelvo::getFile(kQcomBusy);
        }
    } else {
        text = kelvo::getFile(kMtkLoad);
        KLOGD("gpuComp MTK gpu load, gpuStr: %s", text.c_str());
    }
    if (text.empty()) {
        return -1;
    }
    const int32_t load = clampToInt32(firstNumber(text));
    KLOGD("gpuComp load is: %d", load);
    return load;
}

int GpuCompHeat::getGpuFreq() {
    const std::string text = kelvo::getFile(isQcom() ? kQcomClock : kMtkClock);
    if (text.empty()) {
        return -1;
    }
    // Divided before it is narrowed: Hz of fast clocks do not fit into 32 bits.
    const int32_t freq = clampToInt32(firstNumber(text) / (isQcom() ? kHzPerMHz : 1));
    KLOGD("gpuComp freq is: %d", freq);
    return freq;
}

int GpuCompHeat::processRawSample() {
    const int32_t load = getGpuLoad();
    const int32_t freq = getGpuFreq();
    KLOGD("gpuComp sample loading:%d, freq:%d", load, freq);
    Mutex::Autolock lock(mLock);
    const float current = interpolateTable(mTable, &GpuCurrent::gpufreq, &GpuCurrent::powermA,
                                           static_cast<float>(freq));
    const int32_t energy = saturatingInt32(current * static_cast<float>(load) / kPercent);
    KLOGE("gpuComp processRawSample energy=%d", energy);
    pushSample({GPU, static_cast<float>(energy), kelvo::monotonicSeconds()}, "clock and load",
               {{"load", load}, {"clock", freq}});
    mLoadSum += static_cast<float>(load);
    mFreqSum += static_cast<float>(freq);
    mCount = kelvo::wrappingAdd(mCount, 1);
    return 0;
}

// A missing coefficient (-1.0) is kept, and asked for no more.
float GpuCompHeat::coefficient() {
    if (mCoefficient == 0.0F) {
        mCoefficient = configuredCoefficient();
        KLOGD("gpuComp getHeatContribution start:%f", static_cast<double>(mCoefficient));
    }
    return mCoefficient;
}

void GpuCompHeat::takeAverages(std::map<std::string, int>& out) {
    const auto average = [count = static_cast<float>(mCount)](float sum) {
        return count == 0.0F ? 0 : saturatingInt32(sum / count);
    };
    out["agvload"] = average(mLoadSum);
    out["agvfreq"] = average(mFreqSum);
    mLoadSum = 0.0F;
    mFreqSum = 0.0F;
    mCount = 0;
}

int GpuCompHeat::getHeatContribution() {
    Mutex::Autolock lock(mLock);
    const int32_t result = mSamples->getEnergyToTemp(coefficient());
    std::map<std::string, int> dropped;
    takeAverages(dropped);
    return result;
}

std::shared_ptr<HeatInfo> GpuCompHeat::getHeatInfo() {
    Mutex::Autolock lock(mLock);
    const float perDegree = coefficient();
    const int32_t result = mSamples->getEnergyToTemp(perDegree);
    if (result < 1) {
        return HeatInfo::withoutKeyFactors(result);
    }
    std::map<std::string, int> factors;
    takeAverages(factors);
    factors["Power"] = saturatingInt32(perDegree * static_cast<float>(result));
    KLOGE("gpuComp getHeatInfo Coeffs=%f, result=%d", static_cast<double>(perDegree), result);
    return std::make_shared<HeatInfo>(result, factors);
}
