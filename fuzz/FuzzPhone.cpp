#include "FuzzPhone.h"

#include "Target.h"
#include "service/ServiceCodes.h"
#include "sim/scenario/ScenarioParser.h"

namespace {

constexpr int64_t kReloadTakes = 3000;  // ms
constexpr uint32_t kQuestions[] = {kelvo::GET_THERMAL_STATUS,
                                   kelvo::GET_THERMAL_CONFIG,
                                   kelvo::GET_VERSION,
                                   kelvo::GET_BIG_DATA,
                                   kelvo::PEEK_BIG_DATA,
                                   kelvo::GET_CURRENT_TEMP,
                                   kelvo::GET_SPECIFIED_ZONE_TEMPS,
                                   kelvo::GET_ALL_SHELL_TEMPS,
                                   kelvo::SHELL_TEMP_AND_TYPE,
                                   kelvo::IS_NEW_SAFETY_TYPE,
                                   kelvo::GET_AMBIENT_TEMP,
                                   kelvo::CPU_LIMIT_PROCEESES,
                                   kelvo::GET_COMPONENTS_HEAT_DETAIL};

}  // namespace

FuzzPhone& FuzzPhone::get(const char* example) {
    static auto* const phone = new FuzzPhone(example);
    return *phone;
}

FuzzPhone::FuzzPhone(const char* example)
      : mScenario(
                sim::loadScenario(std::string(KELVO_EXAMPLES) + "/" + example + "/scenario.json")) {
    mScenario.plant.reset();
    mScenario.timeline.clear();
    mPhone.emplace(mScenario);
    require(mPhone->start(), "the daemon starts");
    perform(sim::Listen{"fuzz", 10050});
}

void FuzzPhone::store(std::string_view path, std::string_view bytes) {
    perform(sim::SetNodes{{{std::string(path), std::string(bytes)}}});
}

void FuzzPhone::reload() {
    tell(kelvo::RELOAD_CONFIG, 0);
    run(kReloadTakes);
}

void FuzzPhone::setZones(int32_t temp) {
    sim::SetZones zones;
    for (size_t i = 0; i < mScenario.zones.size(); ++i) {
        zones.zones.push_back({static_cast<int32_t>(i), temp});
    }
    perform(zones);
}

void FuzzPhone::askAll() {
    for (const uint32_t code : kQuestions) {
        perform(sim::Transact{code, {}, {}, 1000});
    }
    perform(sim::Dump{});
}
