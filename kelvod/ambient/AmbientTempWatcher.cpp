#include "ambient/AmbientTempWatcher.h"

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "links/ChargerProxyService.h"
#include "links/HealthInfoNotifier.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::AmbientTempWatcher)

namespace kelvo {

namespace {

constexpr int64_t kLongestGap = 7500;    // s between two rounds of one window
constexpr int32_t kAnnouncedChange = 3;  // °C
constexpr int32_t kFewestSteady = 2;     // steady rounds that an estimate needs

/** Says what was read, as far as it was right. */
void logFitting(const std::string& name, const AmbientFitting& fitting) {
    const bool hasArrays =
            fitting.faults.empty() || fitting.faults.front().kind != AmbientFault::Kind::NO_ARRAYS;
    if (!hasArrays) {
        KLOGE("parse ambient fitting parameters failed: %s", name.c_str());
    }
    for (const auto& [parameter, value] : fitting.pairs) {
        KLOGD("paramter_name:%s, coefficient:%f", parameter.c_str(), value);
    }
}

}  // namespace

AmbientTempWatcher::AmbientTempWatcher()
      : mIsOldAmbientProject(ShellTempFitting::getInstance().isOldAmbientProject()) {
    // Before the lock: the fitting engine's comes first.
    const auto scenes = ShellTempFitting::getInstance().getAmbientModelList();
    Mutex::Autolock lock(mMutex);
    mParamsLoaded =
            mIsOldAmbientProject ? getAmbientFittingParameter() : getNewFittingParameter(scenes);
}

bool AmbientTempWatcher::getAmbientFittingParameter() {
    if (!parseFittingParam(scene::kAmbient)) {
        KLOGE("get ambient fitting param failed.");
        return false;
    }
    useParameters(scene::kAmbient);
    return true;
}

bool AmbientTempWatcher::getNewFittingParameter(const std::vector<std::string>& scenes) {
    if (scenes.empty()) {
        KLOGE("can NOT find any ambient fitting parameters.");
        return false;
    }
    for (const std::string& scene : scenes) {
        if (!parseFittingParam(scene)) {
            KLOGE("parse %s fitting param failed.", scene.c_str());
            return false;
        }
    }
    const bool charging = HealthInfoNotifier::getInstance().getOnChargeStats();
    useParameters(charging ? scene::kAmbientCharge : scene::kAmbient);
    return true;
}

bool AmbientTempWatcher::parseFittingParam(const std::string& name) {
    Json::Value section;
    KelvoConfig::getInstance().getConfig(&section,
                                         {key::kFittingModels, name, key::kAmbientFitting});
    const AmbientFitting fitting = readAmbientFitting(section);
    logFitting(name, fitting);
    if (fitting.params) {
        mParams[name] = *fitting.params;
    }
    return fitting.params.has_value();
}

void AmbientTempWatcher::useParameters(const std::string& name) {
    const auto found = mParams.find(name);
    mAmbientCoeffs = found != mParams.end() ? std::optional(found->second) : std::nullopt;
}

void AmbientTempWatcher::switchFittingParameter(const std::string& name) {
    Mutex::Autolock lock(mMutex);
    if (!mParams.contains(name)) {
        return;
    }
    useParameters(name);
    ++mSwitches;
    clearRecord();
    KLOGD("AmbientTempWatcher clear recorded data: status changed.");
}

bool AmbientTempWatcher::checkAvailableStats() {
    if (!mParamsLoaded) {
        return false;
    }
    // Without the mutex, as the charger below: services may take their time.
    HealthInfoNotifier& health = HealthInfoNotifier::getInstance();
    const bool disturbed =
            mIsOldAmbientProject ? health.getOnChargeStats() : health.getChargerWirelessStats();
    if (disturbed) {
        Mutex::Autolock lock(mMutex);
        clearRecord();
        KLOGD("AmbientTempWatcher clear recorded data: invalid charge status.");
    }
    return !disturbed;
}

void AmbientTempWatcher::clearRecord() {
    mSamples.clear();
    mEstimates.clear();
    mFull = false;
}

void AmbientTempWatcher::updateAmbientTemp(int temp, int power) {
    const auto hasCoeffs = [this] {
        Mutex::Autolock lock(mMutex);
        return mAmbientCoeffs.has_value();
    };
    if (!hasCoeffs() || !checkAvailableStats()) {
        KLOGE("AmbientTempWatcher mAmbientCoeffs is empty or checkAvailableStats is false.");
        return;
    }
    uint32_t switches = 0;
    {
        Mutex::Autolock lock(mMutex);
        if (!mAmbientCoeffs || !isTimeContinuous()) {
            return;
        }
        switches = mSwitches;
    }
    const int32_t batteryCurrent = ChargerProxyService::getInstance().getBatteryCurrentNow();
    Mutex::Autolock lock(mMutex);
    if (!mAmbientCoeffs || switches != mSwitches) {
        return;  // the sample is of the models before
    }
    const AmbientParams& params = *mAmbientCoeffs;
    updateSample(temp, power, batteryCurrent);
    if (!mFull || !isChargeLow(params.chargeThreshold) ||
        !isPowerSteady(params.powerDiffThreshold)) {
        return;
    }
    estimate(params);
    checkAmbientTempStatus();
}

bool AmbientTempWatcher::isTimeContinuous() {
    const int64_t now = wallClockSeconds();
    const int64_t gap = now - mLastUpdateSecond;
    mLastUpdateSecond = now;
    mLastRound = monotonicSeconds();  // what others compare with their own samples
    if (gap > kLongestGap) {
        clearRecord();
        KLOGE("AmbientTempWatcher clear recorded data: time is not continuous.");
        return false;
    }
    return true;
}

void AmbientTempWatcher::updateSample(int temp, int power, int batteryCurrent) {
    const auto coeff = mAmbientCoeffs->batteryCurrent;
    const int32_t corrected = coeff ? saturatingInt32(*coeff * batteryCurrent + power) : power;
    KLOGD("AmbientTempWatcher updateSample temp:%d, power:%d, batteryCurrent:%d", temp, corrected,
          batteryCurrent);
    mSamples.add({temp, corrected, batteryCurrent});
    mFull = mSamples.full();
}

bool AmbientTempWatcher::isChargeLow(double threshold) {
    const int32_t chargeMean = mSamples.chargeMean();
    if (chargeMean <= threshold) {
        return true;
    }
    clearRecord();
    KLOGE("AmbientTempWatcher clear recorded data: charge current:%d over threshold.", chargeMean);
    return false;
}

bool AmbientTempWatcher::isPowerSteady(double threshold) {
    const int32_t powerDiff = mSamples.powerDiff();
    if (powerDiff <= threshold && powerDiff >= -threshold) {
        return true;
    }
    clearRecord();
    KLOGE("AmbientTempWatcher clear recorded data: power_diff over threshold.");
    return false;
}

void AmbientTempWatcher::estimate(const AmbientParams& params) {
    const double threshold = params.tempRateThreshold;
    SteadySums sums;
    for (const AmbientSamples::Pair& pair : mSamples.pairs()) {
        if (!(-threshold < pair.slope && pair.slope < threshold)) {
            KLOGD("AmbientTempWatcher slope:%f continue batterytemp:%d power:%d", pair.slope,
                  pair.newer.temp, pair.newer.power);
            continue;
        }
        sums.add(pair);
        if (pair.wrapped) {
            KLOGD("AmbientTempWatcher DEFAULT_SAMPLE_COUNT-mCurrentPos+i:%d, slope:%f "
                  "batteryTempB:%d, power:%d",
                  pair.slot, pair.slope, pair.newer.temp, pair.newer.power);
        } else {
            KLOGD("AmbientTempWatcher mCurrentPos-i:%d, slope:%f batteryTempB:%d, power:%d",
                  pair.slot, pair.slope, pair.newer.temp, pair.newer.power);
        }
    }
    if (sums.count < kFewestSteady) {
        return;
    }
    const int32_t latest = ambientOf(sums, params);
    if (mEstimates.empty() && mAmbientTemp == kNoEstimate) {
        publish(latest);  // the very first one does not wait for eleven others
    }
    if (const auto mean = mEstimates.add(latest)) {
        publish(*mean);
    }
}

void AmbientTempWatcher::publish(int32_t temp) {
    mAmbientTemp = temp;
    KLOGD("AmbientTempWatcher AmbientTemp:%d", temp);
}

void AmbientTempWatcher::checkAmbientTempStatus() {
    const int32_t current = mAmbientTemp;
    KLOGD("AmbientTempWatcher currentTemp:%d, lastTemp:%d", current, mLastTemp);
    const bool first = mLastTemp == kNoEstimate && current != kNoEstimate;
    const int32_t change = wrappingSub(current, mLastTemp);
    if (!first && change < kAnnouncedChange && change > -kAnnouncedChange) {
        return;
    }
    MessageManager::getInstance().sendMessage(messages::notifyAmbient(current));
    mLastTemp = current;
}

bool AmbientTempWatcher::getAmbientTempInfo(int& temp, int& time) const {
    const int32_t current = mAmbientTemp;
    if (!mFull || current == kNoEstimate) {
        return false;
    }
    temp = current;
    time = mLastRound;
    return true;
}

}  // namespace kelvo
