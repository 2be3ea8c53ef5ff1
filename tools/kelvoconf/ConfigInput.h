#pragma once

#include <json/value.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "config/ConfigText.h"

namespace kelvoconf {

/**
 * Bytes before the first "{" of a text when they are blanks, comments and a byte-order mark only;
 * npos when the text has no "{" or begins with something else.
 */
size_t prefixSize(std::string_view text);

/** "FILE:LINE:COLUMN" of a byte of a text; lines and columns (in bytes) count from 1. */
std::string placeOf(const std::string& file, std::string_view text, size_t offset);

/** The text of a configuration file. */
struct ConfigText {
    std::string whole;
    size_t start = 0;  // where the object begins: what stands before it never gets to a phone
};

/** Reads a configuration file, plain or encrypted, without parsing it. Throws Failure. */
ConfigText readConfigText(const std::string& path);

/** Parses a configuration file, plain or encrypted. Throws Failure. */
Json::Value readConfig(const std::string& path);

}  // namespace kelvoconf
