#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <map>
#include <string>

#include "service/BinderClient.h"

namespace kelvo {

/**
 * The registry of listeners, and the fan-out to all of them. All operations run on the work thread
 * and hold the registry across the calls to listeners: a listener that does not answer keeps the
 * work thread, and with it everyone else, waiting.
 */
class BinderManager : public android::Singleton<BinderManager> {
  public:
    /** Adds a listener and brings it up to date at once. 0, or -1 when it is there already. */
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

    // Guards the clients; taken before a client's mutex.
    android::Mutex mMutex;
    std::map<android::wp<android::IBinder>, android::sp<BinderClient>> mClients GUARDED_BY(mMutex);
};

}  // namespace kelvo
