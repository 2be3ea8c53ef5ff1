#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <type_traits>

#include "sim/framework/FrameworkListener.h"
#include "sim/scenario/Event.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** Whether an action is one of the framework's. */
template <typename T>
constexpr bool kIsFrameworkDeed =
        std::is_same_v<T, Listen> || std::is_same_v<T, Unlisten> ||
        std::is_same_v<T, ListenerDies> || std::is_same_v<T, ListenerFails> ||
        std::is_same_v<T, Transact> || std::is_same_v<T, Dump>;

/**
 * The framework's side of the service "kelvo": registers listeners, sends transactions, asks for
 * dumps. The same on a simulated phone in one process, where a call has the caller that the
 * scenario names, and on a live one, where the driver says who calls. One thread at a time;
 * `onEvent` is also called on the threads on which listeners are.
 */
class FrameworkClient {
  public:
    /** What the daemon did: an event without its time. */
    using Observer = std::function<void(Event event)>;

    explicit FrameworkClient(Observer onEvent) : mOnEvent(std::move(onEvent)) {}

    void perform(const Listen& listen);
    void perform(const Unlisten& unlisten);
    void perform(const ListenerDies& dies);
    void perform(const ListenerFails& fails);
    /** Observed when a reply is asked for, or when the call failed. */
    void perform(const Transact& transact);
    void perform(const Dump& dump);

  private:
    android::sp<FrameworkListener> listener(const std::string& id);
    void send(uint32_t code, const android::sp<android::IBinder>& binder, uint32_t uid);

    struct Listener {
        android::sp<FrameworkListener> binder;
        uint32_t uid = 0;  // that registered it
        bool dead = false;
    };
    const Observer mOnEvent;
    std::map<std::string, Listener> mListeners;  // by the scenario's id
};

}  // namespace sim
