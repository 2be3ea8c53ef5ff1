// Override sections that cannot do what they are there for.

#include <algorithm>
#include <cctype>
#include <optional>

#include "common/NearestName.h"
#include "config/PlatformTable.h"
#include "kelvoconf/lint/Rules.h"
#include "kelvoconf/lint/SectionNames.h"

namespace kelvo::lint {

namespace {

/** The sections of one file. */
class SectionCheck {
  public:
    SectionCheck(const LintContext& context, const SourceFile& file, bool isMain)
          : mContext(context), mFile(file), mIsMain(isMain) {}

    void check() const {
        for (const auto& [name, node] : ConfigNode(mFile.root(), KeyPath()).members()) {
            if (isGroupName(name)) {
                checkGroup(name);
            } else if (isPlatformLike(name)) {
                checkPlatform(name);
            } else if (isListWithoutCommas(name) && name != mContext.input.project) {
                never(name, "projects in a list have commas between them",
                      "write commas, without blanks; a single name exactly as the phone's node "
                      "holds it");
            } else if (!mContext.input.project.empty() && name != mContext.input.project &&
                       comparable(name) == comparable(mContext.input.project)) {
                never(name, "the project's name is " + quoted(mContext.input.project) + " exactly",
                      "name the section exactly as the phone's node holds the project");
            }
        }
    }

  private:
    static std::string comparable(std::string name) {
        std::erase_if(name, [](unsigned char c) { return std::isspace(c) != 0; });
        std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
        return name;
    }

    Place placeOf(const std::string& name) const {
        const KeyPath path(name);
        return {mFile.name(), path.text(), mFile.lineOf(path)};
    }

    void never(const std::string& name, const std::string& why, const std::string& mend) const {
        mContext.findings.warning("section-never-applies", placeOf(name),
                                  {why, "never applies this section", mend});
    }

    void checkPlatform(const std::string& name) const {
        if (!mIsMain) {
            never(name, "a sub-file belongs to one platform and has sections for projects only",
                  "move its members to the top level of that platform's sub-file");
        } else if (!isDetectablePlatform(name)) {
            const auto nearest = common::nearestName(name, detectablePlatforms());
            never(name, "no phone reports the platform " + quoted(name),
                  nearest ? "write " + quoted(*nearest) : "drop the section");
        }
    }

    void checkGroup(const std::string& name) const {
        for (const std::string& project : projectsOf(name)) {
            if (project.empty()) {
                mContext.findings.warning(
                        "section-for-unknown-project", placeOf(name),
                        {"the list of projects has an empty piece",
                         "applies the section also to a phone whose project it cannot read",
                         "drop the comma that nothing follows"});
            } else if (project.find_first_not_of(" \t") > 0) {
                never(name, "the project " + quoted(project) + " begins with a blank",
                      "write the list without blanks: names are compared as they stand");
            }
        }
        checkShadow(name);
    }

    // In the main file a project's own section and its groups both apply.
    void checkShadow(const std::string& name) const {
        const std::string& project = mContext.input.project;
        if (mIsMain || project.empty() || !(ConfigNode(mFile.root(), KeyPath()) / project)) {
            return;
        }
        const auto projects = projectsOf(name);
        if (std::ranges::find(projects, project) != projects.end()) {
            mContext.findings.warning(
                    "section-shadowed", placeOf(name),
                    {"this sub-file has a section for " + quoted(project) + " alone, too",
                     "applies that one only; in a main file it would apply both",
                     "put the members of both into the project's own section"});
        }
    }

    const LintContext& mContext;
    const SourceFile& mFile;
    const bool mIsMain;
};

void notAnObject(const LintContext& context, const Place& place) {
    context.findings.error("section-not-object", place,
                           {"a section must be an object", "ignores the section",
                            "give the section members, or drop it"});
}

/** Sections for other phones, too: they are no better there. */
void checkKinds(const LintContext& context, const SourceFile& file) {
    for (const auto& [name, node] : ConfigNode(file.root(), KeyPath()).members()) {
        if ((isGroupName(name) || isPlatformLike(name)) && node && !node.value().isObject()) {
            notAnObject(context, {file.name(), node.path().text(), file.lineOf(node.path())});
        }
    }
}

}  // namespace

void checkSections(const LintContext& context) {
    for (const OverrideSection& section : context.config.ignoredSections()) {
        notAnObject(context, context.config.placeOf(section));
    }
    checkKinds(context, context.main);
    SectionCheck(context, context.main, true).check();
    if (context.sub != nullptr) {
        checkKinds(context, *context.sub);
        SectionCheck(context, *context.sub, false).check();
    }
}

}  // namespace kelvo::lint
