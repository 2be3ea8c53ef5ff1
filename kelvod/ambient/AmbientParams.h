#pragma once

#include <json/value.h>

#include <map>
#include <optional>
#include <string>

namespace kelvo {

/** Coefficients and thresholds of an ambient scene, by the names that the configuration uses. */
using AmbientCoeffs = std::map<std::string, double>;

/**
 * Takes a scene's "ambient_fitting" apart. None, after a log line where one is due, when names and
 * coefficients do not match, are of the wrong kind, or one of the six that an estimate needs is
 * missing. The result holds "charge_current_threshold" (mA) in any case.
 */
std::optional<AmbientCoeffs> parseAmbientFitting(const std::string& scene, const Json::Value& root);

}  // namespace kelvo
