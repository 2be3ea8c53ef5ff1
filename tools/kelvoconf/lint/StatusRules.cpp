// Levels: their thresholds and status values.

#include <algorithm>
#include <string>

#include "config/ConfigNames.h"
#include "kelvoconf/lint/Readings.h"
#include "kelvoconf/lint/Rules.h"
#include "thermalstatus/ThermalLevels.h"

namespace kelvo::lint {

namespace {

using Kind = ConfigFault::Kind;

constexpr int32_t kHottest = 200;  // °C: what is above is hardly meant in degrees
constexpr char kRejected[] = "rejects the whole model: no levels, no status";

/** A list of the model with its place. */
struct StatusList {
    ConfigNode node;
    const ThermalList& list;

    /** The element that a value comes from. */
    ConfigNode element(size_t value) const { return node[list.elements[value]]; }
    std::string key() const { return std::get<std::string>(node.path().steps().back()); }
};

void checkFault(const LintContext& context, const StatusList& status, const ConfigFault& fault) {
    const ConfigNode place = fault.element ? status.node[*fault.element] : status.node;
    switch (fault.kind) {
        case Kind::MISSING:
            context.error("status-list-missing", place,
                          {"the model needs " + quoted(fault.key), kRejected, "write the list"});
            break;
        case Kind::EMPTY:
            context.error(
                    "status-list-missing", place,
                    {quoted(fault.key) + " has no whole number", kRejected, "write the list"});
            break;
        case Kind::FALLING: {
            const std::vector<int32_t>& values = status.list.values;
            const size_t at = *status.list.falling;
            context.error(
                    "list-not-rising", place,
                    {std::to_string(values[at]) + " comes after " + std::to_string(values[at - 1]),
                     kRejected, "let the values rise, or stay equal, from level to level"});
            break;
        }
        case Kind::WRONG_TYPE:
            if (fault.element) {  // else it is said with the types
                context.error("skipped-element", place,
                              {shown(place.value()) + " is no whole number",
                               "leaves it out, so that all that follows belongs to one level less",
                               "write a whole number"});
            }
            break;
        default:
            break;  // said when all lists are known
    }
}

void checkList(const LintContext& context, const StatusList& status) {
    for (const ConfigFault& fault : context.readings.status.faults) {
        if (fault.key == status.key()) {
            checkFault(context, status, fault);
        }
    }
}

bool hasWrongLength(const LintContext& context, const StatusList& status) {
    return hasFault(context.readings.status.faults, Kind::WRONG_LENGTH, status.key());
}

void checkCount(const LintContext& context, const StatusList& thresholds) {
    if (hasWrongLength(context, thresholds)) {
        context.error("thresholds-not-21", thresholds.node,
                      {std::to_string(thresholds.list.values.size()) + " thresholds; there are " +
                               std::to_string(kThermalLevels) + " levels, 0 to " +
                               std::to_string(kThermalLevels - 1),
                       "loads the model but decides no level, and says so in the log each time",
                       "write one threshold a level"});
    }
}

/** A list in another unit is one mistake, however many thresholds it has. */
void checkUnit(const LintContext& context, const StatusList& thresholds, size_t hot) {
    const std::vector<int32_t>& values = thresholds.list.values;
    const auto isHot = [](int32_t value) { return value > kHottest; };
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(hot);
    if (std::any_of(values.begin() + 1, at, isHot)) {
        return;  // said at the first one
    }
    const auto more = std::count_if(at + 1, values.end(), isHot);
    context.warning("wrong-unit", thresholds.element(hot),
                    {std::to_string(*at) + " is far too hot" +
                             (more > 0 ? ", and " + std::to_string(more) + " more" : ""),
                     more > 0 ? "takes them as whole degrees Celsius, so that the levels are never "
                                "reached"
                              : "takes it as whole degrees Celsius, so that the level is never "
                                "reached",
                     "write degrees, not thousandths"});
}

/** What a threshold leads to that the reader of a list cannot see. */
void checkThresholds(const LintContext& context, const StatusList& thresholds, bool rising) {
    const std::vector<int32_t>& values = thresholds.list.values;
    for (size_t i = 1; i < values.size(); ++i) {
        const std::string level = "level " + std::to_string(i);
        if (values[i] == kWildcard) {
            context.warning(
                    "wildcard-threshold", thresholds.element(i),
                    {"-1 is reached at any temperature",
                     std::string("goes to ") + level + " at least whenever the phone gets " +
                             (rising ? "warmer" : "cooler"),
                     "write the threshold of " + level});
        } else if (values[i] > kHottest) {
            checkUnit(context, thresholds, i);
        } else if (rising && values[i] == values[i - 1]) {
            context.warning("level-never-reached", thresholds.element(i),
                            {"level " + std::to_string(i - 1) + " has the same threshold",
                             "passes over that level when the phone gets warmer",
                             "give each level a threshold of its own"});
        }
    }
}

// Entry 0 is compared by neither search.
void checkCrossing(const LintContext& context, const StatusList& up, const StatusList& down) {
    for (size_t i = 1; i < std::min(up.list.values.size(), down.list.values.size()); ++i) {
        const int32_t rising = up.list.values[i];
        const int32_t falling = down.list.values[i];
        const std::string level = "level " + std::to_string(i);
        if (falling >= rising && rising != kWildcard && falling <= kHottest) {
            context.warning(
                    "thresholds-cross", down.element(i),
                    {level + " falls at " + std::to_string(falling) + " °C and rises at " +
                             std::to_string(rising) + " °C",
                     falling > rising ? "leaves the level as soon as it has it, and flaps"
                                      : "changes the level at each small change around there",
                     "let the level fall some degrees below where it rises"});
        }
    }
}

}  // namespace

void checkStatus(const LintContext& context) {
    const ConfigNode model = context.root() / key::kThermalStatusModel;
    if (!model) {
        context.warning("no-status-model", model,
                        {"there is no thermal_status_model",
                         "decides no level; clients never hear of a status",
                         "write thresholds and status values; \"kelvoconf draft\" shows some"});
    }
    if (!model.value().isObject()) {
        return;
    }
    const ThermalModelReading& reading = context.readings.status;
    const StatusList up{model / key::kTempThreshold, reading.tripTemps};
    const StatusList down{model / key::kTempThresholdDown, reading.tripDownTemps};
    const StatusList status{model / key::kThermalStatus, reading.statusAreas};
    const StatusList report{model / key::kThermalStatusReport, reading.statusReports};
    for (const StatusList* list : {&up, &down, &status, &report}) {
        checkList(context, *list);
    }
    if (hasWrongLength(context, status)) {
        context.error("status-length", status.node,
                      {std::to_string(status.list.values.size()) + " status values for " +
                               std::to_string(up.list.values.size()) + " thresholds",
                       kRejected, "write one status value a threshold"});
    }
    checkCount(context, up);
    checkCount(context, down);
    checkThresholds(context, up, true);
    checkThresholds(context, down, false);
    checkCrossing(context, up, down);
}

}  // namespace kelvo::lint
