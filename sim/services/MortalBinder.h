#pragma once

#include <binder/Binder.h>
#include <utils/Mutex.h>

#include <vector>

namespace sim {

/**
 * A binder of this process that can die as if its process were gone: whoever linked to its death
 * hears of it at once, and calls fail. Thread-safe.
 */
class MortalBinder : public android::BBinder {
  public:
    /** Once; the recipients are called on this thread before it returns. */
    void die();

    bool isBinderAlive() const override;
    android::status_t pingBinder() override;
    android::status_t linkToDeath(const android::sp<DeathRecipient>& recipient, void* cookie,
                                  uint32_t flags) override;
    android::status_t unlinkToDeath(const android::wp<DeathRecipient>& recipient, void* cookie,
                                    uint32_t flags,
                                    android::wp<DeathRecipient>* outRecipient) override;

  private:
    // Guards what follows; a leaf, nothing is called under it.
    mutable android::Mutex mDeathMutex;
    bool mAlive GUARDED_BY(mDeathMutex) = true;
    std::vector<android::wp<DeathRecipient>> mRecipients GUARDED_BY(mDeathMutex);
};

/** Stands for a binder of another process: whoever gets it calls through it. Thread-safe. */
class RelayBinder : public MortalBinder {
  public:
    explicit RelayBinder(const android::sp<android::IBinder>& target) : mTarget(target) {}

    const android::String16& getInterfaceDescriptor() const override {
        return mTarget->getInterfaceDescriptor();
    }

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    const android::sp<android::IBinder> mTarget;
};

}  // namespace sim
