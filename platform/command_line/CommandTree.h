#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace command_line {

/** The commands of an app that its help shows, in its order. */
std::vector<const CLI::App*> commandsOf(const CLI::App& app);

/** Those of its options that its help shows, positional ones or the others. */
std::vector<const CLI::Option*> optionsOf(const CLI::App& app, bool positional);

/** The names of an option as they are typed, short ones first. */
std::vector<std::string> namesOf(const CLI::Option& option);

/** Whether a value stands after the option's name. */
bool takesValue(const CLI::Option& option);

/**
 * Calls for the app and everything below it. `path` is what is typed after the program's name:
 * "" for the app, "heat start" for a command of a command.
 */
void visitCommands(const CLI::App& app,
                   const std::function<void(const CLI::App& app, const std::string& path)>& visit);

}  // namespace command_line
