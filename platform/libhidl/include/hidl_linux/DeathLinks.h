#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlSupport.h>
#include <utils/Mutex.h>

#include <vector>

namespace android::hardware::details {

/** The links to death that were made on one proxy; they end with it. Thread-safe. */
class DeathLinks {
  public:
    explicit DeathLinks(const sp<IBinder>& remote);
    ~DeathLinks();

    /** False for a null recipient, and when the binder is dead or takes no links. */
    bool link(const sp<hidl_death_recipient>& recipient, uint64_t cookie,
              const sp<hidl::base::V1_0::IBase>& proxy);
    /** False when there is none, or when it has told already. */
    bool unlink(const sp<hidl_death_recipient>& recipient);

  private:
    class Link;
    sp<Link> take(const sp<hidl_death_recipient>& recipient);

    const sp<IBinder> mRemote;
    Mutex mLock;  // guards mLinks; innermost, no binder is called while it is held
    std::vector<sp<Link>> mLinks GUARDED_BY(mLock);
};

}  // namespace android::hardware::details
