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

void layOut(const Json::Value& value, const std::string& indent, std::string& text) {
    if (!value.isObject() && !value.isArray()) {
        text += compactJson(value);
        return;
    }
    text += value.isObject() ? "{" : "[";
    const std::string inner = indent + "    ";
    const char* separator = "";
    for (auto member = value.begin(); member != value.end(); ++member) {
        text += separator;
        if (value.isObject()) {
            text += "\n" + inner + compactJson(member.name()) + ": ";
        }
        layOut(*member, inner, text);
        separator = value.isObject() ? "," : ", ";
    }
    text += value.isObject() ? "\n" + indent + "}" : "]";
}

}  // namespace

std::string configJson(const Json::Value& value) {
    std::string text;
    layOut(value, "", text);
    return text + "\n";
}

std::string compactJson(const Json::Value& value) {
    return write(value, "");
}

std::string styledJson(const Json::Value& value) {
    return write(value, "\t") + "\n";
}

}  // namespace kelvoconf
