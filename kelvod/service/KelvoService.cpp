#include "service/KelvoService.h"

#include <binder/IPCThreadState.h>

#include <algorithm>
#include <iterator>

#include "base/Log.h"
#include "core/KelvoState.h"
#include "core/MessageManager.h"
#include "service/PrivilegedCaller.h"
#include "service/ServiceCodes.h"

namespace kelvo {

using android::IPCThreadState;
using android::OK;
using android::PERMISSION_DENIED;
using android::status_t;

const KelvoService::Transaction* KelvoService::findTransaction(uint32_t code) {
    using Self = KelvoService;
    static const Transaction kTransactions[] = {
            {REGISTER_CLIENT, false, &Self::registerClient, true},
            {UNREGISTER_CLIENT, false, &Self::unregisterClient, true},
            {GET_THERMAL_STATUS, false, &Self::getThermalStatus},
            {GET_THERMAL_CONFIG, true, &Self::getThermalConfig},
            {SET_DYNAMIC_CONFIG, true, &Self::setDynamicConfig},
            {GET_VERSION, false, &Self::getVersion},
            {GET_BIG_DATA, true, &Self::getBigData},
            {RELOAD_CONFIG, true, &Self::reloadConfig, true},
            {SET_SCREEN_STATUS, true, &Self::setScreenStatus},
            {NOTIFY_THERMAL_STATUS, true, &Self::notifyThermalStatus, true},
            {PEEK_BIG_DATA, true, &Self::peekBigData},
            {GET_CURRENT_TEMP, false, &Self::getCurrentTemp},
            {SET_CURRENT_PACKAGE, true, &Self::setCurrentPackage},
            {SET_LIGHT_LAMP_STATUS, true, &Self::setLightLampStatus, true},
            {GET_SPECIFIED_ZONE_TEMPS, false, &Self::getSpecifiedZoneTemps},
            {GET_ALL_SHELL_TEMPS, false, &Self::getAllShellTemps},
            {SHELL_TEMP_AND_TYPE, false, &Self::getShellTempAndType},
            {IS_NEW_SAFETY_TYPE, false, &Self::isNewSafetyType},
            {SET_SCREEN_FOLD_STATUS, true, &Self::setScreenFoldStatus, true},
            {GET_AMBIENT_TEMP, false, &Self::getAmbientTemp},
            {CPU_LIMIT_PROCEESES, true, &Self::getCpuLimitProcesses},
            {COMPONENT_HEAT_TEST, true, &Self::testComponentHeat},
            {SET_WIFI_INFO, true, &Self::setWifiInfo},
            {SET_NETWORK_INFO, true, &Self::setNetworkInfo},
            {SET_NETWORK_SPEED_INFO, true, &Self::setNetworkSpeedInfo},
            {GET_COMPONENTS_HEAT_DETAIL, true, &Self::getComponentsHeatDetail},
    };
    const auto* found = std::find_if(std::begin(kTransactions), std::end(kTransactions),
                                     [code](const Transaction& t) { return t.code == code; });
    return found != std::end(kTransactions) ? found : nullptr;
}

namespace {

/** The two refusals that say something. */
void logRefusal(uint32_t code) {
    if (code == RELOAD_CONFIG) {
        const IPCThreadState* caller = IPCThreadState::self();
        KLOGD("PERMISSION_DENIED: uid(%d)_pid(%d) try to reload config", caller->getCallingUid(),
              caller->getCallingPid());
    } else if (code == NOTIFY_THERMAL_STATUS) {
        KLOGD("no permission to call this");
    }
}

}  // namespace

status_t KelvoService::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                  uint32_t flags) {
    const IPCThreadState* caller = IPCThreadState::self();
    KLOGD("got transaction code:%d flags:%d from pid:%d uid:%d", code, flags,
          caller->getCallingPid(), caller->getCallingUid());
    const Transaction* transaction = findTransaction(code);
    if (transaction == nullptr) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (code == GET_CURRENT_TEMP) {  // also for callers that are refused next
        KLOGD("currentTemp=%f\n", static_cast<double>(KelvoState::getInstance().getTempCelsius()));
    }
    if (!data.checkInterface(this)) {
        return PERMISSION_DENIED;
    }
    if (transaction->privileged && !isPrivilegedCaller()) {
        logRefusal(code);
        return PERMISSION_DENIED;
    }
    if (transaction->posts && !MessageManager::getInstance().hasRoom()) {
        return android::WOULD_BLOCK;
    }
    Parcel unread;  // of a caller that wants no reply
    (this->*transaction->handler)(data, reply != nullptr ? *reply : unread);
    return OK;
}

}  // namespace kelvo
