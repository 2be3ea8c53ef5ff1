#pragma once

#include <cstdint>
#include <map>

#include "client/StatusListener.h"
#include "sim/services/MortalBinder.h"

namespace sim {

/**
 * A client's listener that the daemon calls, with a death that can be simulated.
 * Thread-safe. `onCall` hears of each call, also of one that is made to fail.
 */
class FrameworkListener : public MortalBinder {
  public:
    using CallObserver = client::StatusListener::CallObserver;

    explicit FrameworkListener(CallObserver onCall) : mOnCall(std::move(onCall)) {}

    /** The next `count` calls of this transaction code fail. */
    void failNext(uint32_t code, int32_t count);
    const android::String16& getInterfaceDescriptor() const override;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    bool takeFailure(uint32_t code);

    const CallObserver mOnCall;
    android::Mutex mMutex;  // guards what follows; a leaf, nothing is called under it
    std::map<uint32_t, int32_t> mFailures GUARDED_BY(mMutex);  // by code
};

}  // namespace sim
