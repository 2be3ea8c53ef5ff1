#pragma once

#include <ostream>
#include <stdexcept>
#include <string>

// How a program fails. For the code that does not describe a command line: the library that reads
// one takes its time to compile.

namespace command_line {

inline constexpr int kFailed = 1;      // exit status
inline constexpr int kWrongUsage = 2;  // likewise

/** Ends the program with status 1. */
class Failure : public std::runtime_error {
  public:
    Failure(const std::string& problem, const std::string& place)
          : std::runtime_error(problem + ": " + place) {}
};

/** Ends it with status 2. */
class WrongUsage : public Failure {
  public:
    using Failure::Failure;
};

/** Ends it with status 0 and no word: who read its standard output has gone. */
class ReaderGone : public std::exception {};

/** Throws for output that is lost, with its errno: ReaderGone or a Failure. */
[[noreturn]] void failWriting(int error, const std::string& place);

/** The same when something of what was just written to the stream is lost: errno tells why. */
void checkWritten(const std::ostream& stream, const std::string& place);

/** Writes the line of a failure. */
void complain(const std::string& program, const std::string& problem);

}  // namespace command_line
