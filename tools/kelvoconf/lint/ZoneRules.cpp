// Zones by name: of models, and in the lists beside them.

#include <algorithm>
#include <string>

#include "common/NearestName.h"
#include "config/ConfigNames.h"
#include "kelvoconf/lint/ZoneNames.h"

namespace kelvo::lint {

namespace {

void addTypes(const Json::Value& value, ZoneTable& table) {
    for (const Json::Value& element : value) {
        if (element.isString()) {
            table.add(element.asString());
        } else if (element.isArray() || element.isObject()) {
            addTypes(element, table);
        }
    }
}

/** A list whose first unknown type makes the daemon give up all of it. */
void checkList(const LintContext& context, const ConfigNode& list, const std::string& effect) {
    for (const ConfigNode& element : (list / key::kThermalZoneType).elements()) {
        const bool known = element.value().isString() &&
                           context.zones.indexOf(element.value().asString()) >= 0;
        if (!known) {
            const ZoneAdvice advice = adviseOnZone(context, element.value());
            context.error("unknown-zone", element, {advice.what, effect, advice.mend});
            return;  // the daemon looks no further
        }
        checkShared(context, element);
    }
}

}  // namespace

ZoneAdvice adviseOnZone(const LintContext& context, const Json::Value& zone) {
    if (!zone.isString()) {
        return {shown(zone) + " names no thermal zone", "write the type of a zone"};
    }
    const std::string what = "the phone has no thermal zone " + quoted(zone.asString());
    const auto nearest = context.knowsZones()
                                 ? common::nearestName(zone.asString(), *context.input.zones)
                                 : std::nullopt;
    return nearest ? ZoneAdvice{what + "; the nearest is " + quoted(*nearest),
                                "write " + quoted(*nearest)}
                   : ZoneAdvice{what, "write the type of one of its zones"};
}

void checkShared(const LintContext& context, const ConfigNode& zone) {
    if (!context.knowsZones() || !zone.value().isString()) {
        return;
    }
    const std::string type = zone.value().asString();
    const auto count = std::ranges::count(*context.input.zones, type);
    if (count > 1) {
        context.warning(
                "shared-zone-type", zone,
                {std::to_string(count) + " zones have the type " + quoted(type),
                 "reads the last of them, number " + std::to_string(context.zones.indexOf(type)),
                 "in a model, write the number of the zone that is meant"});
    }
}

// Any text counts as a type: that finds each of them, and no other is looked for.
ZoneTable zonesNamedIn(const Json::Value& root) {
    ZoneTable table;
    addTypes(root, table);
    return table;
}

void checkZoneLists(const LintContext& context) {
    const ConfigNode root = context.root();
    checkList(context, root / key::kSpecifiedZones,
              "gives up the whole list: clients get no zone temperatures");
    checkList(context, root / key::kTsensorZones,
              "gives up the whole list, but ticks every second all the same");
}

}  // namespace kelvo::lint
