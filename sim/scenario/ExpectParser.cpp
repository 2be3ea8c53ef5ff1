#include "sim/scenario/ExpectParser.h"

#include <algorithm>
#include <string_view>

#include "common/NearestName.h"
#include "sim/scenario/ConditionParser.h"
#include "sim/scenario/ExpectedCallParser.h"
#include "sim/scenario/ShortNumber.h"

namespace sim {

namespace {

constexpr char kNotification[] = "notification";

/** The conditions among the members of `place`; `others` are members that are something else. */
void parseWhat(const JsonPlace& place, const std::vector<std::string>& others,
               const Scenario& scenario, Expectation& result) {
    for (const auto& [member, value] : place.members()) {
        if (std::ranges::find(others, member) != others.end()) {
            continue;
        }
        if (member == kNotification) {
            result.call = parseExpectedCall(value, scenario);
        } else if (!addCondition(member, value, result.conditions)) {
            std::vector<std::string> known = conditionMembers();
            known.emplace_back(kNotification);
            known.insert(known.end(), others.begin(), others.end());
            value.fail("unknown member" + common::suggestion(member, known));
        }
    }
    if (result.conditions.empty() && !result.call) {
        place.fail("nothing is expected: name a figure or a notification");
    }
    if (!result.conditions.empty() && result.call) {
        place.need(kNotification).fail("a notification is expected by itself");
    }
}

int64_t parseTime(const JsonPlace& place, const Scenario& scenario) {
    const int64_t time = place.milliseconds();
    if (time > scenario.durationMs) {
        place.fail("later than the end of the scenario, " + shortThousandths(scenario.durationMs) +
                   " s");
    }
    return time;
}

/** The time between two members, from start to end where they are absent. */
void parseSpan(const JsonPlace& place, std::string_view to, const Scenario& scenario,
               Expectation& result) {
    const auto first = place.find("from");
    const auto last = place.find(to);
    result.fromMs = first ? parseTime(*first, scenario) : 0;
    result.toMs = last ? parseTime(*last, scenario) : scenario.durationMs;
    if (result.fromMs > result.toMs) {
        first->fail("later than \"" + std::string(to) + "\"");
    }
}

std::string spanText(const Expectation& expectation, const Scenario& scenario) {
    const bool isWhole = expectation.fromMs == 0 && expectation.toMs == scenario.durationMs;
    return isWhole ? ""
                   : " from " + shortThousandths(expectation.fromMs) + " to " +
                             shortThousandths(expectation.toMs) + " s";
}

std::string whatText(const Expectation& expectation) {
    if (expectation.call) {
        return expectation.call->text;
    }
    std::string text;
    for (const Condition& condition : expectation.conditions) {
        text += (text.empty() ? "" : ", ") + condition.text;
    }
    return text;
}

/** {"never": {…}} or {"always": {…}} */
void parseModal(const JsonPlace& place, const char* word, const Scenario& scenario,
                Expectation& result) {
    place.onlyMembers({"name", "from", "to", word});
    parseSpan(place, "to", scenario, result);
    const JsonPlace what = place.need(word);
    parseWhat(what, {}, scenario, result);
    if (result.call && result.call->count) {
        what.need(kNotification)
                .need("count")
                .fail("expected with \"at\", \"by\", \"from\" or "
                      "\"to\" only");
    }
    if (result.call && result.when == Expectation::When::ALWAYS) {
        what.need(kNotification).fail("a notification is no state: it cannot be always");
    }
    result.text = word + spanText(result, scenario) + ": " + whatText(result);
}

/** {"at": 60, "status": 2} */
void parsePlain(const JsonPlace& place, const Scenario& scenario, Expectation& result) {
    using When = Expectation::When;
    if (const auto at = place.find("at")) {
        parseWhat(place, {"name", "at"}, scenario, result);
        result.when = When::AT;
        result.fromMs = result.toMs = parseTime(*at, scenario);
        result.text = "at " + shortThousandths(result.fromMs) + " s: ";
    } else if (place.find("by")) {
        parseWhat(place, {"name", "from", "by"}, scenario, result);
        parseSpan(place, "by", scenario, result);
        result.when = When::BY;
        result.text =
                (result.fromMs > 0 ? "from " + shortThousandths(result.fromMs) + " s on " : "") +
                "by " + shortThousandths(result.toMs) + " s: ";
    } else if (place.find("from") || place.find("to")) {
        parseWhat(place, {"name", "from", "to"}, scenario, result);
        parseSpan(place, "to", scenario, result);
        result.when = result.call ? When::BY : When::ALWAYS;
        result.text = "from " + shortThousandths(result.fromMs) + " to " +
                      shortThousandths(result.toMs) + " s: ";
    } else {
        place.fail("when? expected \"at\", \"by\", \"from\", \"to\", \"never\" or \"always\"");
    }
    result.text += whatText(result);
}

Expectation parseExpectation(const JsonPlace& place, const Scenario& scenario) {
    Expectation result;
    result.place = place.path();
    if (const auto name = place.find("name")) {
        result.name = name->text();
    }
    if (place.find("never")) {
        result.when = Expectation::When::NEVER;
        parseModal(place, "never", scenario, result);
    } else if (place.find("always")) {
        result.when = Expectation::When::ALWAYS;
        parseModal(place, "always", scenario, result);
    } else {
        parsePlain(place, scenario, result);
    }
    return result;
}

}  // namespace

std::vector<Expectation> parseExpectations(const JsonPlace& expect, const Scenario& scenario) {
    std::vector<Expectation> result;
    for (const JsonPlace& place : expect.elements()) {
        result.push_back(parseExpectation(place, scenario));
    }
    return result;
}

}  // namespace sim
