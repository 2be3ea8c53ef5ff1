#include "service/BinderManager.h"

#include <memory>

#include "base/Log.h"
#include "core/KelvoState.h"
#include "heat/HeatProcessCenter.h"
#include "service/PrivilegedCaller.h"
#include "thermalstatus/KelvoThermalStatus.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::BinderManager)

namespace kelvo {

using android::IBinder;
using android::Mutex;
using android::sp;
using android::wp;

int BinderManager::registerClient(int uid, const sp<IBinder>& binder) {
    const wp<IBinder> key = binder;
    if (refuses(uid, key)) {
        return -1;
    }
    const bool trusted = isPrivilegedUid(static_cast<uid_t>(uid));
    const Listener listener{new BinderClient(uid, binder), mCalls.laneFor(uid, trusted)};
    {
        Mutex::Autolock lock(mMutex);
        mClients.emplace(key, listener);
        ++mCountOfUid[uid];
    }
    const int32_t status = KelvoThermalStatus::getInstance().getThermalStatus();
    mCalls.make({listener}, {NoticeKind::STATUS,
                             [status](BinderClient& client) { client.notifyCallback(status); }});
    mCalls.make({listener}, {NoticeKind::BROADCAST, [status](BinderClient& client) {
                                 client.notifyBroadCast(status,
                                                        KelvoState::getInstance().getTemp());
                             }});
    return 0;
}

bool BinderManager::refuses(int uid, const wp<IBinder>& key) {
    Mutex::Autolock lock(mMutex);
    if (mClients.count(key) != 0) {
        KLOGE("binder client(uid: %d) already added", uid);
        return true;
    }
    const auto known = mCountOfUid.find(uid);
    const size_t ofUid = known != mCountOfUid.end() ? known->second : 0;
    const bool trusted = isPrivilegedUid(static_cast<uid_t>(uid));
    if (mClients.size() < kMostListeners && (trusted || ofUid < kMostOfUid)) {
        return false;
    }
    KLOGE("binder client(uid: %d) refused, there are %zu of this uid and %zu in all", uid, ofUid,
          mClients.size());
    return true;
}

int BinderManager::unRegisterClient(int uid, const sp<IBinder>& binder) {
    Listener removed;  // released after the lock
    {
        Mutex::Autolock lock(mMutex);
        const auto found = mClients.find(wp<IBinder>(binder));
        if (found == mClients.end()) {
            KLOGE("unable to find binder client record for uid:%d", uid);
            return -1;
        }
        removed = found->second;
        mClients.erase(found);
        const auto count = mCountOfUid.find(removed.client->uid());
        if (--count->second == 0) {
            mCountOfUid.erase(count);
        }
    }
    mCalls.forget(removed);
    return 0;
}

std::vector<Listener> BinderManager::listeners() const {
    Mutex::Autolock lock(mMutex);
    std::vector<Listener> listeners;
    listeners.reserve(mClients.size());
    for (const auto& [binder, listener] : mClients) {
        listeners.push_back(listener);
    }
    return listeners;
}

void BinderManager::notifyCallback(int status) {
    std::vector<Listener> all = listeners();
    KLOGE("Entering %s, binder clients size %lu", __func__, all.size());
    mCalls.make(std::move(all), {NoticeKind::STATUS, [status](BinderClient& client) {
                                     client.notifyCallback(status);
                                 }});
}

void BinderManager::notifyBroadCast(int level, int temp) {
    std::vector<Listener> all = listeners();
    KLOGD("Entering %s, binder clients size %lu", __func__, all.size());
    mCalls.make(std::move(all), {NoticeKind::BROADCAST, [level, temp](BinderClient& client) {
                                     client.notifyBroadCast(level, temp);
                                 }});
}

void BinderManager::notifyAmbientTemp(int temp) {
    std::vector<Listener> all = listeners();
    KLOGE("Entering %s, binder clients size %lu", __func__, all.size());
    mCalls.make(std::move(all), {NoticeKind::AMBIENT,
                                 [temp](BinderClient& client) { client.notifyAmbientTemp(temp); }});
}

void BinderManager::notifyHeatSource(int level, int temp) {
    const auto detail = std::make_shared<const std::string>(
            HeatProcessCenter::getInstance()->getCompentsHeatDetailInfo());
    if (detail->empty()) {
        return;
    }
    std::vector<Listener> all = listeners();
    KLOGD("Entering %s, binder clients size %lu", __func__, all.size());
    mCalls.make(std::move(all),
                {NoticeKind::COMPONENT_HEAT, [level, temp, detail](BinderClient& client) {
                     client.notifyComponentHeat(level, temp, *detail);
                 }});
}

}  // namespace kelvo
