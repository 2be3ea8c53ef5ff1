#pragma once

#include <sys/types.h>

namespace kelvo {

/**
 * The process id that enters random seeds. A function of its own so that a simulated phone, whose
 * runs must repeat, can link another. Thread-safe.
 */
pid_t processIdForSeed();

}  // namespace kelvo
