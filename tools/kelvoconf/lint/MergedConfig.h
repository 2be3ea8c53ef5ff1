#pragma once

#include <json/value.h>

#include <map>
#include <string>
#include <vector>

#include "config/ConfigMerge.h"
#include "kelvoconf/lint/ConfigNode.h"
#include "kelvoconf/lint/SourceFile.h"

namespace kelvo::lint {

/** Where something stands for the people who wrote it. */
struct Place {
    std::string file;
    std::string path;
    int32_t line = 0;
};

/** The document in force, whose values know which file and section they come from. */
class MergedConfig : public kelvo::MergeObserver {
  public:
    /** The files outlive this; `sub` may be null. */
    MergedConfig(const SourceFile& main, const SourceFile* sub, const std::string& platform,
                 const std::string& project);
    MergedConfig(const MergedConfig&) = delete;
    MergedConfig& operator=(const MergedConfig&) = delete;

    ConfigNode root() const { return {mRoot, KeyPath()}; }
    /** Place of a value of the document, or of one that is missing. */
    Place placeOf(const KeyPath& path) const;
    /** Sections that would apply but are no objects. */
    const std::vector<OverrideSection>& ignoredSections() const { return mIgnored; }
    /** Place of a section of either file. */
    Place placeOf(const OverrideSection& section) const;

    void onSection(const OverrideSection& section, const Json::Value& content) override;
    void onIgnoredSection(const OverrideSection& section) override;
    void onReplaced(const std::vector<std::string>& path, const Json::Value& value) override;

  private:
    const SourceFile& fileOf(const OverrideSection& section) const;

    const SourceFile& mMain;
    const SourceFile* const mSub;
    Json::Value mRoot;
    OverrideSection mSection{};  // that is being applied
    // Which section set the value at a path, as a whole; what no entry begins is the main file's.
    std::map<std::vector<std::string>, OverrideSection> mOrigins;
    std::vector<OverrideSection> mIgnored;
};

}  // namespace kelvo::lint
