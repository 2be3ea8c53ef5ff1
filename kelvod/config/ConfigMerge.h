#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace kelvo {

/** A part of the configuration files that overrides what came before it. */
struct OverrideSection {
    enum class Kind {
        PLATFORM,           // main file, member named by the platform
        PROJECT,            // main file, member named by the project
        PROJECT_GROUP,      // main file, member whose name lists projects
        SUB_FILE,           // top level of the sub-file
        SUB_PROJECT,        // sub-file, member named by the project
        SUB_PROJECT_GROUP,  // sub-file, member whose name lists projects
    };
    Kind kind;
    std::string name;  // of the member; empty for the sub-file's top level
};

/** Is told how a document comes about; each call is made on the merging thread, in merge order. */
class MergeObserver {
  public:
    virtual ~MergeObserver() = default;
    /** A section applies; its members follow. */
    virtual void onSection(const OverrideSection& section, const Json::Value& content) = 0;
    /** A section would apply but is no object. */
    virtual void onIgnoredSection(const OverrideSection& section) = 0;
    /** The member at `path` gets a new value, as a whole. */
    virtual void onReplaced(const std::vector<std::string>& path, const Json::Value& value) = 0;
};

/**
 * Deep merge of an object into an object: nulls are skipped, objects merge with objects, all else
 * replaces. `source` must not be a part of `destination`. Anything but objects is left alone. 0.
 */
int updateJson(Json::Value& destination, const Json::Value& source,
               MergeObserver* observer = nullptr);

/**
 * Merges the project groups of `source` that name the project into `destination`, which may be the
 * same document. `kind` is what the observer is told they are.
 */
void testKelvoConfig(const Json::Value& source, Json::Value& destination,
                     const std::string& project, OverrideSection::Kind kind,
                     MergeObserver* observer);

/**
 * Turns a parsed main file into the document in force: its sections for the platform and the
 * project, then the sub-file (null: none), which only a known platform has.
 */
void mergeConfig(Json::Value& root, const Json::Value& subRoot, const std::string& platform,
                 const std::string& project, MergeObserver* observer);

}  // namespace kelvo
