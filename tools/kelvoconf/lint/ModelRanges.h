#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "shelltemp/FittingEvaluation.h"
#include "shelltemp/FittingModel.h"

namespace kelvo::lint {

/** Temperatures (m°C) that the zones of a phone had at one time. */
struct ZoneSample {
    std::string place;  // "trace.csv: line 7", for messages
    std::map<std::string, int32_t> byType;
    std::map<int32_t, int32_t> byNumber;
};

/** Gives each sample to the function in turn; can be called again. */
using ZoneSamples = std::function<void(const std::function<void(const ZoneSample&)>&)>;

/** What a model comes to at one sample. */
struct ModelValue {
    int32_t value = 0;           // m°C
    std::vector<int32_t> temps;  // m°C, of the model's zones in order
    LinearTerms terms;
    std::string place;  // of the sample
};

/** The lowest and the highest values of models over all samples. Not thread-safe. */
class ModelRanges {
  public:
    struct Range {
        ModelValue lowest;
        ModelValue highest;
    };

    explicit ModelRanges(ZoneSamples samples) : mSamples(std::move(samples)) {}

    /** Evaluates the models that were not evaluated before, in one walk over the samples. */
    void survey(const std::vector<const FittingModel*>& models);
    /** Null for a model that no sample has temperatures for which the daemon would take. */
    const Range* find(const FittingModel& model) const;

  private:
    using Key = std::pair<std::vector<std::pair<int32_t, std::string>>, std::vector<double>>;

    static Key keyOf(const FittingModel& model);
    static void evaluate(const FittingModel& model, const ZoneSample& sample,
                         std::optional<Range>& range);

    const ZoneSamples mSamples;
    std::map<Key, std::optional<Range>> mRanges;
};

}  // namespace kelvo::lint
