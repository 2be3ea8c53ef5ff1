#pragma once

#include <json/value.h>

#include <cstddef>
#include <string>

namespace kelvo {

/** What is wrong in a text, and at which byte of it. */
struct ConfigTextError {
    size_t offset = 0;
    std::string what;
};

/**
 * Parses the JSON text of a configuration; comments are allowed and dropped, what follows the
 * document is not looked at. 0, or -1 with the first error in `error` when that is not null. Pure.
 */
int parseConfigText(const std::string& text, Json::Value& root, ConfigTextError* error = nullptr);

}  // namespace kelvo
