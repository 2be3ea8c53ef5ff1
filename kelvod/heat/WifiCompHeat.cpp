#include "heat/WifiCompHeat.h"

#include <map>

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "core/KelvoState.h"
#include "heat/ComponentType.h"
#include "links/QuorixManager.h"

ANDROID_SINGLETON_STATIC_INSTANCE(WifiCompHeat)

using android::Mutex;
using kelvo::ModulePower;
using kelvo::QuorixManager;
using kelvo::saturatingInt32;
using kelvo::WifiSignal;

WifiCompHeat::WifiCompHeat() : ComponentHeat(WIFI) {}

int WifiCompHeat::processRawSample() {
    const int reported = QuorixManager::getInstance().getWifi();
    const int energy = reported != ModulePower::kNone ? reported : 0;
    const Mutex::Autolock lock(mMutex);
    pushSample({WIFI, static_cast<float>(energy), kelvo::monotonicSeconds()},
               reported != ModulePower::kNone ? kUsageFeed : "nothing reported");
    KLOGE("wifiComp processRawSample, energy=%d", energy);
    return 0;
}

int WifiCompHeat::processWifiSignal(std::string& text) {
    KLOGD("wifiComp processWifiSignal: %s", text.c_str());
    const Mutex::Autolock lock(mMutex);
    const int count = kelvo::parseWifiSignal(text, mSignal);
    KLOGE("wifiComp WifiState0:%d,ApState:%d,linkSpeed:%d,frequency:%d,rssi:%d,generation:%d",
          mSignal.wifiState, mSignal.apState, mSignal.linkSpeed, mSignal.frequency, mSignal.rssi,
          mSignal.generation);
    return count;
}

void WifiCompHeat::processWifiSpeed(std::string& text) {
    if (QuorixManager::getInstance().getWifi() != ModulePower::kNone) {
        return;
    }
    KLOGD("wifiComp WifiSpeed: %s", text.c_str());
    const kelvo::Traffic traffic = kelvo::parseTraffic(text);
    KLOGD("wifiComp WifiSpeed transmit:%ld,receive:%ld,mobileTx:%ld,mobileRx:%ld",
          static_cast<long>(traffic.transmit), static_cast<long>(traffic.receive),
          static_cast<long>(traffic.mobileTx), static_cast<long>(traffic.mobileRx));
    const Mutex::Autolock lock(mMutex);
    mWifiSpeed = kelvo::otherTraffic(traffic);
    KLOGD("wifiComp WifiState:%d,ApState:%d,wifiStrength:%d,wifiSpeed:%d,frequency:%d,kelvoTemp:%d",
          mSignal.wifiState, mSignal.apState, mSignal.rssi, static_cast<int32_t>(mWifiSpeed),
          mSignal.frequency, KelvoState::getInstance().getTemp());
    if (mSignal.wifiState == WifiSignal::kWifiEnabled) {
        pushTraffic();
    }
}

void WifiCompHeat::pushTraffic() {
    const float energy = kelvo::wifiEnergy(mSignal, mWifiSpeed);
    KLOGD("wifiComp processWifiSpeed,energy:%d", saturatingInt32(energy));
    // The type is the modem's, and has to be; nothing in a buffer goes by it.
    pushSample({CELLULAR, energy, kelvo::monotonicSeconds()}, "signal and traffic",
               {{"speed", mWifiSpeed}, {"rssi", mSignal.rssi}});
}

int WifiCompHeat::getHeatContribution() {
    const Mutex::Autolock lock(mMutex);
    if (mCoefficient == 0.0F) {
        mCoefficient = configuredCoefficient();
        KLOGD("wifiComp getHeatContribution start:%f", static_cast<double>(mCoefficient));
    }
    const int result = mSamples->getEnergyToTemp(mCoefficient);
    KLOGD("wifiComp getHeatContribution coeff=%f, result=%d", static_cast<double>(mCoefficient),
          result);
    return result;
}

std::shared_ptr<HeatInfo> WifiCompHeat::getHeatInfo() {
    const Mutex::Autolock lock(mMutex);
    if (mCoefficient == 0.0F) {
        mCoefficient = configuredCoefficient();
        KLOGD("wifiComp getHeatInfo start:%f", static_cast<double>(mCoefficient));
    }
    const int result = mSamples->getEnergyToTemp(mCoefficient);
    KLOGD("wifiComp getHeatInfo coeff=%f, result=%d", static_cast<double>(mCoefficient), result);
    if (result < 1) {
        return HeatInfo::withoutKeyFactors(result);
    }
    return std::make_shared<HeatInfo>(
            result, std::map<std::string, int>{
                            {"Power", saturatingInt32(mCoefficient * static_cast<float>(result))}});
}
