#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "sim/scenario/Scenario.h"
#include "sim/services/PhoneService.h"
#include "sim/services/ServiceTable.h"

namespace sim {

/**
 * The services of a phone: starts and kills them, and hands them what the scenario does. Values
 * survive the death of the service that answers them. Not thread-safe, but the observer is called
 * on the threads that services are called on.
 */
class PhoneServices {
  public:
    /** Makes a service run, in this process or another. */
    using Launcher = std::function<std::unique_ptr<PhoneService>(const ServiceKind& kind,
                                                                 const ServiceContext& context)>;
    using Observer = std::function<void(Event event)>;

    /** Nothing is up yet. `scenario` lives longer than this. */
    PhoneServices(const Scenario& scenario, Launcher launcher, Observer onEvent);

    /** Runs services as objects of this process, which has no binder driver. */
    static std::unique_ptr<PhoneService> launchHere(const ServiceKind& kind,
                                                    const ServiceContext& context);

    /** Names of the instances that the manifest of the scenario's phone promises. */
    std::vector<std::string> declaredInstances() const;

    /** Starts what the scenario has at its start. */
    void start();
    /** Performs an action that sets a service's value or makes it call back. */
    void perform(const Deed& deed);
    /** Starts or kills a service; one that is so already stays so. */
    void perform(const ServiceState& state);

    /** Hands over what services of other processes have told. */
    void takeEvents();

  private:
    struct Running {
        const ServiceKind* kind;
        std::unique_ptr<PhoneService> service;
    };
    void startService(const std::string& name);

    const Scenario& mScenario;
    const Launcher mLauncher;
    ServiceValues mValues;
    const ServiceContext mContext;
    std::map<std::string, Running> mRunning;  // by the scenario's name
};

}  // namespace sim
