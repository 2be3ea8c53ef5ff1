#include "ambient/AmbientParams.h"

#include "core/Log.h"

namespace kelvo {

namespace {

constexpr double kDefaultChargeThreshold = 2500.0;  // mA

const Json::Value& member(const Json::Value& root, const char* name) {
    return root.isObject() ? root[name] : Json::Value::nullSingleton();
}

/** Each pair of name and coefficient; none when the two arrays do not fit together. */
std::optional<AmbientCoeffs> pairUp(const Json::Value& names, const Json::Value& values) {
    if (names.size() != values.size()) {
        return std::nullopt;
    }
    AmbientCoeffs coeffs;
    for (Json::ArrayIndex i = 0; i < names.size(); ++i) {
        if (!values[i].isDouble() || !names[i].isString()) {
            return std::nullopt;
        }
        coeffs[names[i].asString()] = values[i].asDouble();
        KLOGD("paramter_name:%s, coefficient:%f", names[i].asCString(), values[i].asDouble());
    }
    return coeffs;
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

bool isComplete(const AmbientCoeffs& coeffs) {
    for (const char* name : {"temp_coeff", "tempSlope_coeff", "power_coeff", "const_coeff",
                             "temp_rate_threshold", "power_diff_threshold"}) {
        if (!coeffs.contains(name)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::optional<AmbientCoeffs> parseAmbientFitting(const std::string& scene,
                                                 const Json::Value& root) {
    const Json::Value& names = member(root, "paramter_name");
    const Json::Value& values = member(root, "coefficient");
    if (!names.isArray() || !values.isArray()) {
        KLOGE("parse ambient fitting parameters failed: %s", scene.c_str());
        return std::nullopt;
    }
    std::optional<AmbientCoeffs> coeffs = pairUp(names, values);
    if (coeffs) {
        addThresholds(root, *coeffs);
    }
    return coeffs && isComplete(*coeffs) ? coeffs : std::nullopt;
}

}  // namespace kelvo
