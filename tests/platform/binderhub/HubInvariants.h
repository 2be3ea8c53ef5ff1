#pragma once

#include <string>

namespace binderhub {

class Hub;

/** What is wrong with the hub's bookkeeping; empty when nothing is. */
std::string checkInvariants(const Hub& hub);

}  // namespace binderhub
