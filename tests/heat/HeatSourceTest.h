#pragma once

#include <json/reader.h>

#include <algorithm>
#include <memory>
#include <string>

#include "heat/HeatProcessCenter.h"
#include "support/EngineTest.h"

/** The sources of heat on a phone whose coefficients are all 1: m°C are the mean of the samples. */
class HeatSourceTest : public EngineTest {
  protected:
    /** `models` are further members of "heatsource_detection". */
    void start(const std::string& models = "") {
        addZone("dead", std::nullopt);  // the last zone
        setConfig("{'shell_temp_fitting_model':{" + scene("default", 0, "dead") +
                  ",'heatsource_detection':{'heatsource_model':{'device_name':"
                  "['cpu','display','cellular','wifi','gpu'],'coefficient':[1,1,1,1,1]}" +
                  (models.empty() ? "" : "," + models) + "}}}");
        startPhone();
        takeEvents();
    }
    /** Monitoring from now on; the first pass comes at once, then one every 5 s. */
    void monitor() { send(102, 1); }
    void send(uint32_t code, const sim::Argument& argument) {
        phone().perform(sim::Transact{code, {argument}, {}, 1000});
    }
    /** The entry of a component in the report, with single quotes and without blanks. */
    static std::string reported(const std::string& component) {
        const std::string text = HeatProcessCenter::getInstance()->getCompentsHeatDetailInfo();
        Json::Value report;
        const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
        reader->parse(text.data(), text.data() + text.size(), &report, nullptr);
        std::string line = report[component].toStyledString();
        std::erase_if(line, [](char c) { return c == ' ' || c == '\n' || c == '\t'; });
        std::replace(line.begin(), line.end(), '"', '\'');
        return line;
    }
    size_t errors(const std::string& line) const { return log.count(ANDROID_LOG_ERROR, line); }
};
