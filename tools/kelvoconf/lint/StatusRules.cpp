// Levels: their thresholds and status values.

#include <string>

#include "kelvoconf/lint/Rules.h"
#include "thermalstatus/ThermalLevels.h"
#include "thermalstatus/ThermalList.h"

namespace kelvo::lint {

namespace {

constexpr int32_t kWildcard = -1;
constexpr int32_t kHottest = 200;  // °C: what is above is hardly meant in degrees
constexpr char kRejected[] = "rejects the whole model: no levels, no status";

/** A list of the model with the keys of its places. */
struct StatusList {
    ConfigNode node;
    ThermalList list;

    StatusList(const ConfigNode& model, const char* name)
          : node(model / name), list(readThermalList(node.value())) {}

    /** The element that a value comes from; the ones before it may have been skipped. */
    ConfigNode element(size_t value) const {
        auto at = static_cast<Json::ArrayIndex>(value);
        for (const Json::ArrayIndex skipped : list.skipped) {
            at += skipped <= at ? 1 : 0;
        }
        return node[at];
    }
    std::string name() const { return quoted(std::get<std::string>(node.path().steps().back())); }
};

void checkList(const LintContext& context, const StatusList& status) {
    const ThermalList& list = status.list;
    if (!list.isArray) {
        if (!status.node) {
            context.error("status-list-missing", status.node,
                          {"the model needs " + status.name(), kRejected, "write the list"});
        }
        return;  // another value is of the wrong type
    }
    for (const Json::ArrayIndex skipped : list.skipped) {
        context.error("skipped-element", status.node[skipped],
                      {shown(status.node[skipped].value()) + " is no whole number",
                       "leaves it out, so that all that follows belongs to one level less",
                       "write a whole number"});
    }
    if (list.values.empty()) {
        context.error("status-list-missing", status.node,
                      {status.name() + " has no whole number", kRejected, "write the list"});
    }
    if (list.falling) {
        const size_t at = *list.falling;
        context.error("list-not-rising", status.element(at),
                      {std::to_string(list.values[at]) + " comes after " +
                               std::to_string(list.values[at - 1]),
                       kRejected, "let the values rise, or stay equal, from level to level"});
    }
}

void checkCount(const LintContext& context, const StatusList& thresholds) {
    const size_t count = thresholds.list.values.size();
    if (count != 0 && count != kThermalLevels) {
        context.error("thresholds-not-21", thresholds.node,
                      {std::to_string(count) + " thresholds; there are 21 levels, 0 to 20",
                       "loads the model but decides no level, and says so in the log each time",
                       "write one threshold a level"});
    }
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
            context.warning(
                    "wrong-unit", thresholds.element(i),
                    {std::to_string(values[i]) + " is far too hot",
                     "takes it as whole degrees Celsius, so that the level is never reached",
                     "write degrees, not thousandths"});
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
        if (falling >= rising && rising != kWildcard) {
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
    const ConfigNode model = context.root() / "thermal_status_model";
    if (!model) {
        context.warning("no-status-model", model,
                        {"there is no thermal_status_model",
                         "decides no level; clients never hear of a status",
                         "write thresholds and status values; \"kelvoconf draft\" shows some"});
    }
    if (!model.value().isObject()) {
        return;
    }
    const StatusList up(model, "temp_threshold");
    const StatusList down(model, "temp_threshold_down");
    const StatusList status(model, "thermal_status");
    const StatusList report(model, "thermal_status_report");
    for (const StatusList* list : {&up, &down, &status, &report}) {
        checkList(context, *list);
    }
    const size_t levels = up.list.values.size();
    if (!status.list.values.empty() && levels != 0 && status.list.values.size() != levels) {
        context.error("status-length", status.node,
                      {std::to_string(status.list.values.size()) + " status values for " +
                               std::to_string(levels) + " thresholds",
                       kRejected, "write one status value a threshold"});
    }
    checkCount(context, up);
    checkCount(context, down);
    checkThresholds(context, up, true);
    checkThresholds(context, down, false);
    checkCrossing(context, up, down);
}

}  // namespace kelvo::lint
