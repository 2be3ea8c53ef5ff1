#pragma once

#include <string>

namespace kelvoconf {

/** Stores a JSON text as the daemon reads it. Throws Failure, as all commands. */
/** `force`: also a text that the daemon will reject. */
void encryptCommand(const std::string& in, const std::string& out, bool force);

/** Gives back the JSON text of a stored file, byte for byte. */
void decryptCommand(const std::string& in, const std::string& out);

/** The files of a phone. */
struct PhoneFiles {
    std::string platform;
    std::string project;
    std::string main;
    std::string sub;  // empty: no sub-file
};

/** Says on standard error what of these no phone would read. */
void warnOfFiles(const PhoneFiles& files);

struct MergeOptions {
    PhoneFiles files;
    bool explain = false;
    bool json = false;
};

/** Prints the document that the daemon would hold, or what the override sections did to it. */
void mergeCommand(const MergeOptions& options);

struct LintOptions {
    PhoneFiles files;
    bool onlyPlatform = false;  // that of `files`; else all that the document names
    bool onlyProject = false;
    std::string zones;  // list of zones or device root; empty: zones are not judged
    std::string trace;  // rows of temperatures; empty: those of the zones, if they have any
    bool json = false;
};

/** Prints every finding. Exit status 0 clean, 1 warnings only, 3 errors or unreadable files. */
int lintCommand(const LintOptions& options);

/** Prints scenes, models, zones and thresholds as tables. */
void showCommand(const PhoneFiles& files);

struct DraftOptions {
    std::string root;    // device root
    std::string output;  // file of the skeleton; empty: standard output
    bool zonesOnly = false;
    bool json = false;
};

/** Prints the zones of a device tree and a skeleton of a configuration for them. */
void draftCommand(const DraftOptions& options);

}  // namespace kelvoconf
