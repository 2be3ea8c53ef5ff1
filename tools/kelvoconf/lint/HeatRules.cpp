// Coefficients and tables of the heat components.

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "common/NearestName.h"
#include "config/ConfigNames.h"
#include "heat/ComponentType.h"
#include "heat/HeatTables.h"
#include "kelvoconf/lint/Rules.h"
#include "kelvoconf/lint/ZoneNames.h"

namespace kelvo::lint {

namespace {

using Kind = HeatTableFault::Kind;

constexpr char kNoCenter[] = "switches the heat center off: no heat sources at all";
constexpr float kHighestMHz = 10000;  // of a GPU

/** What the daemon makes of a table's faults. */
struct Effects {
    std::string missing;  // of a column
    std::string unequal;
    std::string entry;
};

void reportFault(const LintContext& context, const ConfigNode& column, const HeatTableFault& fault,
                 const Effects& effects) {
    const ConfigNode entry = column[fault.element];
    switch (fault.kind) {
        case Kind::NO_COLUMN:
            context.error(
                    "heat-table-missing", column,
                    {"a column of the table is missing", effects.missing, "write the column"});
            break;
        case Kind::UNEQUAL:
            context.error("heat-table-unequal", column,
                          {std::to_string(column.value().size()) + " values beside " +
                                   std::to_string(fault.length),
                           effects.unequal, "let all columns of the table have one length"});
            break;
        case Kind::NO_NUMBER:
            context.error("heat-table-zero", entry,
                          {shown(entry.value()) + " is no usable value", effects.entry,
                           "write a number other than 0"});
            break;
        case Kind::NO_TEXT:
            context.error("heat-table-zero", entry,
                          {shown(entry.value()) + " is no name", effects.entry, "write a text"});
            break;
        case Kind::NO_ARRAY:  // of the wrong type, which is told for any key
        case Kind::UNKNOWN_ZONE:
        case Kind::TOO_FEW_ZONES:
            break;
    }
}

void reportFaults(const LintContext& context, const ConfigNode& model,
                  const std::vector<HeatTableFault>& faults, const Effects& effects) {
    for (const HeatTableFault& fault : faults) {
        reportFault(context, model / fault.key, fault, effects);
    }
}

void checkAscending(const LintContext& context, const ConfigNode& column) {
    const std::vector<ConfigNode> values = column.elements();
    for (size_t i = 1; i < values.size(); ++i) {
        const float before = heatNumber(values[i - 1].value());
        const float value = heatNumber(values[i].value());
        if (value <= before && value != 0.0F) {
            context.error(
                    "heat-table-not-ascending", values[i],
                    {shown(values[i].value()) + " comes after " + shown(values[i - 1].value()),
                     "interpolates between the wrong rows",
                     "sort the rows by this column, each value once"});
            return;
        }
    }
}

std::vector<std::string> textsOf(const ConfigNode& names) {
    std::vector<std::string> texts;
    for (const ConfigNode& name : names.elements()) {
        texts.push_back(name.value().isString() ? name.value().asString() : "");
    }
    return texts;
}

/** Names of a table that nothing asks for, or that stand twice. */
void checkNames(const LintContext& context, const ConfigNode& names,
                const std::vector<std::string>& known) {
    const std::vector<std::string> texts = textsOf(names);
    for (size_t i = 0; i < texts.size(); ++i) {
        const ConfigNode name = names[static_cast<Json::ArrayIndex>(i)];
        if (std::ranges::find(known, texts[i]) == known.end() && name.value().isString()) {
            const auto nearest = common::nearestName(texts[i], known);
            context.warning("heat-unknown-name", name,
                            {"nobody asks for " + quoted(texts[i]), "ignores it and its value",
                             nearest ? "write " + quoted(*nearest) : "drop both"});
        } else if (std::find(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(i),
                             texts[i]) != texts.begin() + static_cast<std::ptrdiff_t>(i)) {
            context.warning("heat-repeated-name", name,
                            {quoted(texts[i]) + " stands here again", "uses the last value",
                             "drop one of the two"});
        }
    }
}

void checkCoefficients(const LintContext& context, const ConfigNode& model) {
    const auto table = parseHeatModel(model.value());
    reportFaults(context, model, table.faults,
                 {"has no coefficients: each counts as -1, which gives negative figures", kNoCenter,
                  kNoCenter});
    if (!table.hasColumns) {
        return;
    }
    std::vector<std::string> components;
    for (const ComponentType type : kPowerComponents) {
        components.emplace_back(componentName(type));
    }
    const ConfigNode names = model / key::kDeviceName;
    checkNames(context, names, components);
    const std::vector<std::string> given = textsOf(names);
    for (const std::string& component : components) {
        if (std::ranges::find(given, component) == given.end()) {
            context.warning("heat-without-coefficient", names,
                            {"no coefficient for " + quoted(component),
                             "counts it as -1: the component's heat is a negative figure",
                             "add the name and its coefficient"});
        }
    }
}

void checkGpu(const LintContext& context, const ConfigNode& model) {
    const std::string effect = "has no table: the GPU heats 0";
    reportFaults(context, model, parseGpuModel(model.value()).faults, {effect, effect, effect});
    const ConfigNode clocks = model / key::kGpuFreq;
    checkAscending(context, clocks);
    const bool isMediaTek = context.input.platform.starts_with("MT");
    for (const ConfigNode& clock : clocks.elements()) {
        if (!isMediaTek && heatNumber(clock.value()) > kHighestMHz) {
            context.warning("wrong-unit", clock,
                            {shown(clock.value()) + " MHz is no clock of a GPU",
                             "compares it with the GPU's clock in MHz, which is always below",
                             "write MHz; only MediaTek's node is taken as it stands"});
            return;
        }
    }
}

void checkModemZones(const LintContext& context, const ConfigNode& model) {
    const ZoneList known = resolveZoneList(model.value(), context.zones);
    const auto fault = chooseModemZones(model.value(), known).fault;
    const ConfigNode zones = model / key::kThermalZoneType;
    for (size_t i = 0; i < known.zones.size(); ++i) {
        checkShared(context, zones[static_cast<Json::ArrayIndex>(i)]);
    }
    if (!fault || fault->kind == Kind::NO_ARRAY) {
        return;
    }
    if (fault->kind != Kind::UNKNOWN_ZONE) {
        context.warning("modem-zones", zones,
                        {"the modem needs two zones: its amplifier's and one to compare it with",
                         "reports no temperatures of the modem", "name two zones"});
        return;
    }
    const ConfigNode zone = zones[fault->element];
    const ZoneAdvice advice = adviseOnZone(context, zone.value());
    context.error("unknown-zone", zone,
                  {advice.what,
                   "looks no further; with less than two zones reports no "
                   "temperatures of the modem",
                   advice.mend});
}

void checkModem(const LintContext& context, const ConfigNode& model) {
    const std::string noTable = "has no table: the modem's texts mean 0 mA";
    reportFaults(context, model, parseModemModel(model.value()).faults,
                 {noTable, noTable, "ends the table before this row"});
    checkAscending(context, model / key::kRsrpValue);
    checkModemZones(context, model);
}

void checkDisplay(const LintContext& context, const ConfigNode& model) {
    const std::string effect = "knows no figures of the display, which it only logs";
    reportFaults(context, model, parseBrightnessModel(model.value()).faults,
                 {effect, effect, effect});
    checkNames(context, model / key::kFactor,
               {std::begin(brightness::kNames), std::end(brightness::kNames)});
}

}  // namespace

void checkHeat(const LintContext& context) {
    const ConfigNode heat = context.root() / key::kFittingModels / key::kHeatDetection;
    if (!heat.value().isObject()) {
        return;
    }
    const ConfigNode coefficients = heat / key::kHeatModel;
    if (!coefficients) {
        context.error("no-heat-center", coefficients,
                      {"there is no heatsource_model", kNoCenter,
                       "write the coefficients of the components"});
    } else if (coefficients.value().isObject()) {
        checkCoefficients(context, coefficients);
    }
    const ConfigNode gpu = heat / key::kGpuModel;
    if (!gpu) {
        context.warning("no-gpu-table", gpu,
                        {"there is no gpu_model", "takes the GPU's current as 0: it never heats",
                         "write the GPU's clocks and currents"});
    } else if (gpu.value().isObject()) {
        checkGpu(context, gpu);
    }
    if ((heat / key::kCellularModel).value().isObject()) {
        checkModem(context, heat / key::kCellularModel);
    }
    if ((heat / key::kBrightnessModel).value().isObject()) {
        checkDisplay(context, heat / key::kBrightnessModel);
    }
}

}  // namespace kelvo::lint
