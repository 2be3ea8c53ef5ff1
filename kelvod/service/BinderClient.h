#pragma once

#include <utils/Mutex.h>
#include <utils/RefBase.h>

#include <cstdint>
#include <string>

#include "service/IKelvoNotifier.h"

namespace kelvo {

/**
 * One registered listener. A kind of notification that failed once is never sent to it again; the
 * other kinds go on. The notify operations run on a thread of the fan-out, one at a time, the death
 * notice on a binder thread.
 */
class BinderClient : public android::RefBase {
  public:
    /** Links to the listener's death once the client is held. */
    BinderClient(int uid, const android::sp<android::IBinder>& binder);

    int32_t uid() const { return mUid; }

    void notifyCallback(int status);
    void notifyBroadCast(int level, int temp);
    void notifyAmbientTemp(int temp);
    void notifyComponentHeat(int level, int temp, const std::string& detail);

    /** Lets go of the listener and asks the message loop to remove this client. */
    void handleBinderDied();

  private:
    class BinderDeathRecipient;

    ~BinderClient() override;
    void onFirstRef() override;

    template <typename Call>
    int32_t callUnlessFailed(int32_t BinderClient::*result, Call call);
    android::sp<IKelvoNotifier> notifierFor(int32_t BinderClient::*result, int32_t* last);

    // Constant after construction.
    const int32_t mUid;
    const android::sp<android::IBinder> mBinder;
    android::sp<BinderDeathRecipient> mDeathRecipient;

    // Guards what follows; a leaf, the listener is called without it.
    android::Mutex mMutex;
    android::sp<IKelvoNotifier> mNotifier GUARDED_BY(mMutex);  // null once it died
    int64_t mDeathTime GUARDED_BY(mMutex) = 0;                 // monotonic, ns; nothing reads it
    // Latest result of each kind of notification; -1 ends it.
    int32_t mStatusResult GUARDED_BY(mMutex) = 0;
    int32_t mBroadcastResult GUARDED_BY(mMutex) = 0;
    int32_t mAmbientResult GUARDED_BY(mMutex) = 0;
    int32_t mComponentHeatResult GUARDED_BY(mMutex) = 0;
};

}  // namespace kelvo
