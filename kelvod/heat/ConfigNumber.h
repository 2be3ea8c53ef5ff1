#pragma once

#include <json/value.h>

/** A number of the configuration; 0, which is valid nowhere in the heat models, for anything else.
 */
inline float configNumber(const Json::Value& value) {
    return value.isDouble() ? value.asFloat() : 0.0F;
}
