#include "KelvodReport.h"

std::optional<std::string> mainHeatSource(const Json::Value& report) {
    std::optional<std::string> main;
    int32_t most = 0;
    for (const std::string& name :
         report.isObject() ? report.getMemberNames() : Json::Value::Members()) {
        const Json::Value heat = report[name].isObject() ? report[name]["avgHeat"] : Json::Value();
        if (heat.isInt() && heat.asInt() > most) {
            most = heat.asInt();
            main = name;
        }
    }
    return main;
}
