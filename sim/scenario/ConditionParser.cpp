#include "sim/scenario/ConditionParser.h"

#include <algorithm>

#include "common/NearestName.h"
#include "heat/ComponentType.h"
#include "sim/scenario/RangeParser.h"

namespace sim {

namespace {

using Reader = TextRange (*)(const JsonPlace& place, Scale scale);

/** A member that says something of a number. */
struct NumberMember {
    std::string name;  // "shell_above"
    Figure figure;
    std::string text;  // of the figure, for people
    Scale scale;
    Reader read;
};

const std::vector<NumberMember>& numberMembers() {
    static const auto kMembers = [] {
        std::vector<NumberMember> members;
        const auto add = [&](const std::string& name, Figure figure, Scale scale) {
            members.push_back({name, figure, name, scale, parseRange});
            members.push_back({name + "_above", figure, name, scale, parseAbove});
            members.push_back({name + "_below", figure, name, scale, parseBelow});
        };
        add("shell", Figure::SHELL, Scale::CELSIUS);
        add("model", Figure::MODEL, Scale::CELSIUS);
        add("ambient", Figure::AMBIENT, Scale::CELSIUS);
        add("level", Figure::LEVEL, Scale::WHOLE);
        add("status", Figure::STATUS, Scale::WHOLE);
        return members;
    }();
    return kMembers;
}

void addNumber(const JsonPlace& place, const NumberMember& member, const std::string& model,
               std::vector<Condition>& conditions) {
    const auto [range, text] = member.read(place, member.scale);
    const std::string what = model.empty() ? member.text : member.text + " " + model;
    conditions.push_back({member.figure, model, range, {}, what + text});
}

void addModels(const JsonPlace& models, const NumberMember& member,
               std::vector<Condition>& conditions) {
    const auto members = models.members();
    if (members.empty()) {
        models.fail("expected the name of a model");
    }
    for (const auto& [model, value] : members) {
        addNumber(value, member, model, conditions);
    }
}

std::string parseComponent(const JsonPlace& place) {
    std::vector<std::string> known;
    for (const auto& [type, name] : kComponentNames) {
        known.emplace_back(name);
    }
    std::string text = place.text();
    if (std::ranges::find(known, text) == known.end()) {
        place.fail("no heat source \"" + text + "\"" + common::suggestion(text, known));
    }
    return text;
}

std::string parseText(const JsonPlace& place) {
    return place.text();
}

/** A text or several, one of which is to be. */
Condition namesCondition(const JsonPlace& place, Figure figure, std::string text,
                         std::string (*read)(const JsonPlace&)) {
    Condition condition{figure, "", {}, {}, std::move(text)};
    const auto choice = place.isArray() ? place.elements() : std::vector<JsonPlace>{place};
    if (choice.empty()) {
        place.fail("expected a text or an array of texts");
    }
    for (const JsonPlace& one : choice) {
        const std::string name = read(one);
        condition.text += (condition.names.empty() ? " " : " or ") + name;
        condition.names.push_back(name);
    }
    return condition;
}

}  // namespace

bool addCondition(const std::string& member, const JsonPlace& place,
                  std::vector<Condition>& conditions) {
    if (member == "scene") {
        conditions.push_back(namesCondition(place, Figure::SCENE, "scene", parseText));
        return true;
    }
    if (member == "heat_source") {
        conditions.push_back(
                namesCondition(place, Figure::HEAT_SOURCE, "heat source", parseComponent));
        return true;
    }
    const auto found = std::ranges::find(numberMembers(), member, &NumberMember::name);
    if (found == numberMembers().end()) {
        return false;
    }
    if (found->figure == Figure::MODEL) {
        addModels(place, *found, conditions);
    } else {
        addNumber(place, *found, "", conditions);
    }
    return true;
}

std::vector<std::string> conditionMembers() {
    std::vector<std::string> names{"scene", "heat_source"};
    for (const NumberMember& member : numberMembers()) {
        names.push_back(member.name);
    }
    return names;
}

}  // namespace sim
