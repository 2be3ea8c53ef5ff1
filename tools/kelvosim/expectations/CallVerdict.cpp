#include <algorithm>
#include <cstdlib>

#include "common/JsonText.h"
#include "expectations/Judges.h"
#include "expectations/Reasons.h"

namespace {

using sim::Expectation;
using sim::ExpectedCall;
using Calls = std::vector<const Notification*>;

bool isOfEvent(const ExpectedCall& call, const Notification& notification) {
    return notification.kind == call.event &&
           (call.listener.empty() || notification.listener == call.listener);
}

bool hasValue(const Notification& notification,
              const std::pair<std::string, sim::ValueRange>& expected) {
    return std::ranges::any_of(notification.values, [&](const auto& value) {
        return value.first == expected.first && value.second.isInt() &&
               expected.second.holds(value.second.asInt());
    });
}

bool matches(const ExpectedCall& call, const Notification& notification) {
    return isOfEvent(call, notification) &&
           std::ranges::all_of(call.values, [&](const auto& expected) {
               return hasValue(notification, expected);
           });
}

std::string textOf(const Notification& notification) {
    std::string text = "at " + secondsText(notification.timeMs) + " " + notification.kind + " to " +
                       notification.listener + ":";
    for (const auto& [name, value] : notification.values) {
        if (!value.isObject()) {
            text += " " + name + " " + common::compactJson(value);
        }
    }
    return text;
}

std::string countText(const Calls& calls) {
    if (calls.empty()) {
        return "no such call";
    }
    if (calls.size() == 1) {
        return textOf(*calls.front());
    }
    return std::to_string(calls.size()) + " calls, the first " + textOf(*calls.front()) +
           ", the last at " + secondsText(calls.back()->timeMs);
}

/** The call of the event, whatever its values, that is nearest to the expected time. */
const Notification* nearest(const Expectation& expectation, const Recording& recording) {
    const Notification* found = nullptr;
    for (const Notification& notification : recording.notifications) {
        const auto distance = [&](const Notification& one) {
            return std::abs(one.timeMs - expectation.toMs);
        };
        if (isOfEvent(*expectation.call, notification) &&
            (found == nullptr || distance(notification) < distance(*found))) {
            found = &notification;
        }
    }
    return found;
}

std::string reasonOfCall(const std::string& event, int64_t timeMs, const Recording& recording) {
    if (event == "notify_component_heat") {
        return heatReason(timeMs, recording);
    }
    return event == "notify_ambient_thermal" ? ambientReason(timeMs, recording)
                                             : levelReason(timeMs, recording);
}

std::string instead(const Expectation& expectation, const Recording& recording) {
    const Notification* const near = nearest(expectation, recording);
    return near != nullptr ? "; the nearest: " + textOf(*near)
                           : "; none of " + expectation.call->event + " at all";
}

}  // namespace

Verdict judgeCall(const Expectation& expectation, const Recording& recording) {
    const ExpectedCall& call = *expectation.call;
    Calls calls;
    for (const Notification& notification : recording.notifications) {
        if (notification.timeMs >= expectation.fromMs && notification.timeMs <= expectation.toMs &&
            matches(call, notification)) {
            calls.push_back(&notification);
        }
    }
    const auto count = static_cast<int64_t>(calls.size());
    Verdict verdict;
    verdict.passed = expectation.when == Expectation::When::NEVER ? count == 0
                     : call.count                                 ? call.count->holds(count)
                                                                  : count > 0;
    verdict.timeMs = calls.empty() ? expectation.toMs : calls.front()->timeMs;
    verdict.happened = countText(calls);
    if (!verdict.passed) {
        verdict.happened += calls.empty() ? instead(expectation, recording) : "";
        verdict.why = reasonOfCall(call.event, verdict.timeMs, recording);
    }
    return verdict;
}
