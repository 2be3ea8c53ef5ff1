// Model sets of a configuration, evaluated at hot and cold zones and limited.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "Target.h"
#include "config/ConfigText.h"
#include "shelltemp/FittingEvaluation.h"
#include "shelltemp/FittingLimits.h"
#include "shelltemp/FittingModelParser.h"
#include "shelltemp/ZoneTable.h"

namespace {

void fit(const kelvo::FittingModel& model) {
    if (model.zones.empty() || model.coefficients.empty()) {
        std::abort();  // such a model must not get into a set
    }
    kelvo::DeltaHistory history;
    int32_t previous = 0;
    for (const int32_t temp : {40000, 115000, -39999}) {
        const std::vector<int32_t> temps(model.zones.size(), temp);
        const int32_t value = kelvo::evaluateLinearModel(temps, model.coefficients);
        const kelvo::LimitedValue limited = kelvo::limitJump(previous, value, 5, history);
        kelvo::recordDelta(history, limited.recorded);
        previous = limited.value;
    }
}

}  // namespace

void fuzzModels(Bytes data) {
    Json::Value scene;
    const std::string text(textOf(data));
    if (kelvo::parseConfigText(text, scene) != 0) {
        return;
    }
    constexpr int32_t kZoneCount = 24;
    const kelvo::ZoneTable table;
    std::map<int32_t, std::string> names;
    const kelvo::FittingModelParser parser(table, kZoneCount);
    for (const kelvo::FittingModel& model : parser.parseScene("fuzz", scene, names).models) {
        fit(model);
    }
    kelvo::resolveZoneList(scene, table);
}
