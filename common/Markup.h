#pragma once

#include <string>

namespace common {

/**
 * UTF-8 as text of HTML or XML, or as an attribute between double quotes. Control characters, which
 * XML cannot hold, become "?".
 */
std::string escapedMarkup(const std::string& text);

}  // namespace common
