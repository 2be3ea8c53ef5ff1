#include "comparison/Comparison.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>

#include "comparison/NotificationMatch.h"

namespace {

/** Walks along two figures at once: all stretches of time, also those where they agree. */
class Alongside {
  public:
    Alongside(const Series& own, const Series& other, int64_t endMs)
          : mOwn(own.points()), mOther(other.points()), mEndMs(endMs) {}

    std::optional<Stretch> next() {
        while (mTimeMs < mEndMs) {
            const int64_t fromMs = mTimeMs;
            mStretch.own = take(mOwn, mNextOwn, mStretch.own);
            mStretch.other = take(mOther, mNextOther, mStretch.other);
            mTimeMs = std::min({timeOf(mOwn, mNextOwn), timeOf(mOther, mNextOther), mEndMs});
            if (mTimeMs > fromMs) {
                mStretch.fromMs = fromMs;
                mStretch.toMs = mTimeMs;
                return mStretch;
            }
        }
        return std::nullopt;
    }

  private:
    using Points = std::vector<Series::Point>;

    int64_t timeOf(const Points& points, size_t place) const {
        return place < points.size() ? points[place].timeMs : mEndMs;
    }
    std::optional<int32_t> take(const Points& points, size_t& place, std::optional<int32_t> value) {
        for (; place < points.size() && points[place].timeMs <= mTimeMs; ++place) {
            value = points[place].value;
        }
        return value;
    }

    const Points& mOwn;
    const Points& mOther;
    const int64_t mEndMs;
    int64_t mTimeMs = 0;
    size_t mNextOwn = 0;
    size_t mNextOther = 0;
    Stretch mStretch;
};

std::vector<Stretch> differences(const Series& own, const Series& other, int64_t endMs) {
    std::vector<Stretch> result;
    Alongside both(own, other, endMs);
    while (const auto stretch = both.next()) {
        if (stretch->own != stretch->other) {
            result.push_back(*stretch);
        }
    }
    return result;
}

int64_t apart(const Stretch& stretch) {
    return static_cast<int64_t>(*stretch.other) - *stretch.own;
}

FigureDifference compareFigure(const Series& own, const Series& other, int64_t endMs) {
    FigureDifference result;
    Alongside both(own, other, endMs);
    while (const auto stretch = both.next()) {
        const int64_t lengthMs = stretch->toMs - stretch->fromMs;
        if (stretch->own != stretch->other) {
            result.differentMs += lengthMs;
            result.first = result.first ? result.first : stretch;
        }
        if (!stretch->own || !stretch->other) {
            continue;
        }
        const auto weight = static_cast<double>(lengthMs);
        result.comparedMs += lengthMs;
        result.meanSigned += static_cast<double>(apart(*stretch)) * weight;
        result.meanAbsolute += std::abs(static_cast<double>(apart(*stretch))) * weight;
        if (apart(*stretch) != 0 &&
            (!result.largest || std::abs(apart(*stretch)) > std::abs(apart(*result.largest)))) {
            result.largest = stretch;
        }
    }
    const auto whole = static_cast<double>(std::max<int64_t>(result.comparedMs, 1));
    result.meanSigned /= whole;
    result.meanAbsolute /= whole;
    return result;
}

const Series& named(const std::string& name, const std::vector<Series>& list) {
    static const Series kNone("", "");
    const auto found = std::ranges::find(list, name, &Series::name);
    return found != list.end() ? *found : kNone;
}

/** Figures that either run has. */
std::vector<NamedDifference> compareAll(const std::vector<Series>& own,
                                        const std::vector<Series>& other, int64_t endMs) {
    std::set<std::string> names;
    for (const std::vector<Series>* list : {&own, &other}) {
        std::ranges::transform(*list, std::inserter(names, names.end()), &Series::name);
    }
    std::vector<NamedDifference> result;
    for (const std::string& name : names) {
        result.push_back({name, compareFigure(named(name, own), named(name, other), endMs)});
    }
    return result;
}

/** A band as numbers that stand for its texts. */
Series numbered(const Band& band, std::vector<std::string>& texts) {
    Series series(band.name(), "");
    for (const Band::Change& change : band.changes()) {
        const auto found = std::ranges::find(texts, change.text);
        const auto number = static_cast<int32_t>(found - texts.begin());
        if (found == texts.end()) {
            texts.push_back(change.text);
        }
        series.add(change.timeMs, change.text.empty() ? std::nullopt : std::optional(number));
    }
    return series;
}

std::vector<TextStretch> differences(const Band& own, const Band& other, int64_t endMs) {
    std::vector<std::string> texts;
    const Series ownNumbers = numbered(own, texts);
    const Series otherNumbers = numbered(other, texts);
    const auto textOf = [&](std::optional<int32_t> number) {
        return number ? texts[static_cast<size_t>(*number)] : std::string();
    };
    std::vector<TextStretch> result;
    for (const Stretch& stretch : differences(ownNumbers, otherNumbers, endMs)) {
        result.push_back(
                {stretch.fromMs, stretch.toMs, textOf(stretch.own), textOf(stretch.other)});
    }
    return result;
}

bool isSame(const std::vector<NamedDifference>& list) {
    return std::ranges::none_of(list,
                                [](const auto& one) { return one.difference.first.has_value(); });
}

}  // namespace

bool Comparison::identical() const {
    return !shell.first && isSame(models) && !ambient.first && isSame(heat) && levels.empty() &&
           statuses.empty() && scenes.empty() && heatSources.empty() && notifications.empty();
}

Comparison compare(const RunOutcome& own, const RunOutcome& other, int64_t endMs) {
    const int64_t behindMs = endMs + 1;  // what was decided at the very end counts
    Comparison result;
    result.endMs = endMs;
    result.shell = compareFigure(own.shell, other.shell, behindMs);
    result.models = compareAll(own.models, other.models, behindMs);
    result.ambient = compareFigure(own.ambient, other.ambient, behindMs);
    result.heat = compareAll(own.heat, other.heat, behindMs);
    result.levels = differences(own.level, other.level, behindMs);
    result.statuses = differences(own.status, other.status, behindMs);
    result.scenes = differences(own.scene, other.scene, behindMs);
    result.heatSources = differences(own.heatSource, other.heatSource, behindMs);
    matchNotifications(own, other, result);
    return result;
}
