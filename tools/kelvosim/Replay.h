#pragma once

#include <optional>
#include <string>

#include "ReplayRecording.h"

struct ReplayOptions {
    std::string scenario;
    std::string events;    // where the events go; "-" is standard output, empty nowhere
    bool changes = false;  // with those of scene and level
    std::string log;       // likewise the daemon's log
    std::string explain;   // likewise the reasons of its values
    std::optional<int> logLevel;
    RecordingOptions recording;  // with `otherConfig` the scenario is run with that one as well
};

/**
 * `kelvosim replay`: runs a scenario on the daemon's engines in virtual time. Returns the exit
 * status. `argv` is the program's own, which runs a second time below a device root of its own.
 */
int replayScenario(const ReplayOptions& options, char** argv);
