#include "JsonLayout.h"

#include "common/JsonText.h"

namespace kelvoconf {

namespace {

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
    return common::compactJson(value, common::JsonStyle::AS_WRITTEN);
}

std::string styledJson(const Json::Value& value) {
    return common::indentedJson(value, common::JsonStyle::AS_WRITTEN) + "\n";
}

}  // namespace kelvoconf
