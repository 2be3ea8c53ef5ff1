#include "comparison/ModelError.h"

#include <cmath>
#include <cstdlib>

namespace {

constexpr char kMeasured[] = "lab-";

ModelError errorAgainst(const Series& output, const Series& truth, const PassLog& passes) {
    ModelError error;
    double squares = 0;
    for (const PassLog::Pass& pass : passes.passes()) {
        const auto value = output.at(pass.timeMs);
        const auto expected = truth.at(pass.timeMs);
        if (!value || !expected) {
            continue;
        }
        const int64_t apart = int64_t{*value} - *expected;
        ++error.passes;
        error.bias += static_cast<double>(apart);
        squares += static_cast<double>(apart) * static_cast<double>(apart);
        if (std::abs(apart) > std::abs(error.largest)) {
            error.largest = apart;
            error.largestMs = pass.timeMs;
        }
    }
    const auto count = static_cast<double>(error.passes);
    error.bias /= count;
    error.rms = std::sqrt(squares / count);
    return error;
}

}  // namespace

std::vector<ModelError> modelErrors(const Recording& recording) {
    std::vector<ModelError> errors;
    for (const auto& [index, output] : recording.passes.outputs()) {
        const std::string& model = recording.passes.outputName(index);
        const auto add = [&, &value = output.value](const Series& truth, const std::string& name) {
            ModelError error = errorAgainst(value, truth, recording.passes);
            error.model = model;
            error.truth = name;
            if (error.passes > 0) {
                errors.push_back(std::move(error));
            }
        };
        for (const Series& zone : recording.zones) {
            if (zone.name() == kMeasured + model) {
                add(zone, zone.name());
            }
        }
        for (const Series& node : recording.plantNodes) {
            if (node.name() == model) {
                add(node, "plant");
            }
        }
    }
    return errors;
}
