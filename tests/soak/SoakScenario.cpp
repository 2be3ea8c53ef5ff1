#include "SoakScenario.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "service/ServiceCodes.h"
#include "sim/scenario/JsonPlace.h"

namespace {

constexpr int kDay = 86400;  // s
constexpr int kStormCalls = 300;
constexpr double kStormStep = 0.1;  // s
constexpr int kPackages = 20;
constexpr int kListeners = 12;
constexpr int kStartMonitor = 1;
constexpr int kStopMonitor = 2;
constexpr std::array kServices{"health", "charger", "performance", "panel", "frames", "quorix"};

Json::Value& add(Json::Value& timeline, double time, const char* what) {
    Json::Value& action = timeline[timeline.size()];
    action["t"] = time;
    action["do"] = what;
    return action;
}

void addCall(Json::Value& timeline, double time, uint32_t code, const Json::Value& argument) {
    Json::Value& call = add(timeline, time, "transact");
    call["code"] = code;
    call["args"][0][argument.isString() ? "string" : "int32"] = argument;
}

/** Packages, a burning lamp and a folded screen in turn, faster than scenes are switched. */
void addStorm(Json::Value& timeline, double time) {
    for (int i = 0; i < kStormCalls; ++i, time += kStormStep) {
        if (i % 5 == 0) {
            addCall(timeline, time, kelvo::SET_LIGHT_LAMP_STATUS, i / 5 % 2);
        } else if (i % 5 == 1) {
            addCall(timeline, time, kelvo::SET_SCREEN_FOLD_STATUS, i / 5 % 2 + 1);
        } else {
            addCall(timeline, time, kelvo::SET_CURRENT_PACKAGE,
                    "com.example.p" + std::to_string(i % kPackages));
        }
    }
    addCall(timeline, time, kelvo::SET_LIGHT_LAMP_STATUS, 0);
    addCall(timeline, time, kelvo::SET_SCREEN_FOLD_STATUS, 1);
}

void addHour(Json::Value& timeline, double time, size_t hour) {
    // They come one after the other; half of them go, the others die.
    for (int i = 0; i < kListeners; ++i) {
        const std::string id = "l" + std::to_string(i);
        add(timeline, time + 60 + i, "listen")["id"] = id;
        add(timeline, time + 660 + i, i % 2 == 0 ? "unlisten" : "listener_dies")["id"] = id;
    }
    for (const auto& [after, state] : {std::pair(900, "down"), std::pair(990, "up")}) {
        Json::Value& change = add(timeline, time + after, "service");
        change["name"] = kServices[hour % kServices.size()];
        change["state"] = state;
    }
    addCall(timeline, time + 1500, kelvo::COMPONENT_HEAT_TEST, kStartMonitor);
    addStorm(timeline, time + 1800);
    add(timeline, time + 2100, "dump");
    addCall(timeline, time + 2400, kelvo::COMPONENT_HEAT_TEST, kStopMonitor);
    if (hour % (24 / kReloadsADay) == 0) {
        addCall(timeline, time + 2700, kelvo::RELOAD_CONFIG, 0);
    }
}

void addDay(Json::Value& timeline, const Json::Value& example, int day) {
    for (const Json::Value& own : example) {
        if (day == 0 || own["do"] != "listen") {  // who listens does so for good
            timeline.append(own)["t"] = own["t"].asDouble() + day * kDay;
        }
    }
    for (int hour = 0; hour < 24; ++hour) {
        addHour(timeline, day * kDay + hour * 3600, static_cast<size_t>(hour));
    }
    addCall(timeline, day * kDay + kDay - 30, kelvo::GET_BIG_DATA, 0);
}

/** The points of a profile that varies, for the other days too. */
void repeat(Json::Value& profile, int days) {
    const Json::Value first = profile;
    for (int day = 1; first.isArray() && day < days; ++day) {
        for (Json::Value point : first) {
            point[0] = point[0].asDouble() + day * kDay;
            profile.append(point);
        }
    }
}

}  // namespace

Json::Value soakScenario(const std::string& example, int days) {
    std::ifstream stream(example);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    Json::Value scenario = sim::parseJson(text, example);
    const std::filesystem::path folder = std::filesystem::absolute(example).parent_path();
    for (Json::Value& file : scenario["config"]) {
        file = (folder / file.asString()).string();
    }
    const Json::Value own = scenario["timeline"];
    scenario["timeline"] = Json::Value(Json::arrayValue);
    for (int day = 0; day < days; ++day) {
        addDay(scenario["timeline"], own, day);
    }
    repeat(scenario["plant"]["ambient"], days);
    for (Json::Value& source : scenario["plant"]["sources"]) {
        repeat(source["power"], days);
    }
    scenario["duration"] = days * kDay;
    return scenario;
}
