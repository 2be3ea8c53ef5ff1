#include "kelvoconf/lint/KeyCatalogue.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kelvo::lint {

namespace {

using enum KeyType;

constexpr std::string_view kAmbientScenes[] = {"ambient", "ambient_charge", "ambient_fold",
                                               "ambient_fold_charge"};

// Beside the pattern of a key: type, unit, default, reader, and what another type leads to.
const std::vector<KeyEntry> kCatalogue = {
        {"config_version", TEXT, "", "noversion", "big data and the dump",
         "says \"noversion\" in big data and in the dump"},
        {"max_abn_tz_detect_times", INT, "failures in a row", "60",
         "the fitting engine, when it gives up a zone", "uses 60"},

        {"big_data", OBJECT, "", "no collection of temperatures", "the central state", ""},
        {"big_data.enable", INT, "", "0", "the central state: 1 switches the collection on",
         "leaves the collection off"},
        {"big_data.sample_period", INT, "s", "60", "the central state, between two samples",
         "samples every 60 s"},
        {"big_data.thermal_off_thousandth", INT, "1/1000", "0",
         "the central state: share of the days that count as days without thermal control",
         "uses 0"},

        {"shell_temp_broadcast", OBJECT_OR_ARRAY, "", "broadcasts from 30 to 55 °C",
         "an object: the thermal-status engine; an array: the central state, which only keeps it",
         "broadcasts from 30 to 55 °C"},
        {"shell_temp_broadcast.disable", INT, "", "0",
         "the thermal-status engine: 1 switches temperature broadcasts off",
         "leaves temperature broadcasts on"},
        {"shell_temp_broadcast.start_end_values", ARRAY, "°C", "[30, 55]",
         "the thermal-status engine: band of the broadcasts", "broadcasts from 30 to 55 °C"},

        {"specified_tempzone_info", OBJECT, "", "clients get no zone temperatures",
         "the fitting engine", ""},
        {"specified_tempzone_info.thermal_zone_type", ARRAY, "zone types", "no zones",
         "the fitting engine: zones that clients may ask for", "answers no zone temperatures"},
        {"tsensor_tempzone_info", OBJECT, "", "no tsensor histogram",
         "the fitting engine, which then ticks every second", ""},
        {"tsensor_tempzone_info.thermal_zone_type", ARRAY, "zone types", "no zones",
         "the fitting engine: zones of the daily histogram",
         "ticks every second for a histogram of no zones"},

        {"old_safety_project", ARRAY, "project names", "no answer (-1)",
         "the service, transaction 23", "answers -1, as without the key"},
        {"cpulimit_process", OBJECT, "", "no processes", "the service, transaction 101", ""},
        {"cpulimit_process.limit_info", ARRAY, "texts", "no processes",
         "the service, transaction 101", "answers that there are none"},

        {"shell_temp_fitting_model", OBJECT, "", "no shell temperature", "the fitting engine", ""},
        {"shell_temp_fitting_model.*", OBJECT, "", "no such scene", "the fitting engine: a scene",
         ""},
        {"shell_temp_fitting_model.*.temp_model", OBJECT, "", "the scene has no models",
         "the fitting engine", ""},
        {"shell_temp_fitting_model.*.temp_model.*", OBJECT, "", "no such model",
         "the fitting engine: a model, read in the order of the names", ""},
        {"shell_temp_fitting_model.*.temp_model.*.index", INT, "", "required",
         "the fitting engine: number of the result in /proc/shell-temp", ""},
        {"shell_temp_fitting_model.*.temp_model.*.thermal_zone", ARRAY, "zone types or numbers",
         "required", "the fitting engine: inputs", "", "thermal_zones"},
        {"shell_temp_fitting_model.*.temp_model.*.coefficient", ARRAY, "m°C per m°C", "required",
         "the fitting engine: a weight a zone, then the constant (m°C)", "", "coefficients"},
        {"shell_temp_fitting_model.*.temp_model.*.type", UINT, "", "1",
         "the fitting engine: kind of the model; 1, linear, is the only one", "uses 1"},

        {"shell_temp_fitting_model.{ambient}.ambient_fitting", OBJECT, "", "no estimate",
         "the ambient estimator", ""},
        {"shell_temp_fitting_model.{ambient}.ambient_fitting.paramter_name", ARRAY, "names",
         "required", "the ambient estimator: what each coefficient is", "", "parameter_name"},
        {"shell_temp_fitting_model.{ambient}.ambient_fitting.coefficient", ARRAY, "", "required",
         "the ambient estimator: a value for each name", ""},
        {"shell_temp_fitting_model.{ambient}.ambient_fitting.temp_rate_threshold", NUMBER, "m°C/s",
         "required", "the ambient estimator: steady below this slope", ""},
        {"shell_temp_fitting_model.{ambient}.ambient_fitting.power_diff_threshold", NUMBER, "mW",
         "required", "the ambient estimator: steady below this change of power", ""},
        {"shell_temp_fitting_model.{ambient}.ambient_fitting.charge_current_threshold", NUMBER,
         "mA", "2500", "the ambient estimator: no estimate above this mean charge current",
         "uses 2500 mA"},

        {"shell_temp_fitting_model.heatsource_detection", OBJECT, "", "no heat sources",
         "the heat center", ""},
        {"shell_temp_fitting_model.heatsource_detection.heatsource_model", OBJECT, "",
         "no heat sources", "the heat center", ""},
        {"shell_temp_fitting_model.heatsource_detection.heatsource_model.device_name", ARRAY,
         "names", "no coefficients", "the heat center: cpu, display, cellular, wifi, gpu",
         "has no coefficients: each counts as -1, which gives negative figures"},
        {"shell_temp_fitting_model.heatsource_detection.heatsource_model.coefficient", ARRAY,
         "sample units per m°C", "no coefficients", "the heat center: a value for each name",
         "has no coefficients: each counts as -1, which gives negative figures"},
        {"shell_temp_fitting_model.heatsource_detection.brightness_model", OBJECT, "", "no figures",
         "the display component, for its log", ""},
        {"shell_temp_fitting_model.heatsource_detection.brightness_model.factor", ARRAY, "names",
         "no figures", "the display component: el_brt, el_lvl, el_pwr, 60_pwr, 120_pwr",
         "knows no figures of the display"},
        {"shell_temp_fitting_model.heatsource_detection.brightness_model.coefficient", ARRAY,
         "nits, levels, mW", "no figures", "the display component: a value for each name",
         "knows no figures of the display"},
        {"shell_temp_fitting_model.heatsource_detection.gpu_model", OBJECT, "", "the GPU heats 0",
         "the GPU component", ""},
        {"shell_temp_fitting_model.heatsource_detection.gpu_model.gpufreq", ARRAY,
         "MHz; on MediaTek as its node says", "the GPU heats 0",
         "the GPU component: clocks, ascending", "takes the GPU's current as 0"},
        {"shell_temp_fitting_model.heatsource_detection.gpu_model.powermA", ARRAY, "mA",
         "the GPU heats 0", "the GPU component: current at each clock",
         "takes the GPU's current as 0"},
        {"shell_temp_fitting_model.heatsource_detection.cellar_model", OBJECT, "",
         "the modem's heat is what the usage feed says", "the cellular component", "",
         "cellular_model"},
        {"shell_temp_fitting_model.heatsource_detection.cellar_model.rsrp_value", ARRAY, "dBm",
         "no table", "the cellular component: signal strengths, ascending",
         "takes the modem's current as 0"},
        {"shell_temp_fitting_model.heatsource_detection.cellar_model.current_value_4G", ARRAY, "mA",
         "no table", "the cellular component: current at each strength",
         "takes the modem's current as 0"},
        {"shell_temp_fitting_model.heatsource_detection.cellar_model.current_value_5G", ARRAY, "mA",
         "no table", "the cellular component: current at each strength",
         "takes the modem's current as 0"},
        {"shell_temp_fitting_model.heatsource_detection.cellar_model.thermal_zone_type", ARRAY,
         "zone types", "no zones",
         "the cellular component: amplifier, then a base to compare it with",
         "reports no temperatures of the modem"},

        {"thermal_status_model", OBJECT, "", "no levels, no status", "the thermal-status engine",
         ""},
        {"thermal_status_model.temp_threshold", ARRAY, "°C", "required",
         "the thermal-status engine: 21 rising thresholds", "rejects the whole model: no levels"},
        {"thermal_status_model.temp_threshold_down", ARRAY, "°C", "required",
         "the thermal-status engine: 21 falling thresholds", "rejects the whole model: no levels"},
        {"thermal_status_model.thermal_status", ARRAY, "status values", "required",
         "the thermal-status engine: the status of each level",
         "rejects the whole model: no levels"},
        {"thermal_status_model.thermal_status_report", ARRAY, "", "required",
         "the thermal-status engine, which only logs it", "rejects the whole model: no levels"},
};

std::vector<std::string_view> split(std::string_view path) {
    std::vector<std::string_view> names;
    for (size_t start = 0; start <= path.size();) {
        const size_t dot = std::min(path.find('.', start), path.size());
        names.push_back(path.substr(start, dot - start));
        start = dot + 1;
    }
    return names;
}

bool stepMatches(std::string_view pattern, const std::string& name) {
    return pattern == "*" || pattern == name || (pattern == "{ambient}" && isAmbientScene(name));
}

/** Whether the first steps of a pattern, as many as the path has, are those of the path. */
bool beginsWith(const std::vector<std::string_view>& pattern,
                const std::vector<std::string>& path) {
    return pattern.size() >= path.size() &&
           std::equal(path.begin(), path.end(), pattern.begin(),
                      [](const std::string& name, std::string_view step) {
                          return stepMatches(step, name);
                      });
}

}  // namespace

const std::vector<KeyEntry>& keyCatalogue() {
    return kCatalogue;
}

// A later entry is the more special one: "heatsource_detection" comes after any scene.
const KeyEntry* findKey(const std::vector<std::string>& path) {
    const auto found = std::find_if(kCatalogue.rbegin(), kCatalogue.rend(), [&](const auto& key) {
        const auto pattern = split(key.path);
        return pattern.size() == path.size() && beginsWith(pattern, path);
    });
    return found != kCatalogue.rend() ? &*found : nullptr;
}

std::vector<std::string> namesBelow(const std::vector<std::string>& path) {
    std::vector<std::string> names;
    for (const KeyEntry& key : kCatalogue) {
        const auto pattern = split(key.path);
        if (pattern.size() == path.size() + 1 && beginsWith(pattern, path) &&
            pattern.back().find_first_of("*{") == std::string_view::npos) {
            names.emplace_back(pattern.back());
        }
    }
    return names;
}

bool hasType(const Json::Value& value, KeyType type) {
    switch (type) {
        case OBJECT:
            return value.isObject();
        case OBJECT_OR_ARRAY:
            return value.isObject() || value.isArray();
        case ARRAY:
            return value.isArray();
        case TEXT:
            return value.isConvertibleTo(Json::stringValue);
        case INT:
            return value.isInt();
        case UINT:
            return value.isUInt();
        case NUMBER:
            return value.isDouble();
    }
    return false;
}

const char* typeText(KeyType type) {
    switch (type) {
        case OBJECT:
            return "an object";
        case OBJECT_OR_ARRAY:
            return "an object or an array";
        case ARRAY:
            return "an array";
        case TEXT:
            return "a text";
        case INT:
            return "a whole number";
        case UINT:
            return "a whole number from 0";
        case NUMBER:
            return "a number";
    }
    return "";
}

bool isAmbientScene(const std::string& name) {
    return std::ranges::find(kAmbientScenes, name) != std::end(kAmbientScenes);
}

}  // namespace kelvo::lint
