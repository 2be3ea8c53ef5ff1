#pragma once

#include <utility>

#include "core/KelvoMessage.h"
#include "core/Scene.h"

// The messages that the daemon posts: one function a code, which sets the fields that its handler
// reads and leaves the others at their defaults. Pure.

namespace kelvo::messages {

namespace detail {

inline KelvoMessage of(MessageCode what, int32_t iValue = -1, int32_t iParam = -1) {
    KelvoMessage message;
    message.what = what;
    message.iParam = iParam;
    message.iValue = iValue;
    return message;
}

inline KelvoMessage ofClient(MessageCode what, int32_t uid, android::sp<android::IBinder> client) {
    KelvoMessage message = of(what, -1, uid);
    message.binder = std::move(client);
    return message;
}

}  // namespace detail

/** `temp` is the new shell temperature (m°C). */
inline KelvoMessage shellTempChanged(int32_t temp) {
    return detail::of(MSG_SHELL_TEMP_CHANGED, temp);
}
inline KelvoMessage thermalState(int32_t status) {
    return detail::of(MSG_THERMAL_STATE, status);
}
inline KelvoMessage reloadConfig() {
    return detail::of(MSG_RELOAD_CONFIG);
}
inline KelvoMessage registerClient(int32_t uid, const android::sp<android::IBinder>& client) {
    return detail::ofClient(MSG_REGISTER_CLIENT, uid, client);
}
inline KelvoMessage unregisterClient(int32_t uid, const android::sp<android::IBinder>& client) {
    return detail::ofClient(MSG_UNREGISTER_CLIENT, uid, client);
}
inline KelvoMessage notifyThermalStatus(int32_t status) {
    return detail::of(MSG_NOTIFY_THERMAL_STATUS, status);
}
/** `day` is what the records are filed under; `clear` empties those of the packages. */
inline KelvoMessage collectBigData(const std::string& day, bool clear) {
    KelvoMessage message = detail::of(MSG_COLLECT_BIG_DATA, clear ? 1 : 0);
    message.sValue = day;
    return message;
}
inline KelvoMessage loadFlashScene() {
    return detail::of(MSG_LOAD_FLASH_SCENE);
}
inline KelvoMessage sceneOpCode(ShellFittingSceneOpCode opCode) {
    return detail::of(MSG_SCENE_OP_CODE, static_cast<int32_t>(opCode));
}
/** `temp` in m°C. */
inline KelvoMessage broadcastThermal(int32_t status, int32_t temp) {
    return detail::of(MSG_BROADCAST_THERMAL, temp, status);
}
/** `temp` in °C. */
inline KelvoMessage notifyAmbient(int32_t temp) {
    return detail::of(MSG_NOTIFY_AMBIENT, temp);
}
/** `temp` in m°C. */
inline KelvoMessage notifyHeatSource(int32_t status, int32_t temp) {
    return detail::of(MSG_NOTIFY_HEAT_SOURCE, temp, status);
}
inline KelvoMessage chargeState(bool charging) {
    return detail::of(MSG_CHARGE_STATE, charging ? 1 : 0);
}

}  // namespace kelvo::messages
