// The roof: what each message does to the engines.

#include "core/EngineMessages.h"

#include "base/Log.h"
#include "config/KelvoConfig.h"
#include "core/KelvoState.h"
#include "heat/HeatProcessCenter.h"
#include "service/BinderManager.h"
#include "shelltemp/ShellTempFitting.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace kelvo {

namespace {

void onShellTempChanged(const KelvoMessage& message) {
    KLOGI("Shell temp changed");
    KelvoThermalStatus::getInstance().onShellTempChanged(message.iValue);
}

void onReloadConfig() {
    KLOGI("Reload global config");
    KelvoConfig::getInstance().reload();
    KelvoState::getInstance().reload();
    ShellTempFitting::getInstance().reload();
    KelvoThermalStatus::getInstance().reload();
}

void onRegisterClient(const KelvoMessage& message) {
    KLOGI("Register client");
    BinderManager::getInstance().registerClient(message.iParam, message.binder);
}

void onUnregisterClient(const KelvoMessage& message) {
    KLOGI("Unregister client");
    BinderManager::getInstance().unRegisterClient(message.iParam, message.binder);
}

void onNotifyThermalStatus(const KelvoMessage& message) {
    KLOGI("Notify thermal status:%d", message.iValue);
    BinderManager::getInstance().notifyCallback(message.iValue);
}

void onBroadcastThermal(const KelvoMessage& message) {
    KLOGI("broadcast thermal level:%d, temp:%d", message.iParam, message.iValue);
    BinderManager::getInstance().notifyBroadCast(message.iParam, message.iValue);
}

void onNotifyAmbient(const KelvoMessage& message) {
    KLOGI("ambient thermal notify temp:%d", message.iValue);
    BinderManager::getInstance().notifyAmbientTemp(message.iValue);
}

void onNotifyHeatSource(const KelvoMessage& message) {
    KLOGI("heatsource thermal level:%d, temp:%d", message.iParam, message.iValue);
    BinderManager::getInstance().notifyHeatSource(message.iParam, message.iValue);
}

void onCollectBigData(const KelvoMessage& message) {
    HeatProcessCenter::getInstance()->collectBigData(message.sValue);
    KelvoState& state = KelvoState::getInstance();
    state.getPkgBatteryBigDataRecord(message.sValue, message.iValue == 1);
    if (message.iValue == 0) {
        state.updateTempDataCollection();
    }
}

void onChargeState(const KelvoMessage& message) {
    KLOGI("switch charge state");
    ShellTempFitting::getInstance().updateChargeStatus(message.iValue != 0);
}

}  // namespace

void EngineMessages::perform(const KelvoMessage& message) {
    switch (message.what) {
        case MSG_SHELL_TEMP_CHANGED:
            return onShellTempChanged(message);
        case MSG_RELOAD_CONFIG:
            return onReloadConfig();
        case MSG_REGISTER_CLIENT:
            return onRegisterClient(message);
        case MSG_UNREGISTER_CLIENT:
            return onUnregisterClient(message);
        case MSG_NOTIFY_THERMAL_STATUS:
            return onNotifyThermalStatus(message);
        case MSG_COLLECT_BIG_DATA:
            return onCollectBigData(message);
        case MSG_BROADCAST_THERMAL:
            return onBroadcastThermal(message);
        case MSG_NOTIFY_AMBIENT:
            return onNotifyAmbient(message);
        case MSG_NOTIFY_HEAT_SOURCE:
            return onNotifyHeatSource(message);
        case MSG_CHARGE_STATE:
            return onChargeState(message);
        case MSG_THERMAL_STATE:  // posted, but clients hear of a status through 6 and 10
        default:
            return;
    }
}

bool EngineMessages::switchScene(const std::string& scene) {
    return ShellTempFitting::getInstance().switchFittingScene(scene) != 0;
}

}  // namespace kelvo
