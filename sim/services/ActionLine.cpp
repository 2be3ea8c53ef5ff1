#include "sim/services/ActionLine.h"

#include "common/JsonText.h"
#include "sim/scenario/TimelineParser.h"
#include "sim/services/ServiceValues.h"

namespace sim {

namespace {

Json::Value actionOf(const char* kind) {
    Json::Value action(Json::objectValue);
    action["t"] = 0;
    action["do"] = kind;
    return action;
}

template <typename T>
void setIfKnown(Json::Value& object, const char* name, const std::optional<T>& value) {
    if (value) {
        object[name] = static_cast<Json::Int64>(*value);
    }
}

Json::Value recordsOf(const std::vector<UsageRecord>& records) {
    Json::Value result(Json::arrayValue);
    for (const UsageRecord& record : records) {
        Json::Value element(Json::objectValue);
        setIfKnown(element, "start", record.start);
        setIfKnown(element, "end", record.end);
        setIfKnown(element, "energy", record.energy);
        result.append(element);
    }
    return result;
}

std::string toHex(const std::string& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        const auto value = static_cast<uint8_t>(byte);
        hex += kDigits[value >> 4];
        hex += kDigits[value & 15];
    }
    return hex;
}

Json::Value toJson(const Health& health) {
    Json::Value action = actionOf("health");
    action["ac"] = health.ac;
    action["usb"] = health.usb;
    action["wireless"] = health.wireless;
    return action;
}

Json::Value toJson(const BatteryCurrent& current) {
    Json::Value action = actionOf("battery_current");
    action["value"] = current.value;
    return action;
}

Json::Value toJson(const TaskStats& stats) {
    Json::Value action = actionOf("taskstats");
    action["text"] = stats.text;
    return action;
}

Json::Value toJson(const Panel& panel) {
    Json::Value action = actionOf("panel");
    setIfKnown(action, "max", panel.max);
    setIfKnown(action, "level", panel.level);
    return action;
}

Json::Value toJson(const Frames& frames) {
    Json::Value action = actionOf("frames");
    action["value"] = frames.value;
    return action;
}

Json::Value toJson(const Usage& usage) {
    Json::Value action = actionOf("usage");
    action["cpu"] = recordsOf(usage.cpu);
    action["wifi"] = recordsOf(usage.wifi);
    action["cellular"] = recordsOf(usage.cellular);
    action["display"] = recordsOf(usage.display);
    return action;
}

Json::Value toJson(const UsageBytes& usage) {
    Json::Value action = actionOf("usage_bytes");
    action["hex"] = toHex(usage.bytes);
    return action;
}

}  // namespace

std::string toActionLine(const Deed& deed) {
    const Json::Value action = std::visit(
            [](const auto& set) {
                if constexpr (kIsServiceDeed<std::decay_t<decltype(set)>>) {
                    return toJson(set);
                } else {
                    return Json::Value();  // concerns no service
                }
            },
            deed);
    return common::compactJson(action);
}

Deed parseActionLine(const std::string& line) {
    const Json::Value timeline = parseJson("[" + line + "]", "action");
    return parseTimeline(JsonPlace(timeline, "action"), {}).at(0).deed;
}

}  // namespace sim
