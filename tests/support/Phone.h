#pragma once

#include <stdlib.h>

#include "sim/tree/DeviceTree.h"

/** The device tree of the test's own phone. */
inline sim::DeviceTree phone() {
    return sim::DeviceTree(getenv("KELVO_ROOT"));
}
