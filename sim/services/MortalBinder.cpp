#include "sim/services/MortalBinder.h"

#include <algorithm>

namespace sim {

using android::OK;
using android::sp;
using android::status_t;
using android::wp;

void MortalBinder::die() {
    std::vector<wp<DeathRecipient>> recipients;
    {
        android::Mutex::Autolock lock(mDeathMutex);
        mAlive = false;
        recipients.swap(mRecipients);
    }
    for (const auto& weak : recipients) {
        if (const sp<DeathRecipient> recipient = weak.promote(); recipient != nullptr) {
            recipient->binderDied(this);
        }
    }
}

bool MortalBinder::isBinderAlive() const {
    android::Mutex::Autolock lock(mDeathMutex);
    return mAlive;
}

status_t MortalBinder::pingBinder() {
    return isBinderAlive() ? OK : android::DEAD_OBJECT;
}

status_t MortalBinder::linkToDeath(const sp<DeathRecipient>& recipient, void*, uint32_t) {
    android::Mutex::Autolock lock(mDeathMutex);
    if (!mAlive) {
        return android::DEAD_OBJECT;
    }
    mRecipients.emplace_back(recipient);
    return OK;
}

status_t MortalBinder::unlinkToDeath(const wp<DeathRecipient>& recipient, void*, uint32_t,
                                     wp<DeathRecipient>*) {
    android::Mutex::Autolock lock(mDeathMutex);
    const auto found = std::ranges::find(mRecipients, recipient);
    if (found == mRecipients.end()) {
        return mAlive ? android::NAME_NOT_FOUND : android::DEAD_OBJECT;
    }
    mRecipients.erase(found);
    return OK;
}

status_t RelayBinder::onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) {
    return isBinderAlive() ? mTarget->transact(code, data, reply, flags) : android::DEAD_OBJECT;
}

}  // namespace sim
