#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <string>

namespace bench {

/** CPU time (ns) of all threads of a process since its start. */
int64_t cpuNanos(pid_t pid);

/** Thread name → how often threads of that name went to sleep of their own accord. */
std::map<std::string, int64_t> voluntarySwitches(pid_t pid);

}  // namespace bench
