#include "MergeExplanation.h"

#include <algorithm>

#include "JsonLayout.h"
#include "kelvoconf/lint/KeyPath.h"

namespace kelvoconf {

namespace {

bool startsWith(const MergeExplanation::Path& path, const MergeExplanation::Path& prefix) {
    return path.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), path.begin());
}

std::string pathText(const MergeExplanation::Path& path) {
    std::string text;
    for (const std::string& name : path) {
        text += (text.empty() ? "" : ".") + kelvo::lint::nameInPath(name);
    }
    return text;
}

Json::Value pathArray(const MergeExplanation::Path& path) {
    Json::Value array(Json::arrayValue);
    for (const std::string& name : path) {
        array.append(name);
    }
    return array;
}

}  // namespace

void MergeExplanation::onSection(const kelvo::OverrideSection& section, const Json::Value&) {
    mSection = section;
}

void MergeExplanation::onIgnoredSection(const kelvo::OverrideSection& section) {
    mIgnored.push_back(section);
}

void MergeExplanation::onReplaced(const Path& path, const Json::Value& value) {
    forget(path);
    add(path, value);
}

// Drops what stood at or below the path, and a value above it that has given way to an object.
void MergeExplanation::forget(const Path& path) {
    std::erase_if(mEntries, [&path](const auto& entry) {
        return startsWith(entry.first, path) || startsWith(path, entry.first);
    });
}

void MergeExplanation::add(const Path& path, const Json::Value& value) {
    if (!value.isObject() || value.empty()) {
        mEntries[path] = {value, mSection};
        return;
    }
    for (const std::string& name : value.getMemberNames()) {
        Path member = path;
        member.push_back(name);
        add(member, value[name]);
    }
}

std::string sectionLabel(const kelvo::OverrideSection& section) {
    using Kind = kelvo::OverrideSection::Kind;
    const std::string name = pathText({section.name});
    switch (section.kind) {
        case Kind::PLATFORM:
            return "main: platform section " + name;
        case Kind::PROJECT:
            return "main: project section " + name;
        case Kind::PROJECT_GROUP:
            return "main: project group " + name;
        case Kind::SUB_FILE:
            return "sub: top level";
        case Kind::SUB_PROJECT:
            return "sub: project section " + name;
        case Kind::SUB_PROJECT_GROUP:
            return "sub: project group " + name;
    }
    return {};
}

std::string toText(const MergeExplanation& explanation) {
    std::string text;
    for (const auto& [path, entry] : explanation.entries()) {
        text += pathText(path) + " = " + compactJson(entry.value) + "  # " +
                sectionLabel(entry.section) + "\n";
    }
    return text;
}

std::string toJsonLines(const MergeExplanation& explanation) {
    std::string text;
    for (const auto& [path, entry] : explanation.entries()) {
        text += R"({"path":)" + compactJson(pathArray(path)) + R"(,"value":)" +
                compactJson(entry.value) + R"(,"section":)" +
                compactJson(sectionLabel(entry.section)) + "}\n";
    }
    return text;
}

}  // namespace kelvoconf
