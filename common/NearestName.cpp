#include "common/NearestName.h"

#include <algorithm>

namespace common {

namespace {

/** Number of insertions, deletions and replacements between two names. */
size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j < row.size(); ++j) {
        row[j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

std::optional<std::string> nearestName(std::string_view name,
                                       const std::vector<std::string>& known) {
    return nearestName(name, known, std::max<size_t>(2, name.size() / 3));
}

std::optional<std::string> nearestName(std::string_view name, const std::vector<std::string>& known,
                                       size_t most) {
    const auto distance = [&](const std::string& k) { return editDistance(name, k); };
    const auto nearest = std::ranges::min_element(known, {}, distance);
    if (nearest == known.end() || distance(*nearest) > most) {
        return std::nullopt;
    }
    return *nearest;
}

std::string suggestion(std::string_view name, const std::vector<std::string>& known) {
    const std::optional<std::string> nearest = nearestName(name, known);
    return nearest ? ", did you mean \"" + *nearest + "\"?" : "";
}

}  // namespace common
