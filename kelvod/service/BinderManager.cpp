#include "service/BinderManager.h"

#include "base/Log.h"
#include "core/KelvoState.h"
#include "heat/HeatProcessCenter.h"
#include "thermalstatus/KelvoThermalStatus.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::BinderManager)

namespace kelvo {

using android::IBinder;
using android::Mutex;
using android::sp;
using android::wp;

int BinderManager::registerClient(int uid, const sp<IBinder>& binder) {
    Mutex::Autolock lock(mMutex);
    const wp<IBinder> key = binder;
    if (mClients.count(key) != 0) {
        KLOGE("binder client(uid: %d) already added", uid);
        return -1;
    }
    const sp<BinderClient> client = new BinderClient(uid, binder);
    mClients.emplace(key, client);
    const int32_t status = KelvoThermalStatus::getInstance().getThermalStatus();
    client->notifyCallback(status);
    client->notifyBroadCast(status, KelvoState::getInstance().getTemp());
    return 0;
}

int BinderManager::unRegisterClient(int uid, const sp<IBinder>& binder) {
    Mutex::Autolock lock(mMutex);
    if (mClients.erase(wp<IBinder>(binder)) == 0) {
        KLOGE("unable to find binder client record for uid:%d", uid);
        return -1;
    }
    return 0;
}

void BinderManager::notifyCallback(int status) {
    Mutex::Autolock lock(mMutex);
    KLOGE("Entering %s, binder clients size %lu", __func__, mClients.size());
    for (const auto& [binder, client] : mClients) {
        client->notifyCallback(status);
    }
}

void BinderManager::notifyBroadCast(int level, int temp) {
    Mutex::Autolock lock(mMutex);
    KLOGD("Entering %s, binder clients size %lu", __func__, mClients.size());
    for (const auto& [binder, client] : mClients) {
        client->notifyBroadCast(level, temp);
    }
}

void BinderManager::notifyAmbientTemp(int temp) {
    Mutex::Autolock lock(mMutex);
    KLOGE("Entering %s, binder clients size %lu", __func__, mClients.size());
    for (const auto& [binder, client] : mClients) {
        client->notifyAmbientTemp(temp);
    }
}

void BinderManager::notifyHeatSource(int level, int temp) {
    const std::string detail = HeatProcessCenter::getInstance()->getCompentsHeatDetailInfo();
    if (detail.empty()) {
        return;
    }
    Mutex::Autolock lock(mMutex);
    KLOGD("Entering %s, binder clients size %lu", __func__, mClients.size());
    for (const auto& [binder, client] : mClients) {
        client->notifyComponentHeat(level, temp, detail);
    }
}

}  // namespace kelvo
