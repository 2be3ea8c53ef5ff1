#pragma once

#include "sim/scenario/Scenario.h"

namespace sim {

/** What the process answers when an action is done; all other lines are events. */
inline constexpr char kFrameworkActionDone[] = "done";

/**
 * The framework's side of a live phone as a process of its own, told what to do by LiveFramework:
 * each line of standard input is the index of an action in the scenario's timeline, performed when
 * the daemon is there. Writes events as JSON lines with the time 0. Ends the process at the end of
 * its input.
 */
[[noreturn]] void runFrameworkProcess(const Scenario& scenario);

}  // namespace sim
