#include "ambient/AmbientParams.h"

#include <utility>

#include "base/Log.h"

namespace kelvo {

namespace {

using Kind = AmbientFault::Kind;

constexpr double kDefaultChargeThreshold = 2500.0;  // mA

const Json::Value& member(const Json::Value& root, const char* name) {
    return root.isObject() ? root[name] : Json::Value::nullSingleton();
}

/** Adds each pair of name and coefficient. */
std::optional<AmbientFault> pairUp(const Json::Value& names, const Json::Value& values,
                                   AmbientCoeffs& coeffs) {
    if (names.size() != values.size()) {
        return AmbientFault{Kind::UNEQUAL};
    }
    for (Json::ArrayIndex i = 0; i < names.size(); ++i) {
        if (!values[i].isDouble() || !names[i].isString()) {
            return AmbientFault{Kind::BAD_PAIR, i};
        }
        coeffs[names[i].asString()] = values[i].asDouble();
        KLOGD("paramter_name:%s, coefficient:%f", names[i].asCString(), values[i].asDouble());
    }
    return std::nullopt;
}

void addThresholds(const Json::Value& root, AmbientCoeffs& coeffs) {
    const Json::Value& rate = root["temp_rate_threshold"];
    const Json::Value& power = root["power_diff_threshold"];
    if (rate.isDouble() && power.isDouble()) {  // one alone does not count
        coeffs["temp_rate_threshold"] = rate.asDouble();
        coeffs["power_diff_threshold"] = power.asDouble();
    }
    const Json::Value& charge = root["charge_current_threshold"];
    coeffs["charge_current_threshold"] =
            charge.isDouble() ? charge.asDouble() : kDefaultChargeThreshold;
}

std::optional<AmbientFault> missingName(const AmbientCoeffs& coeffs) {
    for (const char* name : {"temp_coeff", "tempSlope_coeff", "power_coeff", "const_coeff",
                             "temp_rate_threshold", "power_diff_threshold"}) {
        if (!coeffs.contains(name)) {
            return AmbientFault{Kind::MISSING_NAME, 0, name};
        }
    }
    return std::nullopt;
}

std::optional<AmbientFault> parse(const std::string& scene, const Json::Value& root,
                                  AmbientCoeffs& coeffs) {
    const Json::Value& names = member(root, "paramter_name");
    const Json::Value& values = member(root, "coefficient");
    if (!names.isArray() || !values.isArray()) {
        KLOGE("parse ambient fitting parameters failed: %s", scene.c_str());
        return AmbientFault{Kind::NO_ARRAYS};
    }
    if (auto fault = pairUp(names, values, coeffs)) {
        return fault;
    }
    addThresholds(root, coeffs);
    return missingName(coeffs);
}

}  // namespace

std::optional<AmbientCoeffs> parseAmbientFitting(const std::string& scene, const Json::Value& root,
                                                 AmbientFault* fault) {
    AmbientCoeffs coeffs;
    auto found = parse(scene, root, coeffs);
    if (!found) {
        return coeffs;
    }
    if (fault != nullptr) {
        *fault = std::move(*found);
    }
    return std::nullopt;
}

}  // namespace kelvo
