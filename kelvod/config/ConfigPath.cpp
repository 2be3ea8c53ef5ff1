#include "config/ConfigPath.h"

namespace kelvo {

const Json::Value* findMember(const Json::Value& object, const std::string& name) {
    if (!object.isObject()) {
        return nullptr;
    }
    const Json::Value* member = object.find(name.data(), name.data() + name.size());
    return member != nullptr && !member->isNull() ? member : nullptr;
}

ConfigLookup lookUpConfig(const Json::Value& root, const std::vector<std::string>& path) {
    const Json::Value* value = &root;
    for (const std::string& key : path) {
        if (!value->isNull() && !value->isObject()) {
            return {nullptr, true};
        }
        value = findMember(*value, key);
        if (value == nullptr) {
            return {};
        }
    }
    return {value, false};
}

std::string joinConfigPath(const std::vector<std::string>& path) {
    std::string joined;
    for (const std::string& key : path) {
        joined += joined.empty() ? key : "." + key;
    }
    return joined;
}

}  // namespace kelvo
