#include "StatusLine.h"

#include <json/reader.h>

#include <cstdio>
#include <ctime>
#include <optional>

namespace {

constexpr int64_t kNanosPerSecond = 1'000'000'000;
constexpr char kBoardModel[] = "board";  // a model of the inside, not of the shell

/** m°C as °C with one decimal, four characters wide. */
std::string celsius(int32_t milli) {
    char text[24];
    std::snprintf(text, sizeof(text), "%4.1f", milli / 1000.0);
    return text;
}

/** Model index → name of all scenes; where scenes differ, the one that sorts first wins. */
std::map<int32_t, std::string> readModelNames(const std::string& config) {
    std::map<int32_t, std::string> names;
    Json::Value root;
    if (!Json::Reader().parse(config, root) || !root.isObject()) {
        return names;
    }
    const Json::Value& scenes = root["shell_temp_fitting_model"];
    for (const std::string& scene :
         scenes.isObject() ? scenes.getMemberNames() : Json::Value::Members()) {
        const Json::Value models =
                scenes[scene].isObject() ? scenes[scene]["temp_model"] : Json::Value();
        for (const std::string& name :
             models.isObject() ? models.getMemberNames() : Json::Value::Members()) {
            if (models[name].isObject() && models[name]["index"].isInt()) {
                names.emplace(models[name]["index"].asInt(), name);
            }
        }
    }
    return names;
}

}  // namespace

StatusLine::StatusLine(const sim::Scenario& scenario)
      : mStartNs(scenario.startNs),
        mModelNames(
                readModelNames(scenario.config.data.value_or(scenario.config.main.value_or("")))) {}

std::string StatusLine::heading() const {
    return "phone time   shell      models (°C)";
}

std::string StatusLine::line(sim::LivePhone& phone, int64_t timeMs) const {
    std::optional<int32_t> shell;
    std::string models;
    for (const auto& [index, temp] : phone.shellTemps()) {
        const std::string name = modelName(index);
        models += name + " " + celsius(temp) + "  ";
        if (name != kBoardModel && (!shell || temp > *shell)) {
            shell = temp;
        }
    }
    std::string text = wallClock(timeMs) + "     ";
    text += (shell ? celsius(*shell) : "   -") + " °C    ";
    text += models.empty() ? "nothing written yet  " : models;
    if (const auto zone = phone.hottestZone()) {
        text += "| hottest zone " + zone->type + " " + celsius(*zone->temp);
    }
    return text;
}

std::string StatusLine::wallClock(int64_t timeMs) const {
    const std::time_t seconds = mStartNs / kNanosPerSecond + timeMs / 1000;
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char text[16];
    std::strftime(text, sizeof(text), "%H:%M:%S", &utc);
    return text;
}

std::string StatusLine::modelName(int32_t index) const {
    const auto found = mModelNames.find(index);
    return found == mModelNames.end() ? "#" + std::to_string(index) : found->second;
}
