#pragma once

#include <limits>
#include <memory>

// Needs the two above.
#include <binder/Binder.h>
#include <utils/Mutex.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "sim/Event.h"

namespace sim {

/**
 * A client's listener that the daemon calls, with a death that can be simulated within one process.
 * Thread-safe. `onCall` hears of each call, also of one that is made to fail.
 */
class FrameworkListener : public android::BBinder {
  public:
    using Members = std::vector<std::pair<std::string, Json::Value>>;
    /** The event's name, and its members after "listener". */
    using CallObserver = std::function<void(const std::string& event, const Members& members)>;

    explicit FrameworkListener(CallObserver onCall) : mOnCall(std::move(onCall)) {}

    /** The next `count` calls of this transaction code fail. */
    void failNext(uint32_t code, int32_t count);
    /** From now on it is as if the listener's process were gone; whoever linked hears of it. */
    void die();

    const android::String16& getInterfaceDescriptor() const override;
    bool isBinderAlive() const override;
    android::status_t linkToDeath(const android::sp<DeathRecipient>& recipient, void* cookie,
                                  uint32_t flags) override;
    android::status_t unlinkToDeath(const android::wp<DeathRecipient>& recipient, void* cookie,
                                    uint32_t flags,
                                    android::wp<DeathRecipient>* outRecipient) override;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    bool takeFailure(uint32_t code);

    const CallObserver mOnCall;
    mutable android::Mutex mMutex;  // guards what follows; a leaf, nothing is called under it
    bool mAlive GUARDED_BY(mMutex) = true;
    std::map<uint32_t, int32_t> mFailures GUARDED_BY(mMutex);  // by code
    std::vector<android::wp<DeathRecipient>> mRecipients GUARDED_BY(mMutex);
};

}  // namespace sim
