#pragma once

#include <json/value.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "common/JsonText.h"

namespace sim {

/** Something that the daemon did, as a replay reports it. */
struct Event {
    int64_t timeMs = 0;  // since t = 0
    std::string name;
    std::vector<std::pair<std::string, Json::Value>> members;  // in the order they are written in

    bool operator==(const Event&) const = default;
};

/** One line of JSON: "t" in seconds with three decimals, "event", then the members. */
std::string toJsonLine(const Event& event, common::JsonStyle style = common::JsonStyle::ASCII);
/** The same line at another time. */
std::string atTime(const std::string& jsonLine, int64_t timeMs);

}  // namespace sim
