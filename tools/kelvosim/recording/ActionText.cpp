#include "recording/ActionText.h"

#include <map>

#include "common/Overloaded.h"
#include "service/ServiceCodes.h"

namespace {

constexpr size_t kLongest = 100;  // bytes

/** The calls that a framework makes, by the names kelvoctl has for them. */
std::string callName(uint32_t code) {
    static const std::map<uint32_t, const char*> kNames{
            {kelvo::SET_DYNAMIC_CONFIG, "set-config"},
            {kelvo::RELOAD_CONFIG, "reload"},
            {kelvo::SET_SCREEN_STATUS, "screen"},
            {kelvo::NOTIFY_THERMAL_STATUS, "notify"},
            {kelvo::SET_CURRENT_PACKAGE, "package"},
            {kelvo::SET_LIGHT_LAMP_STATUS, "lamp"},
            {kelvo::SET_SCREEN_FOLD_STATUS, "fold"},
            {kelvo::COMPONENT_HEAT_TEST, "heat test"},
            {kelvo::SET_WIFI_INFO, "wifi"},
            {kelvo::SET_NETWORK_INFO, "network"},
            {kelvo::SET_NETWORK_SPEED_INFO, "speed"},
            {kelvo::GET_COMPONENTS_HEAT_DETAIL, "heat report"},
    };
    const auto found = kNames.find(code);
    return found != kNames.end() ? found->second : "call " + std::to_string(code);
}

std::string argumentText(const sim::Argument& argument) {
    return std::visit(common::Overloaded{[](int32_t value) { return std::to_string(value); },
                                         [](const std::string& text) { return text; },
                                         [](const std::vector<int32_t>& values) {
                                             std::string text = "[";
                                             for (const int32_t value : values) {
                                                 text += (text.size() > 1 ? "," : "") +
                                                         std::to_string(value);
                                             }
                                             return text + "]";
                                         },
                                         [](const sim::ListenerArgument& listener) {
                                             return "listener " + listener.id;
                                         }},
                      argument);
}

std::string textOf(const sim::Transact& call) {
    std::string text = callName(call.code);
    for (const sim::Argument& argument : call.args) {
        text += " " + argumentText(argument);
    }
    return text;
}

std::string textOf(const sim::SetZones& zones, const sim::Scenario& scenario) {
    std::string text = "zones";
    for (const sim::ZoneChange& zone : zones.zones) {
        text += " " + scenario.zones[static_cast<size_t>(zone.index)].type + ": " +
                (zone.temp ? std::to_string(*zone.temp) : "unreadable");
    }
    return text;
}

std::string textOf(const sim::SetNodes& nodes) {
    std::string text = "nodes";
    for (const sim::NodeChange& node : nodes.nodes) {
        text += " " + node.path + ": " + node.text.value_or("absent");
    }
    return text;
}

std::string textOf(const sim::SetProperties& properties) {
    std::string text = "property";
    for (const auto& [name, value] : properties.properties) {
        text += " " + name + " = " + value;
    }
    return text;
}

std::string textOf(const sim::Health& health) {
    const std::string text = std::string(health.ac ? " ac" : "") + (health.usb ? " usb" : "") +
                             (health.wireless ? " wireless" : "");
    return "health" + (text.empty() ? " no charger" : text);
}

std::string fullText(const sim::Deed& deed, const sim::Scenario& scenario) {
    return std::visit(
            common::Overloaded{
                    [&](const sim::SetZones& zones) { return textOf(zones, scenario); },
                    [](const sim::SetNodes& nodes) { return textOf(nodes); },
                    [](const sim::SetProperties& properties) { return textOf(properties); },
                    [](const sim::Transact& call) { return textOf(call); },
                    [](const sim::Listen& who) { return "listen " + who.id; },
                    [](const sim::Unlisten& who) { return "unlisten " + who.id; },
                    [](const sim::ListenerDies& who) { return "listener dies: " + who.id; },
                    [](const sim::ListenerFails& who) { return "listener fails: " + who.id; },
                    [](const sim::Health& health) { return textOf(health); },
                    [](const sim::BatteryCurrent& current) {
                        return "battery current " + std::to_string(current.value) + " mA";
                    },
                    [](const sim::TaskStats&) { return std::string("task statistics"); },
                    [](const sim::Panel&) { return std::string("panel"); },
                    [](const sim::Frames&) { return std::string("frames"); },
                    [](const sim::Usage&) { return std::string("usage report"); },
                    [](const sim::UsageBytes&) { return std::string("usage bytes"); },
                    [](const sim::ServiceState& state) {
                        return "service " + state.name + (state.up ? " up" : " down");
                    },
                    [](const sim::Dump&) { return std::string("dump"); }},
            deed);
}

bool isContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

std::string oneLine(std::string text) {
    if (text.size() > kLongest) {
        size_t end = kLongest - 3;
        while (end > 0 && isContinuationByte(text[end])) {
            --end;
        }
        text = text.substr(0, end) + "...";
    }
    for (char& byte : text) {
        if (static_cast<unsigned char>(byte) < ' ') {
            byte = ' ';
        }
    }
    return text;
}

std::string actionText(const sim::Deed& deed, const sim::Scenario& scenario) {
    return oneLine(fullText(deed, scenario));
}
