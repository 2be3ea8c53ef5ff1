#pragma once

#include "CommandLine.h"
#include "Output.h"

namespace kelvoctl {

// Each adds one command to the program; what it does runs while the command line is parsed and
// throws Failure. `output` and the options of a command live as long as the program.

void addAsks(CLI::App& app, Output& output);
void addCall(CLI::App& app, Output& output);
void addConfig(CLI::App& app, Output& output);
void addDump(CLI::App& app, Output& output);
void addGetprop(CLI::App& app, Output& output);
void addHeat(CLI::App& app, Output& output);
void addHeatReport(CLI::App& heat, Output& output);
void addList(CLI::App& app, Output& output);
void addPing(CLI::App& app, Output& output);
void addReload(CLI::App& app, Output& output);
void addSetprop(CLI::App& app, Output& output);
void addStatus(CLI::App& app, Output& output);
void addTells(CLI::App& app, Output& output);
void addWatch(CLI::App& app, Output& output);

}  // namespace kelvoctl
