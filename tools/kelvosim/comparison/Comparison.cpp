#include "comparison/Comparison.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <functional>
#include <iterator>
#include <set>
#include <utility>

#include "common/JsonText.h"

namespace {

// A notification this much earlier or later is another one.
constexpr int64_t kFarthestMs = 600'000;

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

ShellDifference compareShell(const Series& own, const Series& other, int64_t endMs) {
    ShellDifference result;
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

using Notifications = std::vector<const Notification*>;
using Key = std::function<std::string(const Notification&)>;

/**
 * Takes out of both what has the same key and is not too far apart, one of each at a time, in
 * order.
 */
std::vector<std::pair<const Notification*, const Notification*>> pairUp(Notifications& own,
                                                                        Notifications& other,
                                                                        const Key& key) {
    std::map<std::string, std::deque<const Notification*>> waiting;
    for (const Notification* notification : other) {
        waiting[key(*notification)].push_back(notification);
    }
    std::vector<std::pair<const Notification*, const Notification*>> pairs;
    std::erase_if(own, [&](const Notification* notification) {
        const auto found = waiting.find(key(*notification));
        if (found == waiting.end()) {
            return false;
        }
        auto& candidates = found->second;
        while (!candidates.empty() &&
               candidates.front()->timeMs < notification->timeMs - kFarthestMs) {
            candidates.pop_front();
        }
        if (candidates.empty() || candidates.front()->timeMs > notification->timeMs + kFarthestMs) {
            return false;
        }
        pairs.emplace_back(notification, candidates.front());
        candidates.pop_front();
        return true;
    });
    std::set<const Notification*> taken;
    std::ranges::transform(pairs, std::inserter(taken, taken.end()),
                           [](const auto& pair) { return pair.second; });
    std::erase_if(other, [&](const Notification* n) { return taken.contains(n); });
    return pairs;
}

Notifications pointers(const std::vector<Notification>& list) {
    Notifications result;
    for (const Notification& notification : list) {
        result.push_back(&notification);
    }
    return result;
}

std::string values(const Notification& notification) {
    Json::Value json(Json::objectValue);
    for (const auto& [name, value] : notification.values) {
        json[name] = value;
    }
    return common::compactJson(json);
}

/** Values to find it again by: of the temperature at which it happened to be sent whole degrees. */
std::string subject(const Notification& notification) {
    std::string text;
    for (const auto& [name, value] : notification.values) {
        const bool isMilli = name == "temp" && notification.values.size() > 1;
        if (value.isInt()) {
            text += name +
                    std::to_string(isMilli ? std::lround(value.asInt() / 1000.0)
                                           : static_cast<long>(value.asInt())) +
                    '\n';
        }
    }
    return text;
}

class NotificationMatch {
  public:
    explicit NotificationMatch(Comparison& result) : mResult(result) {}

    void run(const RunOutcome& own, const RunOutcome& other) {
        Notifications here = pointers(own.notifications);
        Notifications there = pointers(other.notifications);
        const auto who = [](const Notification& n) { return n.kind + '\n' + n.listener + '\n'; };
        const auto time = [](const Notification& n) { return std::to_string(n.timeMs) + '\n'; };
        addPairs(Fate::SAME, pairUp(here, there, [&](const Notification& n) {
                     return who(n) + time(n) + values(n);
                 }));
        addPairs(Fate::OTHER_VALUES,
                 pairUp(here, there, [&](const Notification& n) { return who(n) + time(n); }));
        addPairs(Fate::OTHER_TIME,
                 pairUp(here, there, [&](const Notification& n) { return who(n) + subject(n); }));
        for (const Notification* notification : here) {
            add({Fate::ONLY_OWN, *notification, std::nullopt});
        }
        for (const Notification* notification : there) {
            add({Fate::ONLY_OTHER, std::nullopt, *notification});
        }
        std::ranges::stable_sort(mResult.notifications, {}, &NotificationDifference::timeMs);
    }

  private:
    void addPairs(Fate fate,
                  const std::vector<std::pair<const Notification*, const Notification*>>& pairs) {
        for (const auto& [own, other] : pairs) {
            add({fate, *own, *other});
        }
    }
    void add(NotificationDifference difference) {
        ++mResult.counts[difference.notification().kind][static_cast<size_t>(difference.fate)];
        if (difference.fate != Fate::SAME) {
            mResult.notifications.push_back(std::move(difference));
        }
    }

    Comparison& mResult;
};

}  // namespace

bool Comparison::identical() const {
    return !shell.first && levels.empty() && statuses.empty() && notifications.empty();
}

Comparison compare(const RunOutcome& own, const RunOutcome& other, int64_t endMs) {
    const int64_t behindMs = endMs + 1;  // what was decided at the very end counts
    Comparison result;
    result.endMs = endMs;
    result.shell = compareShell(own.shell, other.shell, behindMs);
    result.levels = differences(own.level, other.level, behindMs);
    result.statuses = differences(own.status, other.status, behindMs);
    NotificationMatch(result).run(own, other);
    return result;
}
