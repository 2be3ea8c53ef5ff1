#include "sim/services/PhoneServices.h"

namespace sim {

PhoneServices::PhoneServices(const Scenario& scenario, Launcher launcher, Observer onEvent)
      : mScenario(scenario),
        mLauncher(std::move(launcher)),
        mContext{.values = mValues, .onEvent = std::move(onEvent)} {}

std::unique_ptr<PhoneService> PhoneServices::launchHere(const ServiceKind& kind,
                                                        const ServiceContext& context) {
    return kind.make(context);
}

std::vector<std::string> PhoneServices::declaredInstances() const {
    std::vector<std::string> instances;
    for (const std::string& name : allServices()) {
        const ServiceKind* const kind = kindOn(mScenario, name);
        if (kind == nullptr || kind->declared == nullptr) {
            continue;
        }
        // A client's start waits without an end for a HIDL service that is promised and absent.
        if (!isHidlInstance(kind->declared) || mScenario.services.contains(name)) {
            instances.emplace_back(kind->declared);
        }
    }
    return instances;
}

void PhoneServices::start() {
    for (const std::string& name : mScenario.services) {
        startService(name);
    }
}

void PhoneServices::startService(const std::string& name) {
    const ServiceKind* const kind = kindOn(mScenario, name);
    if (kind != nullptr && !mRunning.contains(name)) {
        mRunning[name] = {kind, mLauncher(*kind, mContext)};
    }
}

void PhoneServices::perform(const ServiceState& state) {
    if (state.up) {
        startService(state.name);
    } else {
        // Out of the map while it dies: its clients may do something meanwhile.
        const auto dying = mRunning.extract(state.name);
    }
}

void PhoneServices::perform(const Deed& deed) {
    mValues.take(deed);
    for (const auto& [name, running] : mRunning) {
        if (running.kind->concerns(deed)) {
            running.service->perform(deed);
        }
    }
}

void PhoneServices::takeEvents() {
    for (const auto& [name, running] : mRunning) {
        running.service->takeEvents();
    }
}

}  // namespace sim
