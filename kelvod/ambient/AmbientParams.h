#pragma once

#include <json/value.h>

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "config/ConfigNames.h"

namespace kelvo {

inline constexpr double kDefaultChargeThreshold = 2500.0;  // mA

/** Coefficients and thresholds of an ambient scene. */
struct AmbientParams {
    // The estimate (°C) is the weighted sum of the means, plus the constant.
    double temp = 0;                       // °C per m°C
    double tempSlope = 0;                  // °C per m°C/s
    double power = 0;                      // °C per mW
    double constant = 0;                   // °C
    std::optional<double> batteryCurrent;  // mW per mA, added to the power of a round
    double tempRateThreshold = 0;          // m°C/s: a steady slope is below, either way
    double powerDiffThreshold = 0;         // mW: a steady power changes by no more, either way
    double chargeThreshold = kDefaultChargeThreshold;  // mA: no estimate above this mean
};

/** What the estimator knows; all but the last must be given. */
inline constexpr std::array<const char*, 7> kAmbientParameters = {
        parameter::kTemp,          parameter::kTempSlope,         parameter::kPower,
        parameter::kConst,         parameter::kTempRateThreshold, parameter::kPowerDiffThreshold,
        parameter::kBatteryCurrent};

/** Something in the parameters of a scene that is not taken. */
struct AmbientFault {
    enum class Kind {
        NO_ARRAYS,          // names or coefficients are missing, or no array
        UNEQUAL,            // they differ in number
        BAD_NAME,           // entry `element` of the names is no text
        BAD_COEFFICIENT,    // entry `element` of the coefficients is no number
        MISSING_NAME,       // nothing is called `name`
        MISSING_THRESHOLD,  // the same; `name` counts only with the other threshold beside it
        WRONG_TYPE,         // the member `name` is no number: harmless, its default holds
    };
    Kind kind = Kind::NO_ARRAYS;
    Json::ArrayIndex element = 0;
    std::string name = {};
};

/** A scene's "ambient_fitting", taken apart. */
struct AmbientFitting {
    /** Names and coefficients, as far as they are right. */
    std::vector<std::pair<std::string, double>> pairs;
    /** None when the scene cannot be used; the first fault then says why. */
    std::optional<AmbientParams> params;
    std::vector<AmbientFault> faults;
};

/** Reads the section. Pure. */
AmbientFitting readAmbientFitting(const Json::Value& section);

}  // namespace kelvo
