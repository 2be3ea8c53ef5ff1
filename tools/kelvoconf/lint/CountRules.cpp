// Numbers of times, seconds and places that are possible but absurd.

#include <string>

#include "config/ConfigNames.h"
#include "core/BigDataConfig.h"
#include "kelvoconf/lint/SceneSet.h"

namespace kelvo::lint {

namespace {

constexpr int32_t kMostFailures = 17280;   // cycles of five seconds in a day
constexpr int32_t kLongestPeriod = 86400;  // s, a day
constexpr int32_t kAllThousandths = 1000;  // 1/1000
constexpr int32_t kHighestIndex = 1000;    // of a model

void warn(const LintContext& context, const ConfigNode& node, const std::string& why,
          const std::string& effect, const std::string& mend) {
    context.warning("absurd-count", node, {shown(node.value()) + " " + why, effect, mend});
}

bool isAbove(const ConfigNode& node, int32_t most) {
    return node.value().isInt() && node.value().asInt() > most;
}

void checkFailures(const LintContext& context) {
    const ConfigNode limit = context.root() / key::kMaxAbnormalDetections;
    const std::string mend = "write how many failures in a row are too many, such as 60";
    if (limit.value().isInt() && limit.value().asInt() < 0) {
        warn(context, limit, "is no number of failures",
             "gives up a zone at its first failure, as with 0", mend);
    } else if (isAbove(limit, kMostFailures)) {
        warn(context, limit, "cycles are more than a day",
             "keeps a zone that fails, and writes nothing for as long", mend);
    }
}

void checkBigDataCounts(const LintContext& context) {
    const ConfigNode data = context.root() / key::kBigData;
    if (isAbove(data / key::kSamplePeriod, kLongestPeriod)) {
        warn(context, data / key::kSamplePeriod, "seconds are more than a day",
             "takes a sample less than once a day",
             "write seconds, such as " + std::to_string(kDefaultSamplePeriod));
    }
    if (isAbove(data / key::kThermalOffThousandth, kAllThousandths)) {
        warn(context, data / key::kThermalOffThousandth, "thousandths are more than all",
             "counts every day as one without thermal control", "write 0 to 1000");
    }
}

void checkIndexes(const LintContext& context, const ParsedScene& scene) {
    for (const FittingModel& model : scene.set.models) {
        if (model.index > kHighestIndex) {
            warn(context, scene.model(model.name) / key::kIndex, "is hardly the number of a result",
                 "publishes the value under that number all the same", "count from 0");
        }
    }
}

}  // namespace

void checkCounts(const LintContext& context) {
    checkFailures(context);
    checkBigDataCounts(context);
    for (const ParsedScene& scene : context.scenes.scenes) {
        checkIndexes(context, scene);
    }
}

}  // namespace kelvo::lint
