#pragma once

#include <cstdint>
#include <string>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/Scenario.h"

namespace sim {

/** A code, count or uid: 0 to 2147483647. */
uint32_t unsigned31(const JsonPlace& place);

/** The caller's uid of an action, `absent` when it names none. */
uint32_t uidOr(const JsonPlace& action, uint32_t absent);

/** The name under which the scenario knows a listener; not empty. */
std::string listenerId(const JsonPlace& place);

/** The action "transact". */
Transact parseTransact(const JsonPlace& action);

}  // namespace sim
