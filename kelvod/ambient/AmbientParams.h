#pragma once

#include <json/value.h>

#include <map>
#include <optional>
#include <string>

namespace kelvo {

/** Coefficients and thresholds of an ambient scene, by the names that the configuration uses. */
using AmbientCoeffs = std::map<std::string, double>;

/** Why the parameters of a scene cannot be used. */
struct AmbientFault {
    enum class Kind {
        NO_ARRAYS,     // names or coefficients are missing, or no array
        UNEQUAL,       // they differ in number
        BAD_PAIR,      // entry `element`: a name that is no text or a coefficient that is none
        MISSING_NAME,  // nothing is called `name`
    };
    Kind kind = Kind::NO_ARRAYS;
    Json::ArrayIndex element = 0;
    std::string name = {};
};

/**
 * Takes a scene's "ambient_fitting" apart. None, after a log line where one is due, when names and
 * coefficients do not match, are of the wrong kind, or one of the six that an estimate needs is
 * missing; `fault`, when not null, then says why. The result holds "charge_current_threshold" (mA)
 * in any case.
 */
std::optional<AmbientCoeffs> parseAmbientFitting(const std::string& scene, const Json::Value& root,
                                                 AmbientFault* fault = nullptr);

}  // namespace kelvo
