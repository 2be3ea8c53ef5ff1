#include "comparison/NotificationMatch.h"

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

void matchNotifications(const RunOutcome& own, const RunOutcome& other, Comparison& result) {
    NotificationMatch(result).run(own, other);
}
