#include "kelvoconf/lint/FindingList.h"

#include <algorithm>
#include <utility>

namespace kelvo::lint {

std::pair<std::ptrdiff_t, int32_t> placeInOrder(const Finding& finding,
                                                const std::vector<std::string>& files) {
    return {std::ranges::find(files, finding.file) - files.begin(), finding.line};
}

void FindingList::error(const std::string& rule, Place place, Advice advice) {
    add(Severity::ERROR, rule, std::move(place), std::move(advice));
}

void FindingList::warning(const std::string& rule, Place place, Advice advice) {
    add(Severity::WARNING, rule, std::move(place), std::move(advice));
}

void FindingList::add(Severity severity, const std::string& rule, Place place, Advice advice) {
    if (!mSeen.emplace(rule, place.file, place.path).second) {
        return;
    }
    mFindings.push_back({severity, rule, std::move(place.file), std::move(place.path), place.line,
                         std::move(advice.what), std::move(advice.effect), std::move(advice.mend)});
}

std::vector<Finding> FindingList::take(const std::vector<std::string>& files) {
    std::ranges::stable_sort(mFindings, {}, [&files](const Finding& finding) {
        return placeInOrder(finding, files);
    });
    return std::move(mFindings);
}

}  // namespace kelvo::lint
