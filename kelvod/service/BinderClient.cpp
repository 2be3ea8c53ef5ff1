#include "service/BinderClient.h"

#include "base/Log.h"
#include "base/Time.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"

namespace kelvo {

using android::IBinder;
using android::Mutex;
using android::sp;
using android::wp;

/** Tells its client of the listener's death, unless the client is gone by then. */
class BinderClient::BinderDeathRecipient : public IBinder::DeathRecipient {
  public:
    explicit BinderDeathRecipient(BinderClient* owner) : mOwner(owner) {}

    void binderDied(const wp<IBinder>&) override {
        // Held while it is used: the registry may drop the client meanwhile.
        sp<BinderClient> owner;
        {
            Mutex::Autolock lock(mMutex);
            if (mOwner != nullptr) {
                owner = wp<BinderClient>(mOwner).promote();
            }
        }
        if (owner != nullptr) {
            owner->handleBinderDied();
        }
    }

    void forgetOwner() {
        Mutex::Autolock lock(mMutex);
        mOwner = nullptr;
    }

  private:
    Mutex mMutex;  // guards the owner; a leaf
    BinderClient* mOwner GUARDED_BY(mMutex);
};

BinderClient::BinderClient(int uid, const sp<IBinder>& binder)
      : mUid(uid),
        mBinder(binder),
        mDeathRecipient(new BinderDeathRecipient(this)),
        mNotifier(IKelvoNotifier::asInterface(binder)) {}

// Not in the constructor: the notice may come at once, on another thread, whose reference must not
// be the only one.
void BinderClient::onFirstRef() {
    const android::status_t status = mBinder->linkToDeath(mDeathRecipient);
    KLOGI("Register notifier successfully.");
    if (status == android::DEAD_OBJECT) {
        handleBinderDied();  // no notice would come any more
    }
}

BinderClient::~BinderClient() {
    mDeathRecipient->forgetOwner();
    mBinder->unlinkToDeath(mDeathRecipient);
}

/** Makes the call when the listener lives and this kind has not failed; gives its result. */
template <typename Call>
int32_t BinderClient::callUnlessFailed(int32_t& result, Call call) {
    if (mNotifier != nullptr && result != -1) {
        result = call(*mNotifier);
    }
    return result;
}

void BinderClient::notifyCallback(int status) {
    Mutex::Autolock lock(mMutex);
    callUnlessFailed(mStatusResult, [&](IKelvoNotifier& notifier) {
        return notifier.notifyThermalStatus(status);
    });
    KLOGD("notifyCallback result=%d", mStatusResult);
}

void BinderClient::notifyBroadCast(int level, int temp) {
    Mutex::Autolock lock(mMutex);
    callUnlessFailed(mBroadcastResult, [&](IKelvoNotifier& notifier) {
        return notifier.notifyThermalBroadCast(level, temp);
    });
    KLOGD("notifyBroadCast result=%d", mBroadcastResult);
}

void BinderClient::notifyAmbientTemp(int temp) {
    Mutex::Autolock lock(mMutex);
    callUnlessFailed(mAmbientResult,
                     [&](IKelvoNotifier& notifier) { return notifier.notifyAmbientThermal(temp); });
    KLOGD("notifyAmbientTemp result=%d", mAmbientResult);
}

void BinderClient::notifyComponentHeat(int level, int temp, const std::string& detail) {
    Mutex::Autolock lock(mMutex);
    callUnlessFailed(mComponentHeatResult, [&](IKelvoNotifier& notifier) {
        return notifier.notifyComponentHeat(level, temp, detail);
    });
    KLOGD("notifyComponentHeat result=%d", mComponentHeatResult);
}

void BinderClient::handleBinderDied() {
    KLOGI("BinderClient: binder(uid:%d) died!", mUid);
    {
        Mutex::Autolock lock(mMutex);
        mNotifier = nullptr;
        mDeathTime = monotonicNanos();
    }
    MessageManager::getInstance().sendMessage(messages::unregisterClient(mUid, mBinder));
}

}  // namespace kelvo
