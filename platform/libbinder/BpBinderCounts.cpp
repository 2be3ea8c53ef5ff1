// How many proxies a process holds for each uid that gave it one, when it asked for the count.

#include "BpBinderCounts.h"

#include <binder/BpBinder.h>

namespace android {

// Guards sTrackingMap. Innermost lock.
Mutex BpBinder::sTrackingLock;
std::unordered_map<int32_t, uint32_t> BpBinder::sTrackingMap;
std::atomic_bool BpBinder::sCountByUidEnabled = false;

uint32_t BpBinder::getBinderProxyCount(uint32_t uid) {
    AutoMutex lock(sTrackingLock);
    const auto counted = sTrackingMap.find(static_cast<int32_t>(uid));
    return counted != sTrackingMap.end() ? counted->second : 0;
}

void BpBinder::getCountByUid(Vector<uint32_t>& uids, Vector<uint32_t>& counts) {
    AutoMutex lock(sTrackingLock);
    for (const auto& [uid, count] : sTrackingMap) {
        uids.add(static_cast<uint32_t>(uid));
        counts.add(count);
    }
}

void BpBinder::enableCountByUid() {
    setCountByUidEnabled(true);
}

void BpBinder::disableCountByUid() {
    setCountByUidEnabled(false);
}

void BpBinder::setCountByUidEnabled(bool enable) {
    sCountByUidEnabled.store(enable, std::memory_order_relaxed);
}

}  // namespace android
