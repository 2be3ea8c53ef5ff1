#pragma once

#include <string>

/** `kelvosim check`: reads everything a scenario names and prints a line about it. */
void checkScenario(const std::string& file);
