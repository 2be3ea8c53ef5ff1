#pragma once

#include <stdexcept>
#include <string>

namespace kelvoconf {

/** What ends a command with status 1. Its text is "what is wrong: where". */
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** All bytes of a file; "-" is standard input. Throws Failure. */
std::string readInput(const std::string& path);

/**
 * Writes all bytes to a file, replacing it at once with a new one of mode 0644, so that a reader
 * sees the old file or the new. "-" is standard output; a device or pipe is written to as it
 * stands. Throws Failure or what NewFile throws.
 */
void writeOutput(const std::string& path, const std::string& bytes);

/** A line on standard error: "kelvoconf: warning: what: where". */
void warn(const std::string& what, const std::string& where);

}  // namespace kelvoconf
