#pragma once

#include <android/binder_ibinder.h>
#include <binder/IBinder.h>
#include <utils/Mutex.h>

#include <atomic>
#include <vector>

/** See AIBinder_DeathRecipient_new. Thread-safe. */
struct AIBinder_DeathRecipient : public android::RefBase {
    explicit AIBinder_DeathRecipient(AIBinder_DeathRecipient_onBinderDied onDied);

    void setOnUnlinked(AIBinder_DeathRecipient_onBinderUnlinked onUnlinked);
    binder_status_t linkToDeath(const android::sp<android::IBinder>& binder, void* cookie);
    binder_status_t unlinkToDeath(const android::sp<android::IBinder>& binder, void* cookie);

    /** Takes back all links; the last thing that is asked of a recipient. */
    void unlinkAll();

  private:
    class Link;
    using Links = std::vector<android::sp<Link>>;

    /** Keeps a new link, so that the death it waits for finds it. */
    void add(const android::sp<Link>& link);
    /** Drops a link whose binder has died or that never came about. */
    void forget(const Link* link);

    const AIBinder_DeathRecipient_onBinderDied mOnDied;
    std::atomic<AIBinder_DeathRecipient_onBinderUnlinked> mOnUnlinked = nullptr;

    // Guards what follows; innermost: no binder is called and no link freed while it is held.
    android::Mutex mLock;
    Links mLinks GUARDED_BY(mLock);
};
