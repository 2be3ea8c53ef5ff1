#include "ambient/AmbientParams.h"

#include <map>
#include <string_view>

#include "config/ConfigPath.h"

namespace kelvo {

namespace {

using Kind = AmbientFault::Kind;
using Values = std::map<std::string, double>;

const Json::Value& member(const Json::Value& section, const char* name) {
    const Json::Value* const found = findMember(section, name);
    return found != nullptr ? *found : Json::Value::nullSingleton();
}

/** Adds the pairs of name and coefficient up to the first that is none. */
std::optional<AmbientFault> pairUp(const Json::Value& section, AmbientFitting& fitting) {
    const Json::Value& names = member(section, key::kParameterName);
    const Json::Value& values = member(section, key::kCoefficient);
    if (!names.isArray() || !values.isArray()) {
        return AmbientFault{Kind::NO_ARRAYS};
    }
    if (names.size() != values.size()) {
        return AmbientFault{Kind::UNEQUAL};
    }
    for (Json::ArrayIndex i = 0; i < names.size(); ++i) {
        if (!names[i].isString()) {
            return AmbientFault{Kind::BAD_NAME, i};
        }
        if (!values[i].isDouble()) {
            return AmbientFault{Kind::BAD_COEFFICIENT, i};
        }
        fitting.pairs.emplace_back(names[i].asString(), values[i].asDouble());
    }
    return std::nullopt;
}

Values valuesOf(const Json::Value& section, const AmbientFitting& fitting) {
    Values values;
    for (const auto& [name, value] : fitting.pairs) {
        values[name] = value;
    }
    const Json::Value& rate = member(section, key::kTempRateThreshold);
    const Json::Value& power = member(section, key::kPowerDiffThreshold);
    if (rate.isDouble() && power.isDouble()) {  // one alone does not count
        values[key::kTempRateThreshold] = rate.asDouble();
        values[key::kPowerDiffThreshold] = power.asDouble();
    }
    return values;
}

std::optional<AmbientFault> missingName(const Values& values) {
    for (const std::string_view name : kAmbientParameters) {
        if (name == parameter::kBatteryCurrent || values.find(std::string(name)) != values.end()) {
            continue;
        }
        const bool isThreshold =
                name == parameter::kTempRateThreshold || name == parameter::kPowerDiffThreshold;
        return AmbientFault{isThreshold ? Kind::MISSING_THRESHOLD : Kind::MISSING_NAME, 0,
                            std::string(name)};
    }
    return std::nullopt;
}

/** Of values none of which is missing. */
AmbientParams paramsOf(const Values& values) {
    AmbientParams params;
    params.temp = values.at(parameter::kTemp);
    params.tempSlope = values.at(parameter::kTempSlope);
    params.power = values.at(parameter::kPower);
    params.constant = values.at(parameter::kConst);
    params.tempRateThreshold = values.at(parameter::kTempRateThreshold);
    params.powerDiffThreshold = values.at(parameter::kPowerDiffThreshold);
    if (const auto found = values.find(parameter::kBatteryCurrent); found != values.end()) {
        params.batteryCurrent = found->second;
    }
    return params;
}

void readChargeThreshold(const Json::Value& section, AmbientFitting& fitting) {
    const Json::Value& charge = member(section, key::kChargeCurrentThreshold);
    if (charge.isDouble() && fitting.params) {
        fitting.params->chargeThreshold = charge.asDouble();
    } else if (!charge.isDouble() && !charge.isNull()) {
        fitting.faults.push_back({Kind::WRONG_TYPE, 0, key::kChargeCurrentThreshold});
    }
}

}  // namespace

AmbientFitting readAmbientFitting(const Json::Value& section) {
    AmbientFitting fitting;
    std::optional<AmbientFault> fault = pairUp(section, fitting);
    if (!fault) {
        const Values values = valuesOf(section, fitting);
        fault = missingName(values);
        if (!fault) {
            fitting.params = paramsOf(values);
        }
    }
    if (fault) {
        fitting.faults.push_back(*fault);
    }
    readChargeThreshold(section, fitting);
    return fitting;
}

}  // namespace kelvo
