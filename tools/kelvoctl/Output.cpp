#include "Output.h"

#include <iostream>

#include "common/JsonText.h"

namespace kelvoctl {

std::string compactJson(const Json::Value& value) {
    return common::compactJson(value, common::JsonStyle::UTF8);
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
