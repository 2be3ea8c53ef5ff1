#pragma once

#include <string>

namespace kelvoconf {

/** Stores a JSON text as the daemon reads it. Throws Failure, as all commands. */
void encryptCommand(const std::string& in, const std::string& out);

/** Gives back the JSON text of a stored file, byte for byte. */
void decryptCommand(const std::string& in, const std::string& out);

struct MergeOptions {
    std::string platform;
    std::string project;
    std::string main;
    std::string sub;  // empty: no sub-file
    bool explain = false;
    bool json = false;
};

/** Prints the document that the daemon would hold, or what the override sections did to it. */
void mergeCommand(const MergeOptions& options);

}  // namespace kelvoconf
