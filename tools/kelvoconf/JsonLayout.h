#pragma once

#include <json/value.h>

#include <string>

namespace kelvoconf {

// Numbers of up to 15 significant digits come out as they were written.

/** JSON on one line, without a newline. */
std::string compactJson(const Json::Value& value);
/** JSON as people write configurations: a member a line, an array on one; with a newline at its
 * end.
 */
std::string configJson(const Json::Value& value);
/** Indented JSON, with a newline at its end. */
std::string styledJson(const Json::Value& value);

}  // namespace kelvoconf
