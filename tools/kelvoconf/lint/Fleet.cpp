#include "kelvoconf/lint/Fleet.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

#include "config/PlatformTable.h"
#include "kelvoconf/lint/ParsedFiles.h"
#include "kelvoconf/lint/SectionNames.h"

namespace kelvo::lint {

namespace {

/** What the sections of both files are for. */
struct Named {
    std::set<std::string> platforms;
    std::set<std::string> projects;
};

void addProjects(const std::string& group, std::set<std::string>& projects) {
    for (const std::string& project : projectsOf(group)) {
        if (project.find_first_not_of(" \t") == 0) {  // else it is no project's name
            projects.insert(project);
        }
    }
}

void addNames(const ConfigFile& text, bool isMain, Named& named) {
    const SourceFile file(text);
    for (const auto& [name, node] : ConfigNode(file.root(), KeyPath()).members()) {
        if (isGroupName(name)) {
            addProjects(name, named.projects);
        } else if (isPlatformLike(name)) {
            if (isMain && isDetectablePlatform(name)) {
                named.platforms.insert(name);
            }
        } else if (!isListWithoutCommas(name) && isSectionOfProject(name, node)) {
            named.projects.insert(name);
        }
    }
}

std::vector<PhoneName> withAnyOther(const std::set<std::string>& names) {
    std::vector<PhoneName> all(names.begin(), names.end());
    all.emplace_back();
    return all;
}

/** A sub-file is for one platform, which its name may tell: "kelvo_SM8450.conf". */
PhoneName platformOfSubFile(const LintInput& input) {
    constexpr std::string_view kPrefix = "kelvo_";
    const std::string file = input.sub ? input.sub->name : "";
    const std::string name = file.substr(file.rfind('/') + 1);
    if (!name.starts_with(kPrefix)) {
        return std::nullopt;
    }
    const std::string platform = name.substr(kPrefix.size(), name.find('.') - kPrefix.size());
    return isDetectablePlatform(platform) ? PhoneName(platform) : std::nullopt;
}

/** A platform that phones have and the fleet does not name: only then there is a sub-file. */
std::string otherPlatform(const Fleet& fleet) {
    for (const std::string& name : detectablePlatforms()) {
        if (std::ranges::find(fleet.platforms, PhoneName(name)) == fleet.platforms.end()) {
            return name;
        }
    }
    return "";
}

std::string otherProject(const Fleet& fleet) {
    std::string name = "other";
    while (std::ranges::find(fleet.projects, PhoneName(name)) != fleet.projects.end()) {
        name += "_";
    }
    return name;
}

void addHit(FleetFinding::Hits& hits, const PhoneName& platform, const PhoneName& project) {
    if (hits.empty() || hits.back().first != platform) {
        hits.push_back({platform, {}});
    }
    hits.back().second.push_back(project);
}

/** Findings in the order in which they came up. */
class Collection {
  public:
    void add(const Finding& finding, const PhoneName& platform, const PhoneName& project) {
        const auto [entry, isNew] = mPlaces.try_emplace(finding, mFindings.size());
        if (isNew) {
            mFindings.push_back({finding, {}});
        }
        addHit(mFindings[entry->second].hits, platform, project);
    }

    std::vector<FleetFinding> take(const std::vector<std::string>& files) {
        std::ranges::stable_sort(mFindings, {}, [&files](const FleetFinding& found) {
            return placeInOrder(found.finding, files);
        });
        return std::move(mFindings);
    }

  private:
    std::map<Finding, size_t> mPlaces;
    std::vector<FleetFinding> mFindings;
};

}  // namespace

Fleet fleetOf(const LintInput& input, bool onlyPlatform, bool onlyProject) {
    Named named;
    addNames(input.main, true, named);
    if (input.sub) {
        addNames(*input.sub, false, named);
    }
    const PhoneName platform = onlyPlatform ? input.platform : platformOfSubFile(input);
    return {platform ? std::vector{platform} : withAnyOther(named.platforms),
            onlyProject ? std::vector<PhoneName>{input.project} : withAnyOther(named.projects)};
}

std::vector<FleetFinding> lintFleet(LintInput input, const Fleet& fleet) {
    const ParsedFiles files(input);
    Collection findings;
    for (const PhoneName& platform : fleet.platforms) {
        input.platform = platform.value_or(otherPlatform(fleet));
        for (const PhoneName& project : fleet.projects) {
            input.project = project.value_or(otherProject(fleet));
            for (const Finding& finding : lintParsed(files, input)) {
                findings.add(finding, platform, project);
            }
        }
    }
    return findings.take({input.main.name, input.sub ? input.sub->name : ""});
}

}  // namespace kelvo::lint
