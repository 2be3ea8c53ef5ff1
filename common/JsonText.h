#pragma once

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace common {

/**
 * The document that a text begins with; none when it is no JSON or nests deeper than the daemon
 * takes it. Comments are allowed. Thread-safe, as all functions here.
 */
std::optional<Json::Value> parseJson(std::string_view text);

/** A place in a text; both count from 1. */
struct TextPlace {
    int32_t line = 1;
    int32_t column = 1;  // bytes
};
/** The place of a byte. "\r", "\n" and "\r\n" each end a line, as the JSON library counts. */
TextPlace placeIn(std::string_view text, size_t offset);

/** How letters beyond ASCII are written, and numbers with a fraction. */
enum class JsonStyle {
    ASCII,       // escaped; with the digits that give the same double again
    UTF8,        // as they are; likewise
    AS_WRITTEN,  // as they are; of up to 15 significant digits as somebody wrote them
    SHORTEST,    // as they are; with the fewest digits that give the same double again
};

/** The double that reads like this float: 38.6, and not 38.599998474121094. */
double asWritten(float value);

/** JSON on one line, without a newline. */
std::string compactJson(const Json::Value& value, JsonStyle style = JsonStyle::ASCII);
/** JSON on many lines, indented by tabs; likewise, but for SHORTEST, which is as UTF8. */
std::string indentedJson(const Json::Value& value, JsonStyle style = JsonStyle::ASCII);

}  // namespace common
