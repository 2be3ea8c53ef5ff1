#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Why each value is what it is, for a DecisionObserver.

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
    /** Fields of the limiting; not there for a negative index and right after the screen turned on.
     */
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
    bool written = false;  // a line went to "/proc/shell-temp"; never for a negative index
};

/** One pass of the fitting loop. */
struct FittingPass {
    std::string scene;
    std::optional<int32_t> failedZone;    // index; the pass ended there, without outputs
    std::string failedModel;              // whose zone it was
    std::vector<ModelEvaluation> models;  // in the order of evaluation
    std::vector<OutputDecision> outputs;  // ascending by index
};

}  // namespace kelvo
