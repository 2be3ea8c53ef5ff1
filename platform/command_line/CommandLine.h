#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Failure.h"

// What all programs of this tree have in common towards who runs them: "--help" and "--version",
// status 0 for success, and for a failure one line "PROGRAM: what is wrong: where" on standard
// error.

namespace command_line {

/** What is added about a word that none of the known ones is: ", did you mean …?", or nothing. */
using Suggestion =
        std::function<std::string(std::string_view word, const std::vector<std::string>& known)>;

/**
 * Runs a program; what it returns is its exit status. `setUp` describes the command line; what the
 * program does are callbacks of it, which set the status unless it is 0. Any other exception than
 * WrongUsage and ReaderGone counts as a failure, as does standard output that cannot be written.
 * Signals of closed pipes are ignored from here on, and none of the standard descriptors is free:
 * no file of the program's is taken for one of them.
 */
int run(int argc, char** argv, const std::string& name, const std::string& purpose,
        const std::function<void(CLI::App& app, int& status)>& setUp,
        const Suggestion& suggestion = {});

/** What the help of a command ends with: command lines that work, one a line. */
void setExamples(CLI::App& command, const std::vector<std::string>& lines);

}  // namespace command_line
