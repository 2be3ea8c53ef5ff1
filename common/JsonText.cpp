#include "common/JsonText.h"

#include <json/reader.h>
#include <json/writer.h>

#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <sstream>
#include <utility>

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

/** A number with a fraction stays one for readers that tell it from a whole one: "38.0". */
std::string shortestNumber(double value) {
    constexpr double kLeast = 1e-5;  // from here up to 1e15 without an exponent
    constexpr double kMost = 1e15;
    const double size = std::abs(value);
    const bool isPlain = size == 0 || (size >= kLeast && size < kMost);
    std::array<char, 64> text;
    const auto end = std::to_chars(text.begin(), text.end(), value,
                                   isPlain ? std::chars_format::fixed : std::chars_format::general)
                             .ptr;
    const std::string number(text.begin(), end);
    return isPlain && number.find('.') == std::string::npos ? number + ".0" : number;
}

void appendShortest(std::string& text, const Json::Value& value) {
    const char* between = "";
    if (value.isArray()) {
        text += "[";
        for (const Json::Value& element : value) {
            text += std::exchange(between, ",");
            appendShortest(text, element);
        }
        text += "]";
    } else if (value.isObject()) {
        text += "{";
        for (auto member = value.begin(); member != value.end(); ++member) {
            text.append(std::exchange(between, ",")) +=
                    compactJson(member.name(), JsonStyle::UTF8) + ":";
            appendShortest(text, *member);
        }
        text += "}";
    } else if (value.type() == Json::realValue && std::isfinite(value.asDouble())) {
        text += shortestNumber(value.asDouble());
    } else {
        text += compactJson(value, JsonStyle::UTF8);
    }
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

double asWritten(float value) {
    std::array<char, 32> text{};
    const char* const end = std::to_chars(text.begin(), text.end(), value).ptr;
    double same = value;
    std::from_chars(text.begin(), end, same);
    return same;
}

std::string compactJson(const Json::Value& value, JsonStyle style) {
    if (style == JsonStyle::SHORTEST) {
        std::string text;
        appendShortest(text, value);
        return text;
    }
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
