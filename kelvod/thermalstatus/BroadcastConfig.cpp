#include "thermalstatus/BroadcastConfig.h"

#include "config/ConfigNames.h"
#include "config/ConfigPath.h"

namespace kelvo {

namespace {

using Kind = ConfigFault::Kind;

constexpr Json::ArrayIndex kBandEnds = 2;

bool readEnd(const Json::Value& ends, Json::ArrayIndex element, int32_t& end,
             ConfigFaults& faults) {
    if (!ends[element].isInt()) {
        faults.push_back({Kind::WRONG_TYPE, key::kStartEndValues, element});
        return false;
    }
    end = ends[element].asInt();
    return true;
}

void readBand(const Json::Value& ends, BroadcastConfig& config) {
    if (!ends.isArray() || ends.size() != kBandEnds) {
        config.faults.push_back(
                {ends.isArray() ? Kind::WRONG_LENGTH : Kind::WRONG_TYPE, key::kStartEndValues});
        return;
    }
    config.hasBand = true;
    const bool hasLow = readEnd(ends, 0, config.band.low, config.faults);
    const bool hasHigh = readEnd(ends, 1, config.band.high, config.faults);
    if (hasLow && hasHigh && config.band.low > config.band.high) {
        config.faults.push_back({Kind::REVERSED, key::kStartEndValues});
    }
}

}  // namespace

BroadcastConfig readBroadcastConfig(const Json::Value& section) {
    BroadcastConfig config;
    if (!section.isObject()) {
        if (!section.isArray() && !section.isNull()) {
            config.faults.push_back({Kind::WRONG_TYPE});
        }
        return config;
    }
    if (const Json::Value* const disable = findMember(section, key::kDisable)) {
        if (disable->isInt()) {
            config.enabled = disable->asInt() != 1;
        } else {
            config.faults.push_back({Kind::WRONG_TYPE, key::kDisable});
        }
    }
    if (const Json::Value* const ends = findMember(section, key::kStartEndValues)) {
        readBand(*ends, config);
    }
    return config;
}

}  // namespace kelvo
