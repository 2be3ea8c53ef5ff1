#include "DeathRecipient.h"

#include <algorithm>
#include <utility>

#include "NdkBinder.h"
#include "StatusCodes.h"

using android::AutoMutex;
using android::IBinder;
using android::sp;
using android::wp;

/**
 * One binder, one cookie. The binder's list keeps a link weakly, the recipient strongly; its end is
 * what tells the owner that the cookie is free.
 */
class AIBinder_DeathRecipient::Link : public IBinder::DeathRecipient {
  public:
    Link(const sp<IBinder>& binder, void* cookie, AIBinder_DeathRecipient* recipient)
          : mBinder(binder),
            mCookie(cookie),
            mRecipient(recipient),
            mOnDied(recipient->mOnDied),
            mOnUnlinked(recipient->mOnUnlinked) {}

    bool connects(const sp<IBinder>& binder, void* cookie) const {
        return mBinder == binder && mCookie == cookie;
    }

    void binderDied(const wp<IBinder>&) override {
        mOnDied(mCookie);
        if (const sp<AIBinder_DeathRecipient> recipient = mRecipient.promote();
            recipient != nullptr) {
            recipient->forget(this);
        }
    }

    binder_status_t unlink(const sp<IBinder>& binder) {
        return statusToPass(binder->unlinkToDeath(this, mCookie));
    }

    void unlinkIfAlive() {
        if (const sp<IBinder> binder = mBinder.promote(); binder != nullptr) {
            unlink(binder);
        }
    }

  protected:
    ~Link() override {
        if (mOnUnlinked != nullptr) {
            mOnUnlinked(mCookie);
        }
    }

  private:
    const wp<IBinder> mBinder;
    void* const mCookie;
    const wp<AIBinder_DeathRecipient> mRecipient;
    const AIBinder_DeathRecipient_onBinderDied mOnDied;
    const AIBinder_DeathRecipient_onBinderUnlinked mOnUnlinked;
};

AIBinder_DeathRecipient::AIBinder_DeathRecipient(AIBinder_DeathRecipient_onBinderDied onDied)
      : mOnDied(onDied) {}

void AIBinder_DeathRecipient::setOnUnlinked(AIBinder_DeathRecipient_onBinderUnlinked onUnlinked) {
    mOnUnlinked = onUnlinked;
}

void AIBinder_DeathRecipient::add(const sp<Link>& link) {
    AutoMutex lock(mLock);
    mLinks.push_back(link);
}

void AIBinder_DeathRecipient::forget(const Link* link) {
    sp<Link> gone;  // ends after the lock, because that calls the owner
    AutoMutex lock(mLock);
    const auto found = std::find(mLinks.begin(), mLinks.end(), link);
    if (found != mLinks.end()) {
        gone = std::move(*found);
        mLinks.erase(found);
    }
}

binder_status_t AIBinder_DeathRecipient::linkToDeath(const sp<IBinder>& binder, void* cookie) {
    const sp<Link> link = new Link(binder, cookie, this);
    // Kept before it is linked: the binder may die, and the link be forgotten, at once.
    add(link);
    const android::status_t status = binder->linkToDeath(link, cookie);
    if (status != android::OK) {
        forget(link.get());
    }
    return statusToPass(status);
}

binder_status_t AIBinder_DeathRecipient::unlinkToDeath(const sp<IBinder>& binder, void* cookie) {
    sp<Link> found;
    {
        AutoMutex lock(mLock);
        const auto last = std::find_if(mLinks.rbegin(), mLinks.rend(), [&](const sp<Link>& link) {
            return link->connects(binder, cookie);
        });
        if (last == mLinks.rend()) {
            return STATUS_NAME_NOT_FOUND;
        }
        found = *last;
        mLinks.erase(std::next(last).base());
    }
    return found->unlink(binder);
}

void AIBinder_DeathRecipient::unlinkAll() {
    Links links;
    {
        AutoMutex lock(mLock);
        links.swap(mLinks);
    }
    for (const sp<Link>& link : links) {
        link->unlinkIfAlive();
    }
}

AIBinder_DeathRecipient* AIBinder_DeathRecipient_new(
        AIBinder_DeathRecipient_onBinderDied onBinderDied) {
    if (onBinderDied == nullptr) {
        return nullptr;
    }
    auto* recipient = new AIBinder_DeathRecipient(onBinderDied);
    recipient->incStrong(nullptr);
    return recipient;
}

void AIBinder_DeathRecipient_setOnUnlinked(AIBinder_DeathRecipient* recipient,
                                           AIBinder_DeathRecipient_onBinderUnlinked onUnlinked) {
    recipient->setOnUnlinked(onUnlinked);
}

void AIBinder_DeathRecipient_delete(AIBinder_DeathRecipient* recipient) {
    if (recipient != nullptr) {
        recipient->unlinkAll();
        recipient->decStrong(nullptr);
    }
}

binder_status_t AIBinder_linkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                     void* cookie) {
    if (binder == nullptr || recipient == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    return recipient->linkToDeath(binder->getBinder(), cookie);
}

binder_status_t AIBinder_unlinkToDeath(AIBinder* binder, AIBinder_DeathRecipient* recipient,
                                       void* cookie) {
    if (binder == nullptr || recipient == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    return recipient->unlinkToDeath(binder->getBinder(), cookie);
}
