// Keys that nobody reads: judged in each file as it stands, sections for other phones included.

#include <algorithm>
#include <cctype>

#include "common/NearestName.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/Rules.h"
#include "kelvoconf/lint/SectionNames.h"

namespace kelvo::lint {

namespace {

class KeyCheck {
  public:
    KeyCheck(const LintContext& context, const SourceFile& file, bool isMain)
          : mContext(context), mFile(file), mIsMain(isMain) {}

    void check() const { checkTopLevel(ConfigNode(mFile.root(), KeyPath()), !mIsMain); }

  private:
    Place placeOf(const ConfigNode& node) const {
        return {mFile.name(), node.path().text(), mFile.lineOf(node.path())};
    }

    bool isSection(const std::string& name, const ConfigNode& node) const {
        return isGroupName(name) || isPlatformLike(name) || name == mContext.input.project ||
               name == mContext.input.platform || isSectionOfProject(name, node);
    }

    void checkTopLevel(const ConfigNode& level, bool overrides) const {
        for (const auto& [name, node] : level.members()) {
            if (findKey({name}) == nullptr && isSection(name, node)) {
                checkTopLevel(node, true);
            } else {
                checkMember({name}, node, overrides);
            }
        }
    }

    void checkMember(const std::vector<std::string>& path, const ConfigNode& node,
                     bool overrides) const {
        if (findKey(path) == nullptr) {
            unknown(path, node);
            return;
        }
        if (!node) {
            isNull(node, overrides);
        }
        for (const auto& [name, member] : node.members()) {
            std::vector<std::string> below = path;
            below.push_back(name);
            checkMember(below, member, overrides);
        }
    }

    void unknown(const std::vector<std::string>& path, const ConfigNode& node) const {
        const std::vector<std::string> above(path.begin(), path.end() - 1);
        const std::string name = nearest(above, path.back());
        mContext.findings.warning("unknown-key", placeOf(node),
                                  {"nobody reads " + quoted(path.back()),
                                   name.empty() ? "ignores it"
                                                : "ignores it; the daemon reads " + quoted(name) +
                                                          nameRemark(above, name),
                                   name.empty() ? "drop it" : "write " + quoted(name)});
    }

    static std::string nameRemark(const std::vector<std::string>& above, const std::string& name) {
        const std::string right = rightSpelling(above, name);
        return right.empty() ? "" : ", spelled so";
    }

    static std::string rightSpelling(std::vector<std::string> above, const std::string& name) {
        above.push_back(name);
        const KeyEntry* const key = findKey(above);
        return key != nullptr ? key->rightSpelling : "";
    }

    static std::string nearest(const std::vector<std::string>& above, const std::string& name) {
        const std::vector<std::string> known = namesBelow(above);
        for (const std::string& candidate : known) {
            if (rightSpelling(above, candidate) == name) {
                return candidate;
            }
        }
        return common::nearestName(name, known).value_or("");
    }

    void isNull(const ConfigNode& node, bool overrides) const {
        mContext.findings.warning(
                "null-value", placeOf(node),
                {"null stands for nothing",
                 overrides ? "overrides nothing: the value from before stays"
                           : "does as if the key were missing",
                 overrides ? "write the value that is meant; a key cannot be taken away"
                           : "drop the key, or write a value"});
    }

    const LintContext& mContext;
    const SourceFile& mFile;
    const bool mIsMain;
};

}  // namespace

void checkKeys(const LintContext& context) {
    KeyCheck(context, context.main, true).check();
    if (context.sub != nullptr) {
        KeyCheck(context, *context.sub, false).check();
    }
}

}  // namespace kelvo::lint
