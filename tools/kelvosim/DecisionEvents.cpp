#include "DecisionEvents.h"

#include "common/JsonText.h"
#include "heat/ComponentType.h"
#include "sim/virtual/VirtualTime.h"

using kelvo::HeatConversion;
using kelvo::HeatRanking;
using kelvo::LevelDecision;

namespace {

Json::Value termsOf(const kelvo::ModelEvaluation& model) {
    Json::Value terms(Json::arrayValue);
    for (const kelvo::FittingTerm& term : model.terms) {
        Json::Value& entry = terms.append(Json::Value(Json::objectValue));
        entry["zone"] = term.zone;
        entry["type"] = term.type;
        entry["temp"] = term.temp;
        entry["coefficient"] = term.coefficient;
        entry["contribution"] = term.contribution;
    }
    return terms;
}

Json::Value toJson(const kelvo::ModelEvaluation& model) {
    Json::Value value(Json::objectValue);
    value["index"] = model.index;
    value["name"] = model.name;
    value["terms"] = termsOf(model);
    value["constant"] = model.constant ? Json::Value(*model.constant) : Json::Value();
    value["computed"] = model.computed;
    value["fitted"] = model.fitted;
    return value;
}

/** `limit` alone is 0 for a value that was taken as fitted, be it a new one or the one before. */
Json::Value limitingOf(const kelvo::OutputDecision& output) {
    const auto& limiting = output.limiting;
    if (!limiting) {
        return {};
    }
    Json::Value value(Json::objectValue);
    value["limited"] = limiting->limit != 0;
    value["still"] = output.value == limiting->previous;
    value["previous"] = limiting->previous;
    value["seconds"] = limiting->seconds;
    value["rate"] = limiting->rate;
    value["limit"] = limiting->limit;
    return value;
}

Json::Value toJson(const kelvo::OutputDecision& output) {
    Json::Value value(Json::objectValue);
    value["index"] = output.index;
    value["fitted"] = output.fitted;
    value["capped"] = output.capped;
    value["limiting"] = limitingOf(output);
    value["value"] = output.value;
    value["changed"] = output.changed;
    value["written"] = output.written;
    return value;
}

Json::Value toJson(const std::optional<LevelDecision::Threshold>& threshold) {
    if (!threshold) {
        return {};
    }
    Json::Value value(Json::objectValue);
    value["list"] = threshold->rising ? "rising" : "falling";
    value["level"] = threshold->level;
    value["celsius"] = threshold->celsius;
    return value;
}

const char* ruleName(LevelDecision::Rule rule) {
    switch (rule) {
        case LevelDecision::Rule::IN_BAND:
            return "kept: in its band";
        case LevelDecision::Rule::AT_TOP:
            return "kept: top level";
        case LevelDecision::Rule::AT_BOTTOM:
            return "kept: level 0";
        case LevelDecision::Rule::RISING:
            return "rising";
        case LevelDecision::Rule::FALLING:
            return "falling";
    }
    return "";
}

const char* methodName(HeatConversion::Method method) {
    switch (method) {
        case HeatConversion::Method::NONE:
            return "nothing yet";
        case HeatConversion::Method::REMEMBERED:
            return "remembered";
        case HeatConversion::Method::MEAN:
            return "mean";
        case HeatConversion::Method::AMBIENT:
            return "change";
    }
    return "";
}

const char* questionName(HeatRanking::Question question) {
    switch (question) {
        case HeatRanking::Question::MAIN:
            return "main";
        case HeatRanking::Question::TEXT:
            return "text";
        case HeatRanking::Question::DETAIL:
            return "detail";
    }
    return "";
}

Json::Value componentValue(int32_t type) {
    const char* const name = componentName(type);
    return name != nullptr ? Json::Value(name) : Json::Value();
}

Json::Value toJson(const HeatRanking::Contribution& contribution) {
    Json::Value value(Json::objectValue);
    value["component"] = componentValue(contribution.component);
    value["heat"] = contribution.heat;
    value["method"] = methodName(contribution.conversion.method);
    value["coefficient"] = common::asWritten(contribution.conversion.coefficient);
    Json::Value& samples = value["samples"] = Json::Value(Json::arrayValue);
    for (const HeatConversion::Reading& reading : contribution.conversion.samples) {
        Json::Value& pair = samples.append(Json::Value(Json::arrayValue));
        pair.append(reading.time);
        pair.append(reading.value);
    }
    Json::Value& factors = value["key_factors"] = Json::Value(Json::objectValue);
    for (const auto& [name, figure] : contribution.keyFactors) {
        factors[name] = figure;
    }
    return value;
}

/** After what it calls: those are no functions of their arguments' namespace. */
template <typename Record>
Json::Value toArray(const std::vector<Record>& records) {
    Json::Value values(Json::arrayValue);
    for (const Record& record : records) {
        values.append(toJson(record));
    }
    return values;
}

}  // namespace

void DecisionEvents::tell(const char* name, Members members) {
    mListener({sim::VirtualTime::now(), name, std::move(members)});
}

void DecisionEvents::onFittingPass(const kelvo::FittingPass& pass) {
    Json::Value failed;
    if (pass.failedZone) {
        failed["zone"] = *pass.failedZone;
        failed["model"] = pass.failedModel;
    }
    tell("fitting_pass", {{"scene", pass.scene},
                          {"failed", failed},
                          {"models", toArray(pass.models)},
                          {"outputs", toArray(pass.outputs)}});
}

void DecisionEvents::onLevelDecision(const LevelDecision& decision) {
    tell("level_decision", {{"temp", decision.temp},
                            {"celsius", common::asWritten(decision.celsius)},
                            {"last_celsius", decision.lastLevelTemp},
                            {"rule", ruleName(decision.rule)},
                            {"below", toJson(decision.below)},
                            {"above", toJson(decision.above)},
                            {"old_level", decision.oldLevel},
                            {"level", decision.newLevel},
                            {"old_status", decision.oldStatus},
                            {"status", decision.newStatus}});
}

void DecisionEvents::onHeatSample(const kelvo::HeatSample& sample) {
    Json::Value figures(Json::objectValue);
    for (const auto& [name, figure] : sample.figures) {
        figures[name] = Json::Int64{figure};
    }
    tell("heat_sample", {{"component", componentValue(sample.component)},
                         {"value", sample.value},
                         {"source", sample.source},
                         {"figures", figures}});
}

void DecisionEvents::onHeatRanking(const HeatRanking& ranking) {
    tell("heat_ranking", {{"question", questionName(ranking.question)},
                          {"main", componentValue(ranking.mainComponent)},
                          {"contributions", toArray(ranking.contributions)}});
}

void DecisionFanOut::onFittingPass(const kelvo::FittingPass& pass) {
    for (kelvo::DecisionObserver* observer : mObservers) {
        observer->onFittingPass(pass);
    }
}

void DecisionFanOut::onLevelDecision(const LevelDecision& decision) {
    for (kelvo::DecisionObserver* observer : mObservers) {
        observer->onLevelDecision(decision);
    }
}

void DecisionFanOut::onHeatSample(const kelvo::HeatSample& sample) {
    for (kelvo::DecisionObserver* observer : mObservers) {
        observer->onHeatSample(sample);
    }
}

void DecisionFanOut::onHeatRanking(const HeatRanking& ranking) {
    for (kelvo::DecisionObserver* observer : mObservers) {
        observer->onHeatRanking(ranking);
    }
}
