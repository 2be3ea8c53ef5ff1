#include "support/EngineTest.h"

#include <algorithm>
#include <utility>

EngineTest::EngineTest() {
    scenario.name = "test";
    scenario.startNs = 1'772'352'000'000'000'000;  // 2026-03-01T08:00:00Z
    scenario.durationMs = 1'000'000'000;
    scenario.properties["persist.sys.kelvo.enable"] = "1";
    scenario.properties["persist.sys.kelvo.loglevel"] = "2";
    // SM8450, a Qualcomm chip
    scenario.nodes.push_back({"/sys/devices/soc0/soc_id", "457\n"});
    scenario.nodes.push_back({"/sys/devices/soc0/raw_version", "2\n"});
}

void EngineTest::addZone(std::string type, std::optional<int32_t> temp) {
    scenario.zones.push_back({std::move(type), temp});
}

void EngineTest::setConfig(std::string text) {
    text.insert(text.find('{') + 1, "'thermal_status_model':{'temp_threshold_down':[]},");
    scenario.config.main = json(text);
}

void EngineTest::setScenes(const std::string& scenes) {
    setConfig("{'shell_temp_fitting_model':{" + scenes + "}}");
}

void EngineTest::buildPhone() {
    mPhone = std::make_unique<sim::VirtualPhone>(scenario);
    mPhone->setListener([this](const sim::Event& event) {
        if (event.name == "write") {
            mWrites.push_back(event.members.back().second.asString());
        } else {
            mEvents.push_back(event);
        }
    });
}

void EngineTest::startPhone() {
    buildPhone();
    ASSERT_TRUE(mPhone->start());
}

void EngineTest::startWithoutTemp(const std::string& members) {
    addZone("dead", std::nullopt);
    scenario.config.main = json("{'shell_temp_fitting_model':{" + scene("default", 0, "dead") +
                                "}" + members + "}");
    startPhone();
}

void EngineTest::runUntil(double seconds) {
    mPhone->runUntil(static_cast<int64_t>(seconds * 1000));
}

void EngineTest::setTemp(int32_t zone, std::optional<int32_t> temp) {
    mPhone->perform(sim::SetZones{{{zone, temp}}});
}

void EngineTest::call(uint32_t code, const sim::Argument& argument) {
    phone().perform(sim::Transact{code, {argument}, {}, 1000});
}

void EngineTest::setService(const std::string& name, bool up) {
    phone().perform(sim::ServiceState{name, up});
}

EngineTest::Lines EngineTest::takeWrites() {
    return std::exchange(mWrites, {});
}

EngineTest::Lines EngineTest::takeEvents(const std::string& name) {
    std::vector<std::string> lines;
    for (const sim::Event& event : std::exchange(mEvents, {})) {
        std::string line = sim::toJsonLine(event);
        line.erase(0, line.find("\"event\""));
        std::replace(line.begin(), line.end(), '"', '\'');
        if (name.empty() || event.name == name) {
            lines.push_back("{" + line);
        }
    }
    return lines;
}

EngineTest::Lines EngineTest::takeCalls() {
    std::vector<std::string> calls;
    for (const sim::Event& event : std::exchange(mEvents, {})) {
        if (event.name.starts_with("notify_")) {
            std::string call = event.name.substr(event.name.rfind('_') + 1);
            for (const auto& [name, value] : event.members) {
                call += value.isInt() ? " " + std::to_string(value.asInt()) : "";
            }
            calls.push_back(call);
        }
    }
    return calls;
}
