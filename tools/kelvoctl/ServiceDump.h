#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kelvoctl {

/**
 * Asks a service for its dump and hands the text on as it comes. Throws Failure when the service is
 * absent or refuses, and after the dump's end what `take` threw.
 */
void dumpService(const std::string& name, const std::vector<std::string>& args,
                 const std::function<void(const char* bytes, size_t size)>& take);

/**
 * The configuration's version as the daemon's dump tells it, empty when it tells none. Like every
 * dump it makes the daemon hand over the day's statistics.
 */
std::string dumpedConfigVersion();

}  // namespace kelvoctl
