#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Why each value is what it is, for whoever studies a configuration: the engines fill these records
// from the figures they decide with. On a phone nobody observes, and nothing is recorded.

namespace kelvo {

/** One zone of a linear model. */
struct FittingTerm {
    int32_t zone = 0;         // index
    std::string type;         // the zone's
    int32_t temp = 0;         // m°C
    double coefficient = 0;   // 0 for a zone beyond the coefficients
    double contribution = 0;  // m°C
};

/** What one model of the scene came to. */
struct ModelEvaluation {
    int32_t index = 0;  // of the output it sets; of two models with one index the later one counts
    std::string name;
    std::vector<FittingTerm> terms;
    std::optional<double> constant;  // m°C
    int32_t computed = 0;            // m°C, terms and constant, truncated
    int32_t fitted = 0;              // m°C, after the correction of the inner area
};

/** What limits made of the output of one index. */
struct OutputDecision {
    /** Fields of the limiting; not there for index -1 and right after the screen turned on. */
    struct Limiting {
        int32_t previous = 0;  // m°C, of the pass before; 0 when that had no such index
        int32_t seconds = 0;   // since the pass before, at least 1
        int32_t rate = 0;      // m°C/s that the value wanted to move at
        int32_t limit = 0;     // m°C/s, signed; 0: the value stands
    };

    int32_t index = 0;
    int32_t fitted = 0;  // m°C
    int32_t capped = 0;  // m°C, after the cap to the reference model
    std::optional<Limiting> limiting;
    int32_t value = 0;     // m°C, what was published
    bool changed = false;  // its tenth of a degree is another than the last written
    bool written = false;  // a line went to "/proc/shell-temp"; never for index -1
};

/** One pass of the fitting loop. */
struct FittingPass {
    std::string scene;
    std::optional<int32_t> failedZone;    // index; the pass ended there, without outputs
    std::string failedModel;              // whose zone it was
    std::vector<ModelEvaluation> models;  // in the order of evaluation
    std::vector<OutputDecision> outputs;  // ascending by index
};

/** One decision about the thermal level. */
struct LevelDecision {
    enum class Rule {
        IN_BAND,    // below the next rising threshold and above the level's own falling one
        AT_TOP,     // the top level, at or above its falling threshold
        AT_BOTTOM,  // level 0, at or below its falling threshold
        RISING,     // not cooler than at the last decision: the rising thresholds
        FALLING,    // cooler: the falling thresholds
    };
    struct Threshold {
        bool rising = false;  // of the rising list, else of the falling one
        int32_t level = 0;
        int32_t celsius = 0;
    };

    int32_t temp = 0;           // m°C
    float celsius = 0;          // what was compared
    int32_t lastLevelTemp = 0;  // °C, of the last decision that was not kept
    Rule rule = Rule::IN_BAND;
    std::optional<Threshold> below;  // the threshold that the temperature has reached or passed
    std::optional<Threshold> above;  // the one that it has not
    int32_t oldLevel = 0;
    int32_t newLevel = 0;
    int32_t oldStatus = 0;
    int32_t newStatus = 0;
};

/** One reading of a heat component. */
struct HeatSample {
    int32_t component = 0;                   // ComponentType
    int32_t value = 0;                       // mW or mA; m°C of the ambient component
    std::string source;                      // "usage feed", "task statistics", …
    std::map<std::string, int64_t> figures;  // that the value was computed from
};

/** How samples became a contribution. */
struct HeatConversion {
    enum class Method {
        NONE,        // no sample was ever converted
        REMEMBERED,  // fewer than five samples: the last result stands
        MEAN,        // mean of the samples over the coefficient
        AMBIENT,     // change against the latest extreme
    };
    struct Reading {
        int32_t time = 0;   // monotonic, s
        int32_t value = 0;  // as in HeatSample
    };

    Method method = Method::NONE;
    float coefficient = 0;         // mW or mA for 1 m°C; 0 for the ambient component
    std::vector<Reading> samples;  // that counted, newest first
    int32_t result = -1;           // m°C
};

/** A question which component heats the phone. */
struct HeatRanking {
    enum class Question { MAIN, TEXT, DETAIL };
    struct Contribution {
        int32_t component = 0;  // ComponentType
        int32_t heat = 0;       // m°C
        HeatConversion conversion;
        std::map<std::string, int> keyFactors;  // of a detailed report
    };

    Question question = Question::MAIN;
    std::vector<Contribution> contributions;  // ascending by component
    int32_t mainComponent = -1;               // of the most heat; -1: nothing heats
};

/**
 * Told of decisions as they are made, on the thread that makes them. Some come under the deciding
 * engine's mutex: an observer calls no engine.
 */
class DecisionObserver {
  public:
    virtual ~DecisionObserver() = default;
    virtual void onFittingPass(const FittingPass& pass) = 0;
    virtual void onLevelDecision(const LevelDecision& decision) = 0;
    virtual void onHeatSample(const HeatSample& sample) = 0;
    virtual void onHeatRanking(const HeatRanking& ranking) = 0;
};

/** Null unless one was set. Thread-safe. */
DecisionObserver* decisionObserver();
/** Sets the one observer, or null. Before the engines start; it lives as long as they. */
void setDecisionObserver(DecisionObserver* observer);

}  // namespace kelvo
