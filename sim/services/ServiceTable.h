#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "sim/scenario/Scenario.h"
#include "sim/services/PhoneService.h"

namespace sim {

/** A kind of service that the phone can have. */
struct ServiceKind {
    const char* name;      // as scenarios call it
    const char* declared;  // what the phone's manifest promises for it; null: nothing
    bool (*concerns)(const Deed& deed);
    std::unique_ptr<PhoneService> (*make)(const ServiceContext& context);
};

/** Whether an instance that a manifest promises is a HIDL one, which clients wait for. */
inline bool isHidlInstance(std::string_view instance) {
    return instance.starts_with("hidl/");
}

/** The kind of this name; throws std::invalid_argument when there is none. */
const ServiceKind& serviceKind(const std::string& name);

/** The kind that the scenario's service `name` is on its phone; null when it is not simulated. */
const ServiceKind* kindOn(const Scenario& scenario, const std::string& name);

}  // namespace sim
