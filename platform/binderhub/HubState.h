#pragma once

#include <string>

namespace binderhub {

class Hub;

/** What the hub holds, as JSON. */
std::string stateOf(const Hub& hub);

}  // namespace binderhub
