// What models come to at the temperatures of a phone.

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "config/ConfigNames.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/ModelRanges.h"
#include "kelvoconf/lint/SceneSet.h"

namespace kelvo::lint {

namespace {

constexpr int32_t kColdest = -20000;    // m°C that a shell can have
constexpr int32_t kHottest = 90000;     // m°C
constexpr double kThousand = 1000;      // m°C a °C
constexpr double kLeastConstant = 0.5;  // °C: constants between these may be in °C,
constexpr double kMostConstant = 100;   // and do nothing when they are taken as m°C

std::string number(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string celsius(double milli) {
    return number(milli / kThousand) + " °C";
}

bool isOutside(const ModelValue& value) {
    return value.value < kColdest || value.value > kHottest;
}

/** A term of a model's sum: of a zone, or the constant. */
struct Term {
    ConfigNode node;
    std::string words;
    std::string mend;
};

Term termOf(const ParsedScene& scene, const FittingModel& model, const ModelValue& value) {
    const ConfigNode node = scene.model(model.name);
    const ConfigNode weights = node / key::kCoefficient;
    const auto& terms = value.terms.contributions;
    const bool isHigh = value.value > kHottest;
    const auto largest = isHigh ? std::ranges::max_element(terms) : std::ranges::min_element(terms);
    const double constant = value.terms.constant.value_or(0);
    if (largest == terms.end() || (isHigh ? constant > *largest : constant < *largest)) {
        const ConfigNode last = weights[weights.value().size() - 1];
        return {last, "the constant " + shown(last.value()) + " adds " + celsius(constant),
                "write the constant that is meant, in m°C"};
    }
    const auto at = static_cast<size_t>(largest - terms.begin());
    const auto element = static_cast<Json::ArrayIndex>(at);
    return {weights[element],
            "the weight " + shown(weights[element].value()) + " of the zone " +
                    shown((node / key::kThermalZone)[element].value()) + " at " +
                    celsius(value.temps[at]) + " adds " + celsius(*largest),
            "write the weight that is meant: m°C per m°C, mostly far below 1"};
}

void checkValue(const LintContext& context, const ParsedScene& scene, const FittingModel& model,
                const ModelValue& value) {
    const Term term = termOf(scene, model, value);
    context.warning("implausible-value", term.node,
                    {term.words + " (" + value.place + ")",
                     "computes " + celsius(value.value) + ", which no shell has: outside of " +
                             celsius(kColdest) + " to " + celsius(kHottest),
                     term.mend});
}

/** The value is sound, and as sound with a thousand times the constant. */
void checkConstant(const LintContext& context, const ParsedScene& scene, const FittingModel& model,
                   const ModelRanges::Range& range) {
    const double constant = range.lowest.terms.constant.value_or(0);
    const double more = constant * (kThousand - 1);
    if (std::abs(constant) < kLeastConstant || std::abs(constant) > kMostConstant ||
        range.lowest.value + more < kColdest || range.highest.value + more > kHottest) {
        return;
    }
    const ConfigNode weights = scene.model(model.name) / key::kCoefficient;
    const ConfigNode last = weights[weights.value().size() - 1];
    context.warning("constant-unit", last,
                    {"the constant " + shown(last.value()) + " is next to nothing",
                     "takes it as m°C, and adds " + celsius(constant),
                     "write " + number(constant * kThousand) + " when " + shown(last.value()) +
                             " °C are meant"});
}

void checkModel(const LintContext& context, const ParsedScene& scene, const FittingModel& model) {
    const ModelRanges::Range* const range = context.input.ranges->find(model);
    if (range == nullptr) {
        return;
    }
    if (isOutside(range->highest)) {
        checkValue(context, scene, model, range->highest);
    } else if (isOutside(range->lowest)) {
        checkValue(context, scene, model, range->lowest);
    } else {
        checkConstant(context, scene, model, *range);
    }
}

/** Of the ambient scenes' models one is a power. */
bool isTemperature(const ParsedScene& scene, const FittingModel& model) {
    const std::string& name = scene.set.scene;
    return model.type == kLinearModel &&
           (isShellScene(name) || (isAmbientScene(name) && model.name != model::kPower));
}

}  // namespace

void checkPlausibility(const LintContext& context) {
    if (context.input.ranges == nullptr) {
        return;
    }
    std::vector<std::pair<const ParsedScene*, const FittingModel*>> judged;
    std::vector<const FittingModel*> models;
    for (const ParsedScene& scene : context.scenes.scenes) {
        for (const FittingModel& model : scene.set.models) {
            if (isTemperature(scene, model)) {
                judged.emplace_back(&scene, &model);
                models.push_back(&model);
            }
        }
    }
    context.input.ranges->survey(models);
    for (const auto& [scene, model] : judged) {
        checkModel(context, *scene, *model);
    }
}

}  // namespace kelvo::lint
