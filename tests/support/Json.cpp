#include "support/Json.h"

#include <algorithm>

std::string json(std::string_view text) {
    std::string result(text);
    std::ranges::replace(result, '\'', '"');
    return result;
}

std::string model(const std::string& name, int32_t index, const std::string& zone) {
    return "'" + name + "':{'index':" + std::to_string(index) + ",'thermal_zone':['" + zone +
           "'],'coefficient':[1]}";
}

std::string scene(const std::string& name, int32_t index, const std::string& zone) {
    return "'" + name + "':{'temp_model':{" + model("m", index, zone) + "}}";
}
