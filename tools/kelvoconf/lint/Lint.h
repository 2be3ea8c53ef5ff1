#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kelvoconf/lint/Finding.h"

namespace kelvo::lint {

class ModelRanges;

/** A configuration file, decrypted. */
struct ConfigFile {
    std::string name;       // for findings
    std::string text;       // as the daemon parses it
    int32_t firstLine = 1;  // of the file at which the text begins
};

/** What a phone would make its configuration of. */
struct LintInput {
    ConfigFile main;
    std::optional<ConfigFile> sub;  // the platform's; a main file on the data partition has none
    std::string platform;           // "SM8450"; empty: unknown to the daemon
    std::string project;            // as the phone's node holds it
    /** Types of thermal_zone0, 1, …; none: names and numbers of zones are not judged. */
    std::optional<std::vector<std::string>> zones;
    /** At what temperatures models are judged; null: they are not. Outlives the call. */
    ModelRanges* ranges = nullptr;
};

/**
 * Every mistake and trap of a configuration, in the order of files and lines; files that do not
 * parse are findings too. Merges and parses with the daemon's own code, which logs as it does in
 * the daemon: a caller that captures the daemon's log asks before or after.
 */
std::vector<Finding> lintConfig(const LintInput& input);

}  // namespace kelvo::lint
