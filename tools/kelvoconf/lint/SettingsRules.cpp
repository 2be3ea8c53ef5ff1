// Broadcasts, big data and the small lists of the top level.

#include <string>

#include "config/ConfigNames.h"
#include "core/ThrottlingThresholds.h"
#include "kelvoconf/lint/Readings.h"
#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

namespace {

using Kind = ConfigFault::Kind;

constexpr int32_t kHottest = 200;  // °C: what is above is hardly meant in degrees

std::string degrees(int32_t celsius) {
    return std::to_string(celsius) + " °C";
}

/** What holds without a band. */
std::string defaultBroadcasts() {
    const BroadcastBand band;
    return "broadcasts from " + std::to_string(band.low) + " to " + degrees(band.high);
}

void checkEnd(const LintContext& context, const ConfigNode& end, const std::string& fallback) {
    if (!end.value().isInt()) {
        context.error("skipped-element", end,
                      {shown(end.value()) + " is no whole number",
                       "uses " + fallback + " temperature", "write whole degrees"});
    } else if (end.value().asInt() > kHottest) {
        context.warning("wrong-unit", end,
                        {shown(end.value()) + " is far too hot",
                         "takes it as whole degrees Celsius", "write degrees, not thousandths"});
    }
}

void checkBand(const LintContext& context, const ConfigNode& band) {
    const BroadcastConfig& broadcast = context.readings.broadcast;
    if (hasFault(broadcast.faults, Kind::WRONG_LENGTH, key::kStartEndValues)) {
        context.error("broadcast-band", band,
                      {"a band has two ends", defaultBroadcasts(),
                       "write the lowest and the highest temperature"});
    }
    if (!broadcast.hasBand) {
        return;
    }
    checkEnd(context, band[0], degrees(BroadcastBand().low) + " as the lowest");
    checkEnd(context, band[1], degrees(BroadcastBand().high) + " as the highest");
    if (hasFault(broadcast.faults, Kind::REVERSED, key::kStartEndValues)) {
        context.warning("broadcast-band", band,
                        {"the band ends below its beginning",
                         "broadcasts only changes that leap over the gap between them",
                         "write the lower end first"});
    }
}

// One key for two readers, of which each takes its own form.
void checkBroadcast(const LintContext& context) {
    static_assert(kThrottlingThresholds == 7, "the number is a word below");
    const ConfigNode broadcast = context.root() / key::kShellTempBroadcast;
    if (broadcast.value().isArray()) {
        context.warning(
                "unused-thresholds", broadcast,
                {"an array gives throttling thresholds, not the band of the broadcasts",
                 "keeps seven of them at most, which nothing uses, and " + defaultBroadcasts(),
                 "write an object with \"start_end_values\" when the band is meant"});
    }
    if (context.readings.broadcast.enabled) {  // else the band is not used
        checkBand(context, broadcast / key::kStartEndValues);
    }
}

void checkBigData(const LintContext& context) {
    const ConfigNode data = context.root() / key::kBigData;
    const ConfigFaults& faults = context.readings.bigData.faults;
    const std::string shortest = std::to_string(kShortestSamplePeriod);
    if (hasFault(faults, Kind::OUT_OF_RANGE, key::kSamplePeriod)) {
        context.error("out-of-range", data / key::kSamplePeriod,
                      {"the shortest period is " + shortest + " s",
                       "samples every " + std::to_string(kDefaultSamplePeriod) + " s",
                       "write " + shortest + " or more seconds"});
    }
    if (hasFault(faults, Kind::OUT_OF_RANGE, key::kThermalOffThousandth)) {
        context.error("out-of-range", data / key::kThermalOffThousandth,
                      {"a share cannot be negative", "uses 0", "write 0 to 1000"});
    }
}

void checkTexts(const LintContext& context, const ConfigNode& list) {
    for (const ConfigNode& element : list.elements()) {
        if (!element.value().isString()) {
            context.error("skipped-element", element,
                          {shown(element.value()) + " is no text", "leaves it out",
                           "write it in double quotes"});
        }
    }
}

}  // namespace

void checkSettings(const LintContext& context) {
    checkBroadcast(context);
    checkBigData(context);
    checkTexts(context, context.root() / key::kOldSafetyProject);
    checkTexts(context, context.root() / key::kCpuLimitProcess / key::kLimitInfo);
}

}  // namespace kelvo::lint
