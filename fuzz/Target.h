#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>

/** What a target is fed with. */
using Bytes = std::span<const uint8_t>;

/** Takes any bytes, and ends the process when what it drives does wrong. */
struct Target {
    std::string_view name;  // of its folders in seeds/ and found/ too
    void (*run)(Bytes data);
};

/** All targets; none of them uses threads. */
std::span<const Target> allTargets();
/** Null when there is no such target. */
const Target* findTarget(std::string_view name);

/** Runs this program again below a device root of its own, unless it runs there already. */
void moveBelowOwnRoot(char** argv);

inline std::string_view textOf(Bytes data) {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

/** What must hold whatever the input is. */
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

// One a source file.
void fuzzClients(Bytes data);
void fuzzConfig(Bytes data);
void fuzzHub(Bytes data);
void fuzzLint(Bytes data);
void fuzzLoad(Bytes data);
void fuzzModels(Bytes data);
void fuzzNesting(Bytes data);
void fuzzNodes(Bytes data);
void fuzzNodesMtk(Bytes data);
void fuzzParcel(Bytes data);
void fuzzPeers(Bytes data);
void fuzzProperties(Bytes data);
void fuzzRadio(Bytes data);
void fuzzScenario(Bytes data);
void fuzzService(Bytes data);
void fuzzTaskStats(Bytes data);
void fuzzTrace(Bytes data);
void fuzzUsage(Bytes data);
