#include <hidl_linux/DeathLinks.h>

#include <algorithm>

namespace android::hardware::details {

/** The binder holds links weakly, DeathLinks strongly; the recipient is the client's own. */
class DeathLinks::Link : public IBinder::DeathRecipient {
  public:
    Link(const sp<hidl_death_recipient>& recipient, uint64_t cookie,
         const sp<hidl::base::V1_0::IBase>& proxy)
          : mRecipient(recipient), mCookie(cookie), mProxy(proxy) {}

    void binderDied(const wp<IBinder>&) override {
        const sp<hidl_death_recipient> recipient = mRecipient.promote();
        // Held, so that the recipient can tell which object it was.
        const sp<hidl::base::V1_0::IBase> proxy = mProxy.promote();
        if (recipient != nullptr && proxy != nullptr) {
            recipient->serviceDied(mCookie, proxy);
        }
    }

    bool isOf(const sp<hidl_death_recipient>& recipient) const {
        return mRecipient.unsafe_get() == recipient.get();
    }

  private:
    const wp<hidl_death_recipient> mRecipient;
    const uint64_t mCookie;
    const wp<hidl::base::V1_0::IBase> mProxy;
};

DeathLinks::DeathLinks(const sp<IBinder>& remote) : mRemote(remote) {}

DeathLinks::~DeathLinks() {
    for (const sp<Link>& link : mLinks) {
        mRemote->unlinkToDeath(link);
    }
}

bool DeathLinks::link(const sp<hidl_death_recipient>& recipient, uint64_t cookie,
                      const sp<hidl::base::V1_0::IBase>& proxy) {
    if (recipient == nullptr) {
        return false;
    }
    const sp<Link> link = new Link(recipient, cookie, proxy);
    // Kept first: a death that comes at once finds it alive.
    {
        AutoMutex lock(mLock);
        mLinks.push_back(link);
    }
    if (mRemote->linkToDeath(link) == OK) {
        return true;
    }
    AutoMutex lock(mLock);
    std::erase(mLinks, link);
    return false;
}

sp<DeathLinks::Link> DeathLinks::take(const sp<hidl_death_recipient>& recipient) {
    AutoMutex lock(mLock);
    const auto newest = std::find_if(mLinks.rbegin(), mLinks.rend(),
                                     [&](const sp<Link>& link) { return link->isOf(recipient); });
    if (newest == mLinks.rend()) {
        return nullptr;
    }
    sp<Link> taken = *newest;
    mLinks.erase(std::next(newest).base());
    return taken;
}

bool DeathLinks::unlink(const sp<hidl_death_recipient>& recipient) {
    const sp<Link> link = take(recipient);
    return link != nullptr && mRemote->unlinkToDeath(link) == OK;
}

}  // namespace android::hardware::details
