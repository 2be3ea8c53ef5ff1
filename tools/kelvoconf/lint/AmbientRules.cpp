// The ambient estimator's scenes and their parameters.

#include <algorithm>
#include <string>
#include <vector>

#include "ambient/AmbientParams.h"
#include "common/NearestName.h"
#include "config/ConfigNames.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/Readings.h"
#include "kelvoconf/lint/SceneSet.h"

namespace kelvo::lint {

namespace {

using Kind = AmbientFault::Kind;

// One scene that cannot be used spoils the others, too.
constexpr char kNoEstimate[] = "estimates no ambient temperature, in any scene";

/** A fault that makes the scene useless; what is harmless is said with the types. */
void badParameters(const LintContext& context, const ConfigNode& fitting,
                   const AmbientFault& fault) {
    const ConfigNode names = fitting / key::kParameterName;
    const ConfigNode values = fitting / key::kCoefficient;
    const auto report = [&context](const ConfigNode& node, const std::string& what,
                                   const std::string& mend) {
        context.error("ambient-parameters", node, {what, kNoEstimate, mend});
    };
    constexpr char kPair[] = "a name must be a text and its coefficient a number";
    switch (fault.kind) {
        case Kind::NO_ARRAYS:
            report(names.value().isArray() ? values : names,
                   "an ambient scene needs \"paramter_name\", spelled so, and \"coefficient\" as "
                   "arrays",
                   "write both arrays");
            break;
        case Kind::UNEQUAL:
            report(values,
                   std::to_string(values.value().size()) + " coefficients for " +
                           std::to_string(names.value().size()) + " names",
                   "give each name one coefficient");
            break;
        case Kind::BAD_NAME:
            report(names[fault.element], kPair, "correct the pair");
            break;
        case Kind::BAD_COEFFICIENT:
            report(values[fault.element], kPair, "correct the pair");
            break;
        case Kind::MISSING_NAME:
            report(names, "there is no " + quoted(fault.name), "add the name and its coefficient");
            break;
        case Kind::MISSING_THRESHOLD:
            report(fitting / fault.name, "there is no " + quoted(fault.name),
                   "write both thresholds; one alone does not count");
            break;
        case Kind::WRONG_TYPE:
            break;
    }
}

void checkNames(const LintContext& context, const ConfigNode& names) {
    const std::vector<std::string> known(kAmbientParameters.begin(), kAmbientParameters.end());
    for (const ConfigNode& name : names.elements()) {
        if (!name.value().isString() ||
            std::ranges::find(known, name.value().asString()) != known.end()) {
            continue;
        }
        const auto nearest = common::nearestName(name.value().asString(), known);
        context.warning("unknown-parameter", name,
                        {"the estimator knows no parameter " + shown(name.value()),
                         "ignores it and its coefficient",
                         nearest ? "write " + quoted(*nearest) : "drop both"});
    }
}

void checkThresholds(const LintContext& context, const ConfigNode& fitting) {
    const ConfigNode rate = fitting / key::kTempRateThreshold;
    if (rate.value().isDouble() && rate.value().asDouble() <= 0) {
        context.warning("threshold-never-met", rate,
                        {"no slope is below " + shown(rate.value()),
                         "finds no steady sample, and so estimates nothing",
                         "write the slope, in m°C/s, that still counts as steady"});
    }
    const ConfigNode power = fitting / key::kPowerDiffThreshold;
    if (power.value().isDouble() && power.value().asDouble() < 0) {
        context.warning("threshold-never-met", power,
                        {"no change of power is below " + shown(power.value()),
                         "drops its samples whenever it has enough, and so estimates nothing",
                         "write the change of power that still counts as steady"});
    }
}

void checkFitting(const LintContext& context, const ParsedScene& scene) {
    const ConfigNode fitting = scene.node / key::kAmbientFitting;
    for (const AmbientFault& fault : context.readings.ambient.at(scene.set.scene).faults) {
        badParameters(context, fitting, fault);
    }
    checkNames(context, fitting / key::kParameterName);
    checkThresholds(context, fitting);
}

/** An estimate is made of a power and of a temperature. */
void checkModels(const LintContext& context, const ParsedScene& scene) {
    const auto isPower = [](const FittingModel& model) { return model.name == model::kPower; };
    const auto powers = std::ranges::count_if(scene.set.models, isPower);
    const bool hasTemp = static_cast<size_t>(powers) < scene.set.models.size();
    if (powers == 0 || !hasTemp) {
        context.error("ambient-models", scene.node / key::kTempModel,
                      {powers == 0 ? "there is no model \"power\"" : "there is no other model",
                       "estimates nothing while this scene is used",
                       "an ambient scene needs a model \"power\" (mW) and one of a temperature"});
    }
}

void checkNotSwitched(const LintContext& context, const ParsedScene& scene) {
    context.warning("ambient-not-switched", scene.node,
                    {"there is no usable scene \"ambient_charge\"",
                     "never switches ambient scenes then, and so never uses this one",
                     "write \"ambient_charge\", or drop the scene"});
}

}  // namespace

void checkAmbient(const LintContext& context) {
    const SceneSet& set = context.scenes;
    const bool switches = set.find(scene::kAmbientCharge) != nullptr;
    if (switches && set.find(scene::kAmbient) == nullptr) {
        context.warning("no-ambient", context.root() / key::kFittingModels / scene::kAmbient,
                        {"there is \"ambient_charge\", but no usable scene \"ambient\"",
                         "has no estimate until the phone is charged for the first time",
                         "write the scene that holds while the phone is not charged"});
    }
    for (const ParsedScene& scene : set.scenes) {
        if (!isAmbientScene(scene.set.scene) || scene.set.models.empty()) {
            continue;
        }
        if (!switches && scene.set.scene != scene::kAmbient) {
            checkNotSwitched(context, scene);
            continue;
        }
        checkFitting(context, scene);
        checkModels(context, scene);
    }
}

}  // namespace kelvo::lint
