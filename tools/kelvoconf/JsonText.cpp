#include "JsonText.h"

#include <json/writer.h>

namespace kelvoconf {

namespace {

// The most decimal digits that every double gives back unchanged.
constexpr unsigned kDigits = 15;

std::string write(const Json::Value& value, const char* indentation) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = indentation;
    builder["emitUTF8"] = true;
    builder["precision"] = kDigits;
    return Json::writeString(builder, value);
}

}  // namespace

std::string compactJson(const Json::Value& value) {
    return write(value, "");
}

std::string styledJson(const Json::Value& value) {
    return write(value, "\t") + "\n";
}

}  // namespace kelvoconf
