#pragma once

#include <json/value.h>

#include <map>
#include <string>
#include <vector>

#include "config/ConfigMerge.h"

namespace kelvoconf {

/** What a merge did to the keys of the document: for each touched leaf, who set it last. */
class MergeExplanation : public kelvo::MergeObserver {
  public:
    using Path = std::vector<std::string>;
    struct Entry {
        Json::Value value;  // no object, but for an empty one
        kelvo::OverrideSection section;
    };

    void onSection(const kelvo::OverrideSection& section, const Json::Value& content) override;
    void onIgnoredSection(const kelvo::OverrideSection& section) override;
    void onReplaced(const Path& path, const Json::Value& value) override;

    const std::map<Path, Entry>& entries() const { return mEntries; }
    const std::vector<kelvo::OverrideSection>& ignored() const { return mIgnored; }

  private:
    void forget(const Path& path);
    void add(const Path& path, const Json::Value& value);

    kelvo::OverrideSection mSection{};
    std::map<Path, Entry> mEntries;
    std::vector<kelvo::OverrideSection> mIgnored;
};

/** "main: platform section SM8450", "sub: top level": where a value comes from. */
std::string sectionLabel(const kelvo::OverrideSection& section);

/** The entries as lines "PATH = VALUE  # SECTION", or as JSON Lines. */
std::string toText(const MergeExplanation& explanation);
std::string toJsonLines(const MergeExplanation& explanation);

}  // namespace kelvoconf
