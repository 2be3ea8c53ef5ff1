#pragma once

#include <string>
#include <vector>

struct LiveOptions {
    std::string scenario;
    std::string root;                 // empty: a temporary folder, removed at the end
    double speed = 1;                 // seconds of the scenario in one real second
    std::vector<std::string> kelvod;  // program and arguments; empty: the one beside kelvosim
};

/**
 * `kelvosim live`: runs a scenario in real time with kelvod as a process and prints a line a
 * second, until the scenario's end or a signal. Returns the exit status.
 */
int runLive(const LiveOptions& options);

/** What `runLive` starts as further processes: the framework's side of the phone. */
[[noreturn]] void playFramework(const std::string& scenario);
