#include "config/ConfigMerge.h"

#include <algorithm>

#include "base/SplitText.h"
#include "config/ConfigPath.h"

namespace kelvo {

namespace {

using Kind = OverrideSection::Kind;

/** The recursion of updateJson(), which knows where in the document it is. */
class Updater {
  public:
    explicit Updater(MergeObserver* observer) : mObserver(observer) {}

    void update(Json::Value& destination, const Json::Value& source) {
        for (const std::string& name : source.getMemberNames()) {
            if (const Json::Value* value = findMember(source, name); value != nullptr) {
                mPath.push_back(name);
                updateMember(destination[name], *value);
                mPath.pop_back();
            }
        }
    }

  private:
    void updateMember(Json::Value& destination, const Json::Value& value) {
        if (value.isObject() && destination.isObject()) {
            update(destination, value);
            return;
        }
        destination = value;
        if (mObserver != nullptr) {
            mObserver->onReplaced(mPath, value);
        }
    }

    MergeObserver* const mObserver;
    std::vector<std::string> mPath;
};

// The section is copied first: it may be a part of the very document that it overrides.
void applySection(Json::Value& destination, const Json::Value& content,
                  const OverrideSection& section, MergeObserver* observer) {
    const Json::Value copy = content;  // NOLINT(performance-unnecessary-copy-initialization)
    const bool applies = copy.isObject() || copy.isNull();
    if (observer != nullptr) {
        if (applies) {
            observer->onSection(section, copy);
        } else {
            observer->onIgnoredSection(section);
        }
    }
    updateJson(destination, copy, observer);
}

void applyMember(Json::Value& destination, const Json::Value& source,
                 const OverrideSection& section, MergeObserver* observer) {
    if (const Json::Value* content = findMember(source, section.name); content != nullptr) {
        applySection(destination, *content, section, observer);
    }
}

// Empty pieces count too: "A,,B" also names a phone whose project is unknown.
bool listsProject(const std::string& list, const std::string& project) {
    const std::vector<std::string_view> projects = splitText(list, ',');
    return std::find(projects.begin(), projects.end(), project) != projects.end();
}

void applySubFile(Json::Value& root, const Json::Value& subRoot, const std::string& project,
                  MergeObserver* observer) {
    applySection(root, subRoot, {Kind::SUB_FILE, ""}, observer);
    if (project.empty()) {
        return;
    }
    // Here a project's own section takes the place of the groups; in the main file both apply.
    if (findMember(subRoot, project) != nullptr) {
        applyMember(root, subRoot, {Kind::SUB_PROJECT, project}, observer);
    } else {
        testKelvoConfig(subRoot, root, project, Kind::SUB_PROJECT_GROUP, observer);
    }
}

}  // namespace

int updateJson(Json::Value& destination, const Json::Value& source, MergeObserver* observer) {
    const bool canMerge = destination.isObject() || destination.isNull();
    if (canMerge && source.isObject()) {
        Updater(observer).update(destination, source);
    }
    return 0;
}

void testKelvoConfig(const Json::Value& source, Json::Value& destination,
                     const std::string& project, Kind kind, MergeObserver* observer) {
    if (!source.isObject()) {
        return;
    }
    for (const std::string& name : source.getMemberNames()) {
        if (name.find(',') != std::string::npos && listsProject(name, project)) {
            applySection(destination, source[name], {kind, name}, observer);
        }
    }
}

void mergeConfig(Json::Value& root, const Json::Value& subRoot, const std::string& platform,
                 const std::string& project, MergeObserver* observer) {
    // An unknown platform is looked up all the same: the name is then empty, as a member's can be.
    applyMember(root, root, {Kind::PLATFORM, platform}, observer);
    if (!project.empty()) {
        applyMember(root, root, {Kind::PROJECT, project}, observer);
    }
    testKelvoConfig(root, root, project, Kind::PROJECT_GROUP, observer);
    if (!platform.empty() && !subRoot.isNull()) {
        applySubFile(root, subRoot, project, observer);
    }
}

}  // namespace kelvo
