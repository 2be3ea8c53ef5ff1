#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "service/BinderClient.h"
#include "service/ListenerCalls.h"

namespace kelvo {

/**
 * The registry of listeners, and the fan-out to all of them. All operations run on the work thread
 * and return when the listeners have been told; one that does not answer is passed over.
 */
class BinderManager : public android::Singleton<BinderManager> {
  public:
    static constexpr size_t kMostListeners = 4096;
    static constexpr size_t kMostOfUid = 256;  // of one without privilege

    /**
     * Adds a listener and brings it up to date at once. 0, or -1 when it is there already or there
     * are too many.
     */
    int registerClient(int uid, const android::sp<android::IBinder>& binder);
    /** 0, or -1 when there is no such listener. */
    int unRegisterClient(int uid, const android::sp<android::IBinder>& binder);

    void notifyCallback(int status);
    void notifyBroadCast(int level, int temp);
    void notifyAmbientTemp(int temp);
    /** Sends nothing while there is no text to tell about the components. */
    void notifyHeatSource(int level, int temp);

  private:
    friend class android::Singleton<BinderManager>;
    BinderManager() = default;

    bool refuses(int uid, const android::wp<android::IBinder>& key);
    std::vector<Listener> listeners() const;

    ListenerCalls mCalls;
    // Guards the registry; a leaf. Listeners are called without it: only the work thread changes
    // the registry, so those that it held at the beginning of a fan-out are the ones to tell.
    mutable android::Mutex mMutex;
    std::map<android::wp<android::IBinder>, Listener> mClients GUARDED_BY(mMutex);
    std::map<int, size_t> mCountOfUid GUARDED_BY(mMutex);
};

}  // namespace kelvo
