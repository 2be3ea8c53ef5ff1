#include "support/Json.h"

#include <algorithm>
#include <sstream>

const std::string kAmbientFitting =
        "'ambient_fitting':{"
        "'paramter_name':['temp_coeff','tempSlope_coeff','power_coeff','const_coeff'],"
        "'coefficient':[0.001,0,0,0],'temp_rate_threshold':40.0,'power_diff_threshold':500.0}";

std::string json(std::string_view text) {
    std::string result(text);
    std::ranges::replace(result, '\'', '"');
    return result;
}

Json::Value parsed(std::string_view text) {
    Json::Value value;
    std::istringstream(json(text)) >> value;
    return value;
}

std::vector<Json::Value> parsedLines(const std::string& text) {
    std::istringstream lines(text);
    std::vector<Json::Value> values;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream(line) >> values.emplace_back();
    }
    return values;
}

std::string model(const std::string& name, int32_t index, const std::string& zone) {
    return "'" + name + "':{'index':" + std::to_string(index) + ",'thermal_zone':['" + zone +
           "'],'coefficient':[1]}";
}

std::string scene(const std::string& name, int32_t index, const std::string& zone) {
    return "'" + name + "':{'temp_model':{" + model("m", index, zone) + "}}";
}

std::string ambientScene(const std::string& zone) {
    return "'ambient':{'temp_model':{" + model("air", 1, zone) + "," + model("power", 2, zone) +
           "}," + kAmbientFitting + "}";
}
