#include "sim/scenario/Event.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <string_view>

namespace sim {

namespace {

/** jsoncpp's own writing, which costs a microsecond, is for texts that need escapes. */
bool isPlain(std::string_view text) {
    return std::ranges::all_of(
            text, [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

void appendValue(std::string& line, const Json::Value& value, common::JsonStyle style) {
    const char* begin = nullptr;
    const char* end = nullptr;
    if (value.type() == Json::intValue) {
        line += std::to_string(value.asLargestInt());
    } else if (value.getString(&begin, &end) && isPlain({begin, end})) {
        line.append(1, '"').append(begin, end).append(1, '"');
    } else {
        line += common::compactJson(value, style);
    }
}

std::string toSeconds(int64_t timeMs) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%" PRId64 ".%03" PRId64, timeMs / 1000, timeMs % 1000);
    return text.data();
}

}  // namespace

std::string toJsonLine(const Event& event, common::JsonStyle style) {
    std::string line = "{\"t\":" + toSeconds(event.timeMs) + ",\"event\":\"" + event.name + "\"";
    for (const auto& [key, value] : event.members) {
        line.append(",\"").append(key).append("\":");
        appendValue(line, value, style);
    }
    return line + "}";
}

std::string atTime(const std::string& jsonLine, int64_t timeMs) {
    return "{\"t\":" + toSeconds(timeMs) +
           jsonLine.substr(std::min(jsonLine.find(','), jsonLine.size()));
}

}  // namespace sim
