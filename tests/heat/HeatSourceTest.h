#pragma once

#include <algorithm>
#include <string>

#include "heat/HeatProcessCenter.h"
#include "support/EngineTest.h"

/** The sources of heat on a phone whose coefficients are all 1: m°C are the mean of the samples. */
struct HeatSourceTest : EngineTest {
    /** `models` are further members of "heatsource_detection". */
    void start(const std::string& models = "") {
        addZone("dead", std::nullopt);  // the last zone
        setScenes(scene("default", 0, "dead") +
                  ",'heatsource_detection':{'heatsource_model':{'device_name':"
                  "['cpu','display','cellular','wifi','gpu'],'coefficient':[1,1,1,1,1]}" +
                  (models.empty() ? "" : "," + models) + "}");
        startPhone();
        takeEvents();
    }
    /** Monitoring from now on; the first pass comes at once, then one every 5 s. */
    void monitor() { call(102, 1); }
    /** The entry of a component in the report, with single quotes and without blanks. */
    static std::string reported(const std::string& component) {
        const Json::Value report =
                parsed(HeatProcessCenter::getInstance()->getCompentsHeatDetailInfo());
        std::string line = report[component].toStyledString();
        std::erase_if(line, [](char c) { return c == ' ' || c == '\n' || c == '\t'; });
        std::replace(line.begin(), line.end(), '"', '\'');
        return line;
    }
};
