#include "Output.h"

#include <array>
#include <cstdio>
#include <iostream>

#include "common/JsonText.h"

namespace kelvoctl {

namespace {

constexpr double kMilli = 1000;  // m°C in 1 °C

}  // namespace

std::string celsiusText(double celsius) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.1f °C", celsius);
    return text.data();
}

std::string milliCelsiusText(const Json::Value& temp) {
    return temp == -1 ? "-" : celsiusText(temp.asInt() / kMilli);
}

std::string compactJson(const Json::Value& value) {
    return common::compactJson(value, common::JsonStyle::SHORTEST);
}

void Output::print(const Members& object, const std::string& text) const {
    std::string line = text;
    if (json) {
        line = "{";
        for (const auto& [key, value] : object) {
            line += (line.size() > 1 ? "," : "") + compactJson(key) + ":" + compactJson(value);
        }
        line += "}";
    }
    line += "\n";
    write(line.data(), line.size());
}

void Output::write(const char* bytes, size_t size) const {
    std::cout.write(bytes, static_cast<std::streamsize>(size)).flush();
    command_line::checkWritten(std::cout, "standard output");
}

}  // namespace kelvoctl
