// Broadcasts, big data and the small lists of the top level.

#include <string>

#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

namespace {

constexpr Json::ArrayIndex kBandEnds = 2;
constexpr int32_t kHottest = 200;        // °C: what is above is hardly meant in degrees
constexpr int32_t kShortestPeriod = 10;  // s

void checkBand(const LintContext& context, const ConfigNode& band) {
    if (!band.value().isArray()) {
        return;
    }
    if (band.value().size() != kBandEnds) {
        context.error("broadcast-band", band,
                      {"a band has two ends", "broadcasts from 30 to 55 °C",
                       "write the lowest and the highest temperature"});
        return;
    }
    const char* const defaults[] = {"30 °C as the lowest", "55 °C as the highest"};
    for (Json::ArrayIndex i = 0; i < kBandEnds; ++i) {
        const Json::Value& end = band[i].value();
        if (!end.isInt()) {
            context.error(
                    "skipped-element", band[i],
                    {shown(end) + " is no whole number",
                     std::string("uses ") + defaults[i] + " temperature", "write whole degrees"});
        } else if (end.asInt() > kHottest) {
            context.warning("wrong-unit", band[i],
                            {shown(end) + " is far too hot", "takes it as whole degrees Celsius",
                             "write degrees, not thousandths"});
        }
    }
    if (band[0].value().isInt() && band[1].value().isInt() &&
        band[0].value().asInt() > band[1].value().asInt()) {
        context.warning("broadcast-band", band,
                        {"the band ends below its beginning",
                         "broadcasts only changes that leap over the gap between them",
                         "write the lower end first"});
    }
}

// One key for two readers, of which each takes its own form.
void checkBroadcast(const LintContext& context) {
    const ConfigNode broadcast = context.root() / "shell_temp_broadcast";
    if (broadcast.value().isArray()) {
        context.warning("unused-thresholds", broadcast,
                        {"an array gives throttling thresholds, not the band of the broadcasts",
                         "keeps seven of them at most, which nothing uses, and broadcasts from 30 "
                         "to 55 °C",
                         "write an object with \"start_end_values\" when the band is meant"});
    }
    const ConfigNode disable = broadcast / "disable";
    if (disable.value().isInt() && disable.value().asInt() == 1) {
        return;  // the band is not read
    }
    checkBand(context, broadcast / "start_end_values");
}

void checkBigData(const LintContext& context) {
    const ConfigNode data = context.root() / "big_data";
    const ConfigNode period = data / "sample_period";
    if (period.value().isInt() && period.value().asInt() < kShortestPeriod) {
        context.error(
                "out-of-range", period,
                {"the shortest period is 10 s", "samples every 60 s", "write 10 or more seconds"});
    }
    const ConfigNode thousandth = data / "thermal_off_thousandth";
    if (thousandth.value().isInt() && thousandth.value().asInt() < 0) {
        context.error("out-of-range", thousandth,
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
    checkTexts(context, context.root() / "old_safety_project");
    checkTexts(context, context.root() / "cpulimit_process" / "limit_info");
}

}  // namespace kelvo::lint
