#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <json/value.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace client {

/** What the daemon tells a listener. */
struct ListenerCall {
    using Members = std::vector<std::pair<std::string, Json::Value>>;

    std::string event;              // "notify_thermal_status"
    Members members;                // its arguments by their names, in their order
    bool answersException = false;  // the reply is the header of a method without a result
};

/** The descriptor of a listener, which the daemon's calls begin with. */
const android::String16& listenerDescriptor();

/**
 * Reads a transaction that `listener` gets. UNKNOWN_TRANSACTION when the daemon has no such call,
 * PERMISSION_DENIED when it does not begin with the descriptor.
 */
android::status_t readListenerCall(android::IBinder& listener, uint32_t code,
                                   const android::Parcel& data, ListenerCall& call);

/** The names of the numbers that each kind of call carries, by its event. */
const std::map<std::string, std::vector<std::string>>& listenerEvents();

/** Writes the reply of a call that was taken; `reply` is null for a call without one. */
void answerListenerCall(const ListenerCall& call, android::Parcel* reply);

/** A client's listener. `onCall` is told of each call on a binder thread. Thread-safe. */
class StatusListener : public android::BBinder {
  public:
    using CallObserver =
            std::function<void(const std::string& event, const ListenerCall::Members& members)>;

    explicit StatusListener(CallObserver onCall) : mOnCall(std::move(onCall)) {}

    const android::String16& getInterfaceDescriptor() const override;

  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    const CallObserver mOnCall;
};

}  // namespace client
