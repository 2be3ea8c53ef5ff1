#include "kelvoconf/lint/FleetText.h"

#include <algorithm>

#include "kelvoconf/lint/FindingText.h"
#include "kelvoconf/lint/KeyPath.h"
#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

namespace {

using Names = std::vector<PhoneName>;
using Hits = FleetFinding::Hits;

constexpr size_t kMostNames = 10;  // that a line has; JSON has all of them

/** "projects 41052, 41053 and any other"; any other is the last. */
std::string listed(const std::string& kind, const Names& names) {
    std::string text;
    const bool hasOther = !names.empty() && !names.back();
    const size_t named = names.size() - (hasOther ? 1 : 0);
    for (size_t i = 0; i < std::min(named, kMostNames); ++i) {
        text += (i == 0 ? kind + (named > 1 ? "s " : " ") : ", ") + nameInPath(*names[i]);
    }
    if (named > kMostNames) {
        text += ", " + std::to_string(named - kMostNames) + " more";
    }
    if (!hasOther) {
        return text;
    }
    return text.empty() ? "any other " + kind : text + " and any other";
}

Names platformsOf(const Hits& hits) {
    Names names(hits.size());
    std::ranges::transform(hits, names.begin(), [](const auto& hit) { return hit.first; });
    return names;
}

/** Platforms that have the same projects, as a part of a sentence. */
std::string hitText(const Names& platforms, const Names& projects, const Fleet& fleet) {
    if (projects == fleet.projects) {
        return listed("platform", platforms);
    }
    const std::string text = listed("project", projects);
    return platforms == fleet.platforms ? text : text + " on " + listed("platform", platforms);
}

std::string hitsText(const Hits& hits, const Fleet& fleet) {
    const bool areAlike = std::ranges::all_of(
            hits, [&hits](const auto& hit) { return hit.second == hits.front().second; });
    if (areAlike) {
        const Names platforms = platformsOf(hits);
        const Names& projects = hits.front().second;
        return platforms == fleet.platforms && projects == fleet.projects
                       ? "every phone"
                       : hitText(platforms, projects, fleet);
    }
    std::string text;
    for (const auto& [platform, projects] : hits) {
        text += (text.empty() ? "" : "; ") + hitText({platform}, projects, fleet);
    }
    return text;
}

std::string jsonName(const PhoneName& name) {
    return name ? quoted(*name) : "null";
}

std::string jsonHit(const PhoneName& platform, const Names& projects) {
    std::string text = R"({"platform":)" + jsonName(platform) + R"(,"projects":[)";
    for (size_t i = 0; i < projects.size(); ++i) {
        text += (i == 0 ? "" : ",") + jsonName(projects[i]);
    }
    return text + "]}";
}

}  // namespace

std::string toText(const Fleet& fleet) {
    const auto text = [](const std::string& kind, const Names& names) {
        return names == Names{std::nullopt} ? "any " + kind : listed(kind, names);
    };
    return text("platform", fleet.platforms) + "; " + text("project", fleet.projects);
}

std::string toText(const FleetFinding& finding, const Fleet& fleet) {
    return toText(finding.finding) + "    hits:   " + hitsText(finding.hits, fleet) + "\n";
}

std::string toJsonLine(const FleetFinding& finding) {
    std::string line = toJsonLine(finding.finding);
    line.resize(line.rfind('}'));
    line += R"(,"hits":[)";
    for (size_t i = 0; i < finding.hits.size(); ++i) {
        const auto& [platform, projects] = finding.hits[i];
        line += (i == 0 ? "" : ",") + jsonHit(platform, projects);
    }
    return line + "]}\n";
}

}  // namespace kelvo::lint
