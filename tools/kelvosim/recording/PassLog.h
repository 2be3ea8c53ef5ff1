#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "base/DecisionObserver.h"
#include "heat/HeatDecisions.h"
#include "recording/Series.h"
#include "shelltemp/FittingPass.h"
#include "thermalstatus/LevelDecision.h"

/**
 * The reasons of every fitting pass. A model is written down once, and of a pass only what differs
 * from the one before, so that a day of passes is a few megabytes. Not thread-safe.
 */
class PassLog {
  public:
    struct Term {
        int32_t zone;  // index
        std::string type;
        double coefficient;
        auto operator<=>(const Term&) const = default;
    };
    /** A model as a pass evaluated it. Its terms multiply the readings of their zones. */
    struct Definition {
        int32_t index;
        std::string name;
        std::vector<Term> terms;
        std::optional<double> constant;  // m°C
        auto operator<=>(const Definition&) const = default;
    };
    /** What a pass evaluated: the models of a scene, or those before the zone that failed. */
    struct ModelSet {
        std::string scene;
        std::vector<size_t> definitions;  // in the order of evaluation
        std::string failedModel;          // empty when the pass was good
        int32_t failedZone;               // index, where a pass failed
        auto operator<=>(const ModelSet&) const = default;
    };
    struct Pass {
        int64_t timeMs;
        size_t set;
    };
    /** What a definition came to, m°C. It holds for the passes whose set has the definition. */
    struct Evaluation {
        Series computed;
        Series fitted;
    };
    /** What limits made of an output, m°C; gaps in passes without it or without limiting. */
    struct Output {
        Series fitted;
        Series capped;
        Series previous;
        Series seconds;  // s, since the pass before
        Series rate;     // m°C/s that the value wanted to move at
        Series limit;    // m°C/s; 0: it may
        Series value;    // what was published
        Series written;  // 1 in a pass that wrote it, 0 in others
    };

    void add(int64_t timeMs, const kelvo::FittingPass& pass);

    const std::vector<Pass>& passes() const { return mPasses; }
    const std::vector<ModelSet>& sets() const { return mSets; }
    const std::vector<Definition>& definitions() const { return mDefinitions; }
    /** One for each definition. */
    const std::vector<Evaluation>& evaluations() const { return mEvaluations; }
    /** By index. */
    const std::map<int32_t, Output>& outputs() const { return mOutputs; }
    /** That of the latest model of this index. */
    const std::string& outputName(int32_t index) const;
    /** Zone temperatures as the passes read them, by zone index, m°C. */
    const std::map<int32_t, Series>& readings() const { return mReadings; }

  private:
    size_t addModel(int64_t timeMs, const kelvo::ModelEvaluation& model);
    void addOutputs(int64_t timeMs, const kelvo::FittingPass& pass);

    std::vector<Pass> mPasses;
    std::vector<ModelSet> mSets;
    std::map<ModelSet, size_t> mSetNumbers;
    std::vector<Definition> mDefinitions;
    std::map<Definition, size_t> mDefinitionNumbers;
    std::vector<Evaluation> mEvaluations;
    std::map<int32_t, Output> mOutputs;
    std::map<int32_t, std::string> mOutputNames;
    std::map<int32_t, Series> mReadings;
};
