#include "recording/PassLog.h"

#include <algorithm>
#include <utility>

namespace {

Series inMilliCelsius(const std::string& name) {
    return {name, "m°C"};
}

/** The number of an entry among those seen, which are numbered as they come. */
template <typename T>
size_t numberOf(const T& entry, std::map<T, size_t>& numbers, std::vector<T>& entries) {
    const auto [place, isNew] = numbers.try_emplace(entry, entries.size());
    if (isNew) {
        entries.push_back(entry);
    }
    return place->second;
}

PassLog::Output newOutput(const std::string& name) {
    return {inMilliCelsius(name), inMilliCelsius(name), inMilliCelsius(name), {name, "s"},
            {name, "m°C/s"},      {name, "m°C/s"},      inMilliCelsius(name), {name, ""}};
}

void addDecision(int64_t timeMs, const kelvo::OutputDecision& decision, PassLog::Output& output) {
    const auto& limiting = decision.limiting;
    const auto ifLimited = [&](int32_t kelvo::OutputDecision::Limiting::*member) {
        return limiting ? std::optional((*limiting).*member) : std::nullopt;
    };
    output.fitted.add(timeMs, decision.fitted);
    output.capped.add(timeMs, decision.capped);
    output.previous.add(timeMs, ifLimited(&kelvo::OutputDecision::Limiting::previous));
    output.seconds.add(timeMs, ifLimited(&kelvo::OutputDecision::Limiting::seconds));
    output.rate.add(timeMs, ifLimited(&kelvo::OutputDecision::Limiting::rate));
    output.limit.add(timeMs, ifLimited(&kelvo::OutputDecision::Limiting::limit));
    output.value.add(timeMs, decision.value);
    output.written.add(timeMs, decision.written ? 1 : 0);
}

void addGap(int64_t timeMs, PassLog::Output& output) {
    for (Series* series : {&output.fitted, &output.capped, &output.previous, &output.seconds,
                           &output.rate, &output.limit, &output.value, &output.written}) {
        series->add(timeMs, std::nullopt);
    }
}

}  // namespace

void PassLog::add(int64_t timeMs, const kelvo::FittingPass& pass) {
    ModelSet set{pass.scene, {}, pass.failedModel, pass.failedZone.value_or(0)};
    for (const kelvo::ModelEvaluation& model : pass.models) {
        set.definitions.push_back(addModel(timeMs, model));
    }
    mPasses.push_back({timeMs, numberOf(set, mSetNumbers, mSets)});
    addOutputs(timeMs, pass);
}

const std::string& PassLog::outputName(int32_t index) const {
    static const std::string kUnnamed;
    const auto found = mOutputNames.find(index);
    return found != mOutputNames.end() ? found->second : kUnnamed;
}

size_t PassLog::addModel(int64_t timeMs, const kelvo::ModelEvaluation& model) {
    Definition definition{model.index, model.name, {}, model.constant};
    definition.terms.reserve(model.terms.size());
    for (const kelvo::FittingTerm& term : model.terms) {
        definition.terms.push_back({term.zone, term.type, term.coefficient});
        mReadings.try_emplace(term.zone, term.type, "m°C").first->second.add(timeMs, term.temp);
    }
    const size_t number = numberOf(definition, mDefinitionNumbers, mDefinitions);
    if (number == mEvaluations.size()) {
        mEvaluations.push_back({inMilliCelsius(model.name), inMilliCelsius(model.name)});
    }
    mEvaluations[number].computed.add(timeMs, model.computed);
    mEvaluations[number].fitted.add(timeMs, model.fitted);
    mOutputNames[model.index] = model.name;
    return number;
}

void PassLog::addOutputs(int64_t timeMs, const kelvo::FittingPass& pass) {
    for (const kelvo::OutputDecision& decision : pass.outputs) {
        addDecision(timeMs, decision,
                    mOutputs.try_emplace(decision.index, newOutput(outputName(decision.index)))
                            .first->second);
    }
    for (auto& [index, output] : mOutputs) {
        const auto isThis = [index = index](const kelvo::OutputDecision& decision) {
            return decision.index == index;
        };
        if (std::none_of(pass.outputs.begin(), pass.outputs.end(), isThis)) {
            addGap(timeMs, output);
        }
    }
}
