#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace command_line {

/**
 * The manual page of a program, section 1, as man(1) reads it: made of what "--help" says of the
 * program and each of its commands, footers with their examples included. What is in no group of
 * the help is left out here too.
 */
std::string manualPage(const CLI::App& app, const std::string& version);

}  // namespace command_line
