#include "kelvoconf/lint/ConfigNode.h"

#include "common/JsonText.h"
#include "config/ConfigPath.h"

namespace kelvo::lint {

namespace {

constexpr size_t kMostShown = 40;  // bytes of a value in a message

}  // namespace

ConfigNode ConfigNode::operator/(const std::string& name) const {
    const Json::Value* const member = findMember(*mValue, name);
    return {member != nullptr ? *member : Json::Value::nullSingleton(), mPath / name};
}

ConfigNode ConfigNode::operator[](Json::ArrayIndex element) const {
    const bool exists = mValue->isArray() && element < mValue->size();
    return {exists ? (*mValue)[element] : Json::Value::nullSingleton(), mPath[element]};
}

std::vector<std::pair<std::string, ConfigNode>> ConfigNode::members() const {
    std::vector<std::pair<std::string, ConfigNode>> members;
    if (mValue->isObject()) {
        for (const std::string& name : mValue->getMemberNames()) {
            members.emplace_back(name, ConfigNode((*mValue)[name], mPath / name));
        }
    }
    return members;
}

std::vector<ConfigNode> ConfigNode::elements() const {
    std::vector<ConfigNode> elements;
    if (mValue->isArray()) {
        for (Json::ArrayIndex i = 0; i < mValue->size(); ++i) {
            elements.push_back((*this)[i]);
        }
    }
    return elements;
}

std::string shown(const Json::Value& value) {
    std::string text = common::compactJson(value, common::JsonStyle::AS_WRITTEN);
    if (text.size() <= kMostShown) {
        return text;
    }
    size_t end = kMostShown;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;  // not within a character
    }
    return text.substr(0, end) + "...";
}

}  // namespace kelvo::lint
