#pragma once

#include <functional>
#include <string>

#include "sim/tree/DeviceTree.h"

namespace sim {

/** True in a process that runBelowOwnRoot() has started. */
bool runsBelowOwnRoot();

/**
 * Runs this program again with the same arguments below a new device root of its own: the daemon
 * reads root and properties while a program is loaded, so they must stand before it starts. Returns
 * the second run's exit status (128 + N when signal N ended it) after removing the folder, also
 * when this process is told to stop. `prepare` fills the tree. Throws std::system_error.
 */
int runBelowOwnRoot(char** argv, const std::function<void(DeviceTree&)>& prepare);

}  // namespace sim
