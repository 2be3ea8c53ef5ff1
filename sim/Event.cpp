#include "sim/Event.h"

#include <json/writer.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

namespace sim {

namespace {

std::string toCompactJson(const Json::Value& value) {
    static const Json::StreamWriterBuilder builder = [] {
        Json::StreamWriterBuilder compact;
        compact["indentation"] = "";
        return compact;
    }();
    return Json::writeString(builder, value);
}

std::string toSeconds(int64_t timeMs) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%" PRId64 ".%03" PRId64, timeMs / 1000, timeMs % 1000);
    return text.data();
}

}  // namespace

std::string toJsonLine(const Event& event) {
    std::string line = "{\"t\":" + toSeconds(event.timeMs) +
                       ",\"event\":" + Json::valueToQuotedString(event.name.c_str());
    for (const auto& [key, value] : event.members) {
        line += "," + Json::valueToQuotedString(key.c_str()) + ":" + toCompactJson(value);
    }
    return line + "}";
}

std::string atTime(const std::string& jsonLine, int64_t timeMs) {
    return "{\"t\":" + toSeconds(timeMs) +
           jsonLine.substr(std::min(jsonLine.find(','), jsonLine.size()));
}

}  // namespace sim
