// Coefficients and tables of the heat components.

#include <algorithm>
#include <string>
#include <vector>

#include "common/NearestName.h"
#include "heat/ConfigNumber.h"
#include "kelvoconf/lint/Rules.h"
#include "kelvoconf/lint/SceneSet.h"
#include "kelvoconf/lint/ZoneNames.h"

namespace kelvo::lint {

namespace {

constexpr char kNoCenter[] = "switches the heat center off: no heat sources at all";
constexpr float kHighestMHz = 10000;  // of a GPU
constexpr Json::ArrayIndex kModemZones = 2;

/** Columns that must be of one length. */
bool checkEqual(const LintContext& context, const std::vector<ConfigNode>& columns,
                const std::string& effect) {
    const bool areArrays = std::ranges::all_of(
            columns, [](const ConfigNode& column) { return column.value().isArray(); });
    if (!areArrays) {
        for (const ConfigNode& column : columns) {
            if (!column) {
                context.error("heat-table-missing", column,
                              {"a column of the table is missing", effect, "write the column"});
            }
        }
        return false;  // columns of another kind are of the wrong type
    }
    for (const ConfigNode& column : columns) {
        if (column.value().size() != columns.front().value().size()) {
            context.error("heat-table-unequal", column,
                          {std::to_string(column.value().size()) + " values beside " +
                                   std::to_string(columns.front().value().size()),
                           effect, "let all columns of the table have one length"});
            return false;
        }
    }
    return true;
}

/** 0, and what is no number, spoils what it stands in. */
void checkZeros(const LintContext& context, const ConfigNode& column, const std::string& effect) {
    for (const ConfigNode& value : column.elements()) {
        if (configNumber(value.value()) == 0.0F) {
            context.error("heat-table-zero", value,
                          {shown(value.value()) + " is no usable value", effect,
                           "write a number other than 0"});
            return;
        }
    }
}

void checkTexts(const LintContext& context, const ConfigNode& names, const std::string& effect) {
    for (const ConfigNode& name : names.elements()) {
        if (!name.value().isString()) {
            context.error("heat-table-zero", name,
                          {shown(name.value()) + " is no name", effect, "write a text"});
            return;
        }
    }
}

void checkAscending(const LintContext& context, const ConfigNode& column) {
    const std::vector<ConfigNode> values = column.elements();
    for (size_t i = 1; i < values.size(); ++i) {
        const float before = configNumber(values[i - 1].value());
        const float value = configNumber(values[i].value());
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
    const ConfigNode names = model / "device_name";
    const ConfigNode values = model / "coefficient";
    if (!names.value().isArray() || !values.value().isArray()) {
        checkEqual(context, {names, values},
                   "has no coefficients: each counts as -1, which gives negative figures");
        return;
    }
    if (checkEqual(context, {names, values}, kNoCenter)) {
        checkZeros(context, values, kNoCenter);
        checkTexts(context, names, kNoCenter);
    }
    const std::vector<std::string> components = {"cpu", "display", "cellular", "wifi", "gpu"};
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
    const ConfigNode clocks = model / "gpufreq";
    if (checkEqual(context, {clocks, model / "powermA"}, effect)) {
        checkZeros(context, clocks, effect);
        checkZeros(context, model / "powermA", effect);
    }
    checkAscending(context, clocks);
    const bool isMediaTek = context.input.platform.starts_with("MT");
    for (const ConfigNode& clock : clocks.elements()) {
        if (!isMediaTek && configNumber(clock.value()) > kHighestMHz) {
            context.warning("wrong-unit", clock,
                            {shown(clock.value()) + " MHz is no clock of a GPU",
                             "compares it with the GPU's clock in MHz, which is always below",
                             "write MHz; only MediaTek's node is taken as it stands"});
            return;
        }
    }
}

void checkModem(const LintContext& context, const ConfigNode& model) {
    const ConfigNode strengths = model / "rsrp_value";
    const std::vector<ConfigNode> columns = {strengths, model / "current_value_4G",
                                             model / "current_value_5G"};
    if (checkEqual(context, columns, "has no table: the modem's texts mean 0 mA")) {
        for (const ConfigNode& column : columns) {
            checkZeros(context, column, "ends the table before this row");
        }
    }
    checkAscending(context, strengths);
    const ConfigNode zones = model / "thermal_zone_type";
    for (const ConfigNode& zone : zones.elements()) {
        if (!zone.value().isString() || context.zones.indexOf(zone.value().asString()) < 0) {
            const ZoneAdvice advice = adviseOnZone(context, zone.value());
            context.error("unknown-zone", zone,
                          {advice.what,
                           "looks no further; with less than two zones reports no "
                           "temperatures of the modem",
                           advice.mend});
            return;
        }
        checkShared(context, zone);
    }
    if (!zones || (zones.value().isArray() && zones.value().size() < kModemZones)) {
        context.warning("modem-zones", zones,
                        {"the modem needs two zones: its amplifier's and one to compare it with",
                         "reports no temperatures of the modem", "name two zones"});
    }
}

void checkDisplay(const LintContext& context, const ConfigNode& model) {
    const std::string effect = "knows no figures of the display, which it only logs";
    if (checkEqual(context, {model / "factor", model / "coefficient"}, effect)) {
        checkZeros(context, model / "coefficient", effect);
        checkTexts(context, model / "factor", effect);
    }
    checkNames(context, model / "factor", {"el_brt", "el_lvl", "el_pwr", "60_pwr", "120_pwr"});
}

}  // namespace

void checkHeat(const LintContext& context) {
    const ConfigNode heat = context.root() / "shell_temp_fitting_model" / kHeatSection;
    if (!heat.value().isObject()) {
        return;
    }
    const ConfigNode coefficients = heat / "heatsource_model";
    if (!coefficients) {
        context.error("no-heat-center", coefficients,
                      {"there is no heatsource_model", kNoCenter,
                       "write the coefficients of the components"});
    } else if (coefficients.value().isObject()) {
        checkCoefficients(context, coefficients);
    }
    const ConfigNode gpu = heat / "gpu_model";
    if (!gpu) {
        context.warning("no-gpu-table", gpu,
                        {"there is no gpu_model", "takes the GPU's current as 0: it never heats",
                         "write the GPU's clocks and currents"});
    } else if (gpu.value().isObject()) {
        checkGpu(context, gpu);
    }
    if ((heat / "cellar_model").value().isObject()) {
        checkModem(context, heat / "cellar_model");
    }
    if ((heat / "brightness_model").value().isObject()) {
        checkDisplay(context, heat / "brightness_model");
    }
}

}  // namespace kelvo::lint
