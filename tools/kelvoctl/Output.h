#pragma once

#include <json/value.h>

#include <string>
#include <utility>
#include <vector>

#include "Failure.h"

namespace kelvoctl {

using command_line::Failure;
using command_line::WrongUsage;

/** Where results go: standard output, as a text for a person or as one JSON object on a line. */
class Output {
  public:
    /** Keys in the order they are written in. */
    using Members = std::vector<std::pair<std::string, Json::Value>>;

    /** Whether "--json" was given; set by the command line before a command runs. */
    bool json = false;

    /** Writes the object, or the text and a newline. Throws Failure or ReaderGone. */
    void print(const Members& object, const std::string& text) const;
    /** Writes bytes as they are. Throws likewise. */
    void write(const char* bytes, size_t size) const;
};

/** "38.6 °C", for a person. */
std::string celsiusText(double celsius);
/** The same from m°C; "-" for -1, which stands for a temperature that is not known. */
std::string milliCelsiusText(const Json::Value& temp);

/** JSON on one line. */
std::string compactJson(const Json::Value& value);

}  // namespace kelvoctl
