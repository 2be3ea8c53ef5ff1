#pragma once

#include <CLI/CLI.hpp>

/** Adds `kelvosim trace`, which puts a thermocouple's readings beside a recorded trace. */
void addTrace(CLI::App& app);
