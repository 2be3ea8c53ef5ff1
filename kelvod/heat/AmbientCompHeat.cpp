#include "heat/AmbientCompHeat.h"

#include <map>
#include <string>

#include "ambient/AmbientTempWatcher.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "heat/ComponentType.h"
#include "links/HealthInfoNotifier.h"

using android::Mutex;
using kelvo::AmbientTempWatcher;

namespace {

constexpr int32_t kMillidegrees = 1000;  // in a degree: the estimate comes in whole °C

}  // namespace

int AmbientCompHeat::processRawSample() {
    int temp = 0;
    int timestamp = 0;
    if (!AmbientTempWatcher::getInstance().getAmbientTempInfo(temp, timestamp)) {
        return 0;
    }
    const int32_t value = kelvo::wrappingMul(temp, kMillidegrees);
    KLOGE("AmbientComp temp:%d", value);
    const Mutex::Autolock lock(mMutex);
    pushSample({AMBIENT, static_cast<float>(value), timestamp}, "ambient estimate");
    return 0;
}

int AmbientCompHeat::getHeatContribution() {
    const Mutex::Autolock lock(mMutex);
    const int result = mSamples->getAmbientCompToTemp(mLastQuerySecond);
    mLastQuerySecond = kelvo::monotonicSeconds();
    return result;
}

std::shared_ptr<HeatInfo> AmbientCompHeat::getHeatInfo() {
    auto info = getOwnHeatInfo();
    askForFactors(*info);
    return info;
}

std::shared_ptr<HeatInfo> AmbientCompHeat::getOwnHeatInfo() {
    const Mutex::Autolock lock(mMutex);
    const int result = mSamples->getAmbientCompToTemp(mLastQuerySecond);
    KLOGD("AmbientComp getHeatInfo: result=%d", result);
    return std::make_shared<HeatInfo>(result, std::map<std::string, int>());
}

void AmbientCompHeat::askForFactors(HeatInfo& info) {
    const bool charging = HealthInfoNotifier::getInstance().getOnChargeStats();
    info.keyFactor["ambientTemp"] = AmbientTempWatcher::getInstance().getAmbientTemp();
    info.keyFactor["ischarge"] = charging ? 1 : 0;
}
