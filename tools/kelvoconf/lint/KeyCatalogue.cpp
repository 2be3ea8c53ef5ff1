#include "kelvoconf/lint/KeyCatalogue.h"

#include <algorithm>

#include "ambient/AmbientParams.h"
#include "base/Numeric.h"
#include "config/ConfigNames.h"
#include "config/ConfigVersion.h"
#include "core/BigDataConfig.h"
#include "kelvoconf/lint/Rules.h"
#include "thermalstatus/BroadcastConfig.h"
#include "thermalstatus/ThermalLevels.h"

namespace kelvo::lint {

namespace {

using enum KeyType;

using namespace key;

template <typename... Names>
std::vector<std::string> at(Names... names) {
    return {names...};
}

const std::string kBand =
        std::to_string(BroadcastBand().low) + " to " + std::to_string(BroadcastBand().high) + " °C";
const std::string kPeriod = std::to_string(kDefaultSamplePeriod);
const std::string kChargeThreshold = std::to_string(saturatingInt32(kDefaultChargeThreshold));
const std::string kLevels = std::to_string(kThermalLevels);

// Beside the path of a key: type, unit, default, reader, and what another type leads to.
const std::vector<KeyEntry> kCatalogue = {
        {at(kConfigVersion), TEXT, "", kNoVersion, "big data and the dump",
         "says " + quoted(kNoVersion) + " in big data and in the dump"},
        {at(kMaxAbnormalDetections), INT, "failures in a row", "60",
         "the fitting engine, when it gives up a zone", "uses 60"},

        {at(kBigData), OBJECT, "", "no collection of temperatures", "the central state", ""},
        {at(kBigData, kEnable), INT, "", "0", "the central state: 1 switches the collection on",
         "leaves the collection off"},
        {at(kBigData, kSamplePeriod), INT, "s", kPeriod, "the central state, between two samples",
         "samples every " + kPeriod + " s"},
        {at(kBigData, kThermalOffThousandth), INT, "1/1000", "0",
         "the central state: share of the days that count as days without thermal control",
         "uses 0"},

        {at(kShellTempBroadcast), OBJECT_OR_ARRAY, "", "broadcasts from " + kBand,
         "an object: the thermal-status engine; an array: the central state, which only keeps it",
         "broadcasts from " + kBand},
        {at(kShellTempBroadcast, kDisable), INT, "", "0",
         "the thermal-status engine: 1 switches temperature broadcasts off",
         "leaves temperature broadcasts on"},
        {at(kShellTempBroadcast, kStartEndValues), ARRAY, "°C",
         "[" + std::to_string(BroadcastBand().low) + ", " + std::to_string(BroadcastBand().high) +
                 "]",
         "the thermal-status engine: band of the broadcasts", "broadcasts from " + kBand},

        {at(kSpecifiedZones), OBJECT, "", "clients get no zone temperatures", "the fitting engine",
         ""},
        {at(kSpecifiedZones, kThermalZoneType), ARRAY, "zone types", "no zones",
         "the fitting engine: zones that clients may ask for", "answers no zone temperatures"},
        {at(kTsensorZones), OBJECT, "", "no tsensor histogram",
         "the fitting engine, which then ticks every second", ""},
        {at(kTsensorZones, kThermalZoneType), ARRAY, "zone types", "no zones",
         "the fitting engine: zones of the daily histogram",
         "ticks every second for a histogram of no zones"},

        {at(kOldSafetyProject), ARRAY, "project names", "no answer (-1)",
         "the service, transaction 23", "answers -1, as without the key"},
        {at(kCpuLimitProcess), OBJECT, "", "no processes", "the service, transaction 101", ""},
        {at(kCpuLimitProcess, kLimitInfo), ARRAY, "texts", "no processes",
         "the service, transaction 101", "answers that there are none"},

        {at(kFittingModels), OBJECT, "", "no shell temperature", "the fitting engine", ""},
        {at(kFittingModels, kAnyName), OBJECT, "", "no such scene", "the fitting engine: a scene",
         ""},
        {at(kFittingModels, kAnyName, kTempModel), OBJECT, "", "the scene has no models",
         "the fitting engine", ""},
        {at(kFittingModels, kAnyName, kTempModel, kAnyName), OBJECT, "", "no such model",
         "the fitting engine: a model, read in the order of the names", ""},
        {at(kFittingModels, kAnyName, kTempModel, kAnyName, kIndex), INT, "", "required",
         "the fitting engine: number of the result in /proc/shell-temp", ""},
        {at(kFittingModels, kAnyName, kTempModel, kAnyName, kThermalZone), ARRAY,
         "zone types or numbers", "required", "the fitting engine: inputs", "", "thermal_zones"},
        {at(kFittingModels, kAnyName, kTempModel, kAnyName, kCoefficient), ARRAY, "m°C per m°C",
         "required", "the fitting engine: a weight a zone, then the constant (m°C)", "",
         "coefficients"},
        {at(kFittingModels, kAnyName, kTempModel, kAnyName, kType), UINT, "", "1",
         "the fitting engine: kind of the model; 1, linear, is the only one", "uses 1"},

        {at(kFittingModels, kAnyAmbient, kAmbientFitting), OBJECT, "", "no estimate",
         "the ambient estimator", ""},
        {at(kFittingModels, kAnyAmbient, kAmbientFitting, kParameterName), ARRAY, "names",
         "required", "the ambient estimator: what each coefficient is", "", "parameter_name"},
        {at(kFittingModels, kAnyAmbient, kAmbientFitting, kCoefficient), ARRAY, "", "required",
         "the ambient estimator: a value for each name", ""},
        {at(kFittingModels, kAnyAmbient, kAmbientFitting, kTempRateThreshold), NUMBER, "m°C/s",
         "required", "the ambient estimator: steady below this slope", ""},
        {at(kFittingModels, kAnyAmbient, kAmbientFitting, kPowerDiffThreshold), NUMBER, "mW",
         "required", "the ambient estimator: steady below this change of power", ""},
        {at(kFittingModels, kAnyAmbient, kAmbientFitting, kChargeCurrentThreshold), NUMBER, "mA",
         kChargeThreshold, "the ambient estimator: no estimate above this mean charge current",
         "uses " + kChargeThreshold + " mA"},

        {at(kFittingModels, kHeatDetection), OBJECT, "", "no heat sources", "the heat center", ""},
        {at(kFittingModels, kHeatDetection, kHeatModel), OBJECT, "", "no heat sources",
         "the heat center", ""},
        {at(kFittingModels, kHeatDetection, kHeatModel, kDeviceName), ARRAY, "names",
         "no coefficients", "the heat center: cpu, display, cellular, wifi, gpu",
         "has no coefficients: each counts as -1, which gives negative figures"},
        {at(kFittingModels, kHeatDetection, kHeatModel, kCoefficient), ARRAY,
         "sample units per m°C", "no coefficients", "the heat center: a value for each name",
         "has no coefficients: each counts as -1, which gives negative figures"},
        {at(kFittingModels, kHeatDetection, kBrightnessModel), OBJECT, "", "no figures",
         "the display component, for its log", ""},
        {at(kFittingModels, kHeatDetection, kBrightnessModel, kFactor), ARRAY, "names",
         "no figures", "the display component: el_brt, el_lvl, el_pwr, 60_pwr, 120_pwr",
         "knows no figures of the display"},
        {at(kFittingModels, kHeatDetection, kBrightnessModel, kCoefficient), ARRAY,
         "nits, levels, mW", "no figures", "the display component: a value for each name",
         "knows no figures of the display"},
        {at(kFittingModels, kHeatDetection, kGpuModel), OBJECT, "", "the GPU heats 0",
         "the GPU component", ""},
        {at(kFittingModels, kHeatDetection, kGpuModel, kGpuFreq), ARRAY,
         "MHz; on MediaTek as its node says", "the GPU heats 0",
         "the GPU component: clocks, ascending", "takes the GPU's current as 0"},
        {at(kFittingModels, kHeatDetection, kGpuModel, kPowerMa), ARRAY, "mA", "the GPU heats 0",
         "the GPU component: current at each clock", "takes the GPU's current as 0"},
        {at(kFittingModels, kHeatDetection, kCellularModel), OBJECT, "",
         "the modem's heat is what the usage feed says", "the cellular component", "",
         "cellular_model"},
        {at(kFittingModels, kHeatDetection, kCellularModel, kRsrpValue), ARRAY, "dBm", "no table",
         "the cellular component: signal strengths, ascending", "takes the modem's current as 0"},
        {at(kFittingModels, kHeatDetection, kCellularModel, kCurrent4G), ARRAY, "mA", "no table",
         "the cellular component: current at each strength", "takes the modem's current as 0"},
        {at(kFittingModels, kHeatDetection, kCellularModel, kCurrent5G), ARRAY, "mA", "no table",
         "the cellular component: current at each strength", "takes the modem's current as 0"},
        {at(kFittingModels, kHeatDetection, kCellularModel, kThermalZoneType), ARRAY, "zone types",
         "no zones", "the cellular component: amplifier, then a base to compare it with",
         "reports no temperatures of the modem"},

        {at(kThermalStatusModel), OBJECT, "", "no levels, no status", "the thermal-status engine",
         ""},
        {at(kThermalStatusModel, kTempThreshold), ARRAY, "°C", "required",
         "the thermal-status engine: " + kLevels + " rising thresholds",
         "rejects the whole model: no levels"},
        {at(kThermalStatusModel, kTempThresholdDown), ARRAY, "°C", "required",
         "the thermal-status engine: " + kLevels + " falling thresholds",
         "rejects the whole model: no levels"},
        {at(kThermalStatusModel, kThermalStatus), ARRAY, "status values", "required",
         "the thermal-status engine: the status of each level",
         "rejects the whole model: no levels"},
        {at(kThermalStatusModel, kThermalStatusReport), ARRAY, "", "required",
         "the thermal-status engine, which only logs it", "rejects the whole model: no levels"},
};

bool stepMatches(const std::string& step, const std::string& name) {
    return step == kAnyName || step == name || (step == kAnyAmbient && isAmbientScene(name));
}

/** Whether the first steps of a key, as many as the path has, are those of the path. */
bool beginsWith(const KeyEntry& key, const std::vector<std::string>& path) {
    return key.path.size() >= path.size() &&
           std::equal(path.begin(), path.end(), key.path.begin(),
                      [](const std::string& name, const std::string& step) {
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
        return key.path.size() == path.size() && beginsWith(key, path);
    });
    return found != kCatalogue.rend() ? &*found : nullptr;
}

std::vector<std::string> namesBelow(const std::vector<std::string>& path) {
    std::vector<std::string> names;
    for (const KeyEntry& key : kCatalogue) {
        if (key.path.size() == path.size() + 1 && beginsWith(key, path) &&
            key.path.back() != kAnyName && key.path.back() != kAnyAmbient) {
            names.push_back(key.path.back());
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
    return std::ranges::count(scene::kAmbientScenes, name) > 0;
}

}  // namespace kelvo::lint
