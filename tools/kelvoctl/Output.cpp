#include "Output.h"

#include <json/writer.h>

#include <iostream>

namespace kelvoctl {

std::string compactJson(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
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
    if (!std::cout.write(bytes, static_cast<std::streamsize>(size)).flush()) {
        throw Failure("cannot be written", "standard output");
    }
}

}  // namespace kelvoctl
