#pragma once

#include <cstdint>
#include <string>

#include "sim/scenario/Scenario.h"

/** What was run. Texts are empty where there is nothing to say. */
struct RunInfo {
    std::string name;
    std::string scenario;       // the file
    std::string configuration;  // which files the phone has: "main, platform"
    std::string configVersion;  // of the main file
    std::string platform;       // that the phone's nodes describe
    std::string project;        // likewise
    int64_t startMs = 0;        // wall clock at t = 0, ms since the epoch
    int64_t durationMs = 0;
};

/** `file` is how the user named the scenario. */
RunInfo runInfo(const sim::Scenario& scenario, const std::string& file);
