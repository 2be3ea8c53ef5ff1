#pragma once

#include <functional>

#include "sim/scenario/Event.h"
#include "sim/services/ServiceValues.h"

namespace sim {

/**
 * A service of the phone that is up: it is registered when this is made and dies with it. One
 * thread makes, tells and ends it; its clients call it on threads of their own.
 */
class PhoneService {
  public:
    PhoneService() = default;
    virtual ~PhoneService() = default;
    PhoneService(const PhoneService&) = delete;
    PhoneService& operator=(const PhoneService&) = delete;

    /**
     * An action that concerns this service happens now; the values have taken it already. A service
     * that only answers has nothing to do.
     */
    virtual void perform(const Deed&) {}
    /** Hands over events that only wait to be handed over. */
    virtual void takeEvents() {}
};

/** What a service is made with. Everything lives longer than the service. */
struct ServiceContext {
    const ServiceValues& values;
    /** Told what the daemon did: an event without its time. Called on any thread. */
    std::function<void(Event event)> onEvent;
    /** Told when a client has registered a callback. Called on any thread. */
    std::function<void()> onClient = [] {};
};

}  // namespace sim
