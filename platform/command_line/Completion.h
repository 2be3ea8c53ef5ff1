#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace command_line {

/**
 * A bash script that completes the program's commands, options and arguments; it needs nothing but
 * bash. The type names of options and arguments say what is offered: FILE and FOLDER paths, a set
 * in braces its words, any other NAME what the shell function "_PROGRAM_NAME" prints. Arguments
 * that are no paths are asked of "_PROGRAM_words COMMAND". Both functions need not be there: what
 * is sourced with the script may add them. Values with a delimiter are completed one by one.
 */
std::string bashCompletion(const CLI::App& app);

}  // namespace command_line
