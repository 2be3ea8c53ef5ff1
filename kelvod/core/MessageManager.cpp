#define ATRACE_TAG ATRACE_TAG_ALWAYS

#include "core/MessageManager.h"

#include <stdio.h>
#include <utils/Timers.h>
#include <utils/Trace.h>

#include "config/KelvoConfig.h"
#include "core/KelvoState.h"
#include "core/Log.h"
#include "core/Time.h"
#include "core/WorkThread.h"
#include "heat/HeatProcessCenter.h"
#include "service/BinderManager.h"
#include "shelltemp/ShellTempFitting.h"
#include "thermalstatus/KelvoThermalStatus.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::MessageManager)

namespace kelvo {

namespace {

using android::Looper;
using android::Message;

constexpr size_t kTraceNameSize = 128;

nsecs_t millisecondsToNanos(int milliseconds) {
    return ms2ns(nsecs_t{milliseconds});
}

KelvoMessage flashSceneMessage() {
    KelvoMessage message;
    message.what = MSG_LOAD_FLASH_SCENE;
    return message;
}

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

void MessageHandle::handleMessage(const Message&) {
    MessageManager::getInstance().handleMessage(mMessage);
}

MessageManager::MessageManager()
      : mLooper(new Looper(false)),
        mThrottlingHandler(new MessageHandle(flashSceneMessage())),
        mScenes(this) {}

void MessageManager::joinLoop() {
    KLOGI("MessageManager polling!!");
    pollForever(mLooper);
}

int MessageManager::sendMessage(const KelvoMessage& message) {
    mLooper->sendMessage(new MessageHandle(message), Message(message.what));
    return 0;
}

int MessageManager::sendMessageDelayed(const KelvoMessage& message, int delayMs) {
    mLooper->sendMessageDelayed(millisecondsToNanos(delayMs), new MessageHandle(message),
                                Message(message.what));
    return 0;
}

int MessageManager::sendThrottlingDelayMessage(int delayMs) {
    KLOGD("delay sendThrottlingDelayMessage, delayMs:%d, cur:%d", delayMs, monotonicSeconds());
    mLooper->sendMessageDelayed(millisecondsToNanos(delayMs), mThrottlingHandler,
                                Message(MSG_LOAD_FLASH_SCENE));
    return 0;
}

int MessageManager::removeThrottlingDelayMessage() {
    KLOGD("delay removeDelayMessage");
    mLooper->removeMessages(mThrottlingHandler);
    return 0;
}

void MessageManager::handleMessage(const KelvoMessage& message) {
    KLOGD("MessageManager handling message:%d json:%s", message.what, message.sValue.c_str());
    char name[kTraceNameSize] = {};
    if (ATRACE_ENABLED()) {
        snprintf(name, sizeof(name), "handleMessage:%d", message.what);
    }
    ATRACE_NAME(name);
    ATRACE_NAME("handleMessage");
    dispatch(message);
}

void MessageManager::dispatch(const KelvoMessage& message) {
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
        case MSG_LOAD_FLASH_SCENE:
            return mScenes.applyFlash();
        case MSG_SCENE_OP_CODE:
            return applySceneOpCode(message.iValue);
        case MSG_BROADCAST_THERMAL:
            return onBroadcastThermal(message);
        case MSG_SCREEN_FOLD:
            return mScenes.applyFold(message.iValue);
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

void MessageManager::applySceneOpCode(int32_t opCode) {
    android::Mutex::Autolock lock(mMutex);
    mScenes.applyOpCode(opCode);
}

bool MessageManager::switchScene(const std::string& scene) {
    return ShellTempFitting::getInstance().switchFittingScene(scene) != 0;
}

void MessageManager::scheduleFlash(int delayMs) {
    sendThrottlingDelayMessage(delayMs);
}

void MessageManager::cancelFlash() {
    removeThrottlingDelayMessage();
}

}  // namespace kelvo
