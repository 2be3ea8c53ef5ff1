#pragma once

#include <string>
#include <vector>

#include "sim/scenario/Expectation.h"
#include "sim/scenario/JsonPlace.h"

namespace sim {

/** Adds what the member says a figure is to be; false when it names none. Throws ScenarioError. */
bool addCondition(const std::string& member, const JsonPlace& place,
                  std::vector<Condition>& conditions);

/** The members that addCondition() knows. */
std::vector<std::string> conditionMembers();

}  // namespace sim
