#include "common/JsonText.h"

#include <json/reader.h>
#include <json/writer.h>

#include <array>
#include <memory>
#include <sstream>

#include "config/JsonNesting.h"

namespace common {

namespace {

using Writer = std::unique_ptr<Json::StreamWriter>;

// The most decimal digits that every double gives back unchanged.
constexpr unsigned kWrittenDigits = 15;

Writer newWriter(JsonStyle style, const char* indentation = "") {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = indentation;
    builder["emitUTF8"] = style != JsonStyle::ASCII;
    if (style == JsonStyle::AS_WRITTEN) {
        builder["precision"] = kWrittenDigits;
    }
    return Writer(builder.newStreamWriter());
}

/** Made once, which costs more than to write a value; a writer is no good for two threads. */
Json::StreamWriter& writerOf(JsonStyle style) {
    thread_local const std::array<Writer, 3> writers{newWriter(JsonStyle::ASCII),
                                                     newWriter(JsonStyle::UTF8),
                                                     newWriter(JsonStyle::AS_WRITTEN)};
    return *writers.at(static_cast<size_t>(style));
}

}  // namespace

std::optional<Json::Value> parseJson(std::string_view text) {
    if (kelvo::findTooDeepJson(text) != std::string_view::npos) {
        return std::nullopt;
    }
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value root;
    const bool parsed = reader->parse(text.data(), text.data() + text.size(), &root, nullptr);
    return parsed ? std::optional(root) : std::nullopt;
}

TextPlace placeIn(std::string_view text, size_t offset) {
    const std::string_view before = text.substr(0, offset);
    TextPlace place;
    size_t lineStart = 0;
    for (size_t end = 0; (end = before.find_first_of("\r\n", lineStart)) != before.npos;) {
        // An offset between the two bytes of a line's end is on the next line, at column 0.
        lineStart = text.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
        ++place.line;
    }
    place.column = static_cast<int32_t>(offset) - static_cast<int32_t>(lineStart) + 1;
    return place;
}

std::string compactJson(const Json::Value& value, JsonStyle style) {
    std::ostringstream text;
    writerOf(style).write(value, &text);
    return text.str();
}

std::string indentedJson(const Json::Value& value, JsonStyle style) {
    std::ostringstream text;
    newWriter(style, "\t")->write(value, &text);
    return text.str();
}

}  // namespace common
