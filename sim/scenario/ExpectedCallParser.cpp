#include "sim/scenario/ExpectedCallParser.h"

#include <algorithm>
#include <set>

#include "client/StatusListener.h"
#include "common/NearestName.h"
#include "sim/scenario/ListenerCheck.h"
#include "sim/scenario/RangeParser.h"

namespace sim {

namespace {

std::string parseEvent(const JsonPlace& place) {
    std::vector<std::string> known;
    for (const auto& [event, numbers] : client::listenerEvents()) {
        known.push_back(event);
    }
    std::string event = place.text();
    if (std::ranges::find(known, event) == known.end()) {
        place.fail("no notification \"" + event + "\"" + common::suggestion(event, known));
    }
    return event;
}

std::string parseListener(const JsonPlace& place, const Scenario& scenario) {
    std::set<std::string> ids;
    for (const Action& action : scenario.timeline) {
        addListenerIds(action.deed, ids);
    }
    std::string id = place.text();
    checkListenerId(place, id, ids);
    return id;
}

void parseCount(const JsonPlace& place, ExpectedCall& call) {
    const auto [range, text] = parseRange(place, Scale::WHOLE);
    if (range.least < 0) {
        place.fail("expected a number of calls, at least 0");
    }
    call.count = range;
    call.text += "," + text + " times";
}

void addValue(const std::string& name, const JsonPlace& place, ExpectedCall& call) {
    const std::vector<std::string>& numbers = client::listenerEvents().at(call.event);
    if (std::ranges::find(numbers, name) == numbers.end()) {
        std::vector<std::string> known{"event", "listener", "count"};
        known.insert(known.end(), numbers.begin(), numbers.end());
        place.fail("unknown member" + common::suggestion(name, known));
    }
    const auto [range, text] = parseRange(place, Scale::WHOLE);
    call.values.emplace_back(name, range);
    call.text += " " + name + text;
}

}  // namespace

ExpectedCall parseExpectedCall(const JsonPlace& place, const Scenario& scenario) {
    ExpectedCall call;
    call.event = call.text = parseEvent(place.isString() ? place : place.need("event"));
    if (place.isString()) {
        return call;
    }
    for (const auto& [name, value] : place.members()) {
        if (name != "event" && name != "listener" && name != "count") {
            addValue(name, value, call);
        }
    }
    if (const auto listener = place.find("listener")) {
        call.listener = parseListener(*listener, scenario);
        call.text += " to " + call.listener;
    }
    if (const auto count = place.find("count")) {
        parseCount(*count, call);
    }
    return call;
}

}  // namespace sim
