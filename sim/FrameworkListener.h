#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "sim/Event.h"
#include "sim/services/MortalBinder.h"

namespace sim {

/**
 * A client's listener that the daemon calls, with a death that can be simulated.
 * Thread-safe. `onCall` hears of each call, also of one that is made to fail.
 */
class FrameworkListener : public MortalBinder {
  public:
    using Members = std::vector<std::pair<std::string, Json::Value>>;
    /** The event's name, and its members after "listener". */
    using CallObserver = std::function<void(const std::string& event, const Members& members)>;

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
