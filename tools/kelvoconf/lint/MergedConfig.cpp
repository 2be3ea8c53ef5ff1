#include "kelvoconf/lint/MergedConfig.h"

#include <algorithm>
#include <optional>

namespace kelvo::lint {

namespace {

using Kind = OverrideSection::Kind;

bool isOfSubFile(const OverrideSection& section) {
    return section.kind == Kind::SUB_FILE || section.kind == Kind::SUB_PROJECT ||
           section.kind == Kind::SUB_PROJECT_GROUP;
}

/** The names that a path begins with, up to its first element of an array. */
std::vector<std::string> leadingNames(const KeyPath& path) {
    std::vector<std::string> names;
    for (const KeyPath::Step& step : path.steps()) {
        const auto* name = std::get_if<std::string>(&step);
        if (name == nullptr) {
            break;
        }
        names.push_back(*name);
    }
    return names;
}

KeyPath below(const std::string& section, const KeyPath& path) {
    KeyPath whole = section.empty() ? KeyPath() : KeyPath(section);
    for (const KeyPath::Step& step : path.steps()) {
        const auto* name = std::get_if<std::string>(&step);
        whole = name != nullptr ? whole / *name : whole[std::get<Json::ArrayIndex>(step)];
    }
    return whole;
}

}  // namespace

MergedConfig::MergedConfig(const SourceFile& main, const SourceFile* sub,
                           const std::string& platform, const std::string& project)
      : mMain(main), mSub(sub), mRoot(main.root()) {
    mergeConfig(mRoot, sub != nullptr ? sub->root() : Json::Value(), platform, project, this);
}

void MergedConfig::onSection(const OverrideSection& section, const Json::Value&) {
    mSection = section;
}

void MergedConfig::onIgnoredSection(const OverrideSection& section) {
    mIgnored.push_back(section);
}

void MergedConfig::onReplaced(const std::vector<std::string>& path, const Json::Value&) {
    std::erase_if(mOrigins, [&path](const auto& origin) {
        return origin.first.size() >= path.size() &&
               std::equal(path.begin(), path.end(), origin.first.begin());
    });
    mOrigins[path] = mSection;
}

const SourceFile& MergedConfig::fileOf(const OverrideSection& section) const {
    return isOfSubFile(section) && mSub != nullptr ? *mSub : mMain;
}

Place MergedConfig::placeOf(const KeyPath& path) const {
    for (std::vector<std::string> names = leadingNames(path); !names.empty(); names.pop_back()) {
        const auto origin = mOrigins.find(names);
        if (origin != mOrigins.end()) {
            const SourceFile& file = fileOf(origin->second);
            const KeyPath inFile = below(origin->second.name, path);
            return {file.name(), inFile.text(), file.lineOf(inFile)};
        }
    }
    return {mMain.name(), path.text(), mMain.lineOf(path)};
}

Place MergedConfig::placeOf(const OverrideSection& section) const {
    const SourceFile& file = fileOf(section);
    const KeyPath path = below(section.name, KeyPath());
    return {file.name(), path.text(), file.lineOf(path)};
}

}  // namespace kelvo::lint
