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

/** Null when the listener is dead or this kind has failed. */
sp<IKelvoNotifier> BinderClient::notifierFor(int32_t BinderClient::*result, int32_t* last) {
    Mutex::Autolock lock(mMutex);
    *last = this->*result;
    return *last != -1 ? mNotifier : nullptr;
}

/** Makes the call when the listener lives and this kind has not failed; gives its result. */
template <typename Call>
int32_t BinderClient::callUnlessFailed(int32_t BinderClient::*result, Call call) {
    int32_t last = 0;
    const sp<IKelvoNotifier> notifier = notifierFor(result, &last);
    if (notifier == nullptr) {
        return last;
    }
    last = call(*notifier);
    Mutex::Autolock lock(mMutex);
    this->*result = last;
    return last;
}

void BinderClient::notifyCallback(int status) {
    const int32_t result = callUnlessFailed(
            &BinderClient::mStatusResult,
            [&](IKelvoNotifier& notifier) { return notifier.notifyThermalStatus(status); });
    KLOGD("notifyCallback result=%d", result);
}

void BinderClient::notifyBroadCast(int level, int temp) {
    const int32_t result = callUnlessFailed(
            &BinderClient::mBroadcastResult,
            [&](IKelvoNotifier& notifier) { return notifier.notifyThermalBroadCast(level, temp); });
    KLOGD("notifyBroadCast result=%d", result);
}

void BinderClient::notifyAmbientTemp(int temp) {
    const int32_t result = callUnlessFailed(
            &BinderClient::mAmbientResult,
            [&](IKelvoNotifier& notifier) { return notifier.notifyAmbientThermal(temp); });
    KLOGD("notifyAmbientTemp result=%d", result);
}

void BinderClient::notifyComponentHeat(int level, int temp, const std::string& detail) {
    const int32_t result =
            callUnlessFailed(&BinderClient::mComponentHeatResult, [&](IKelvoNotifier& notifier) {
                return notifier.notifyComponentHeat(level, temp, detail);
            });
    KLOGD("notifyComponentHeat result=%d", result);
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
