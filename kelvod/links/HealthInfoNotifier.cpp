#include "links/HealthInfoNotifier.h"

#include <android/binder_manager.h>

#include "base/Log.h"
#include "config/ConfigNames.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "links/AidlHealthInfoListener.h"
#include "links/HidlHealthInfoListener.h"

ANDROID_SINGLETON_STATIC_INSTANCE(HealthInfoNotifier)

HealthInfoNotifier::HealthInfoNotifier() {
    initHealthService();
}

void HealthInfoNotifier::initHealthService() {
    KLOGD("[%s], initHealthService entry.", __func__);
    // Callbacks may come before the constructor returns, so they do not ask for the singleton.
    const HealthObserver observer{[this](bool charging) { notifyChargeStats(charging); },
                                  [this](const std::string& scene) { notifyWirelessStats(scene); }};
    if (AServiceManager_isDeclared(AidlHealthInfoListener::instanceName().c_str())) {
        mAidlListener = ndk::SharedRefBase::make<AidlHealthInfoListener>(observer);
        if (mAidlListener->init() != 0) {
            // Kept, as the other one below: the service may come later.
            KLOGE("[%s], init aidl health service failed.", __func__);
        } else {
            KLOGD("[%s], init aidl health service success.", __func__);
        }
        return;
    }
    mHidlListener = new HidlHealthInfoListener(observer);
    if (mHidlListener->init() != 0) {
        KLOGE("[%s], init hidl health service failed.", __func__);
    } else {
        KLOGD("[%s], init hidl health service success.", __func__);
    }
}

bool HealthInfoNotifier::getOnChargeStats() {
    if (mAidlListener != nullptr) {
        mAidlListener->reconnect();
        return mAidlListener->state().isCharging();
    }
    if (mHidlListener->wasConnected()) {
        return mHidlListener->state().isCharging();
    }
    KLOGE("[%s], no health service inited.", __func__);
    return false;
}

bool HealthInfoNotifier::getChargerWirelessStats() {
    if (mAidlListener != nullptr) {
        mAidlListener->reconnect();
        return mAidlListener->state().isChargingWirelessly();
    }
    if (mHidlListener->wasConnected()) {
        return mHidlListener->state().isChargingWirelessly();
    }
    KLOGE("[%s], no health service inited.", __func__);
    return false;
}

void HealthInfoNotifier::notifyChargeStats(bool charging) {
    KLOGD("ChargeStats changed to %d\n", charging ? 1 : 0);
    kelvo::MessageManager::getInstance().sendMessage(kelvo::messages::chargeState(charging));
}

void HealthInfoNotifier::notifyWirelessStats(const std::string& scene) {
    KLOGD("chargerWireless changed to %s\n", scene.c_str());
    const auto opCode = scene == kelvo::scene::kWirelessCharge
                                ? kelvo::ShellFittingSceneOpCode::WIRELESS_CHARGE
                                : kelvo::ShellFittingSceneOpCode::RESTORE;
    kelvo::MessageManager::getInstance().sendMessage(kelvo::messages::sceneOpCode(opCode));
}
